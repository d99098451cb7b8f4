// GraphicsState: the polite-then-insist change of the Java use that start-up
// performs for a web default figure.
#include <gtest/gtest.h>

#include <foundation/graphicsstate/GraphicsState.h>

namespace gs = GraphicsState;

namespace {
// The start-up rule for a web default figure: ask, and insist if refused.
void turnJavaOffForWebFigures() {
  gs::setUsesJava(false, true);
  if (gs::usesJava()) gs::setUsesJava(false, false);
}
}  // namespace

TEST(GraphicsStateJava, LockedUseRefusesThePoliteChangeButNotTheInsistentOne) {
  gs::setUsesJava(true, false);
  gs::lockUsesJava(true);
  gs::setUsesJava(false, true);
  EXPECT_TRUE(gs::usesJava()) << "a locked use must refuse the change when asked politely";
  turnJavaOffForWebFigures();
  EXPECT_FALSE(gs::usesJava());
  gs::lockUsesJava(false);
  gs::setUsesJava(true, true);
  EXPECT_TRUE(gs::usesJava());
  gs::setUsesJava(false, false);
}
