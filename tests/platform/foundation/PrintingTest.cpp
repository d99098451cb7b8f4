// Printing: one sink for utPrintf and uout, capture and restore, the window
// width, and variable names supplied by the language.
#include <gtest/gtest.h>

#include <cstdlib>

#include <foundation/io/ArrayNameScope.h>
#include <foundation/io/OutputCapture.h>
#include <foundation/io/Printing.h>
#include <foundation/io/uout.h>

namespace io = services::io;

TEST(Printing, PrintfAndStreamKeepTheirOrderInOneSink) {
  io::OutputCapture capture;
  utPrintf("%s=%d;", "a", 1);
  io::uout << "b=" << 2 << ';';
  utPrintf("%c", 'c');
  io::uout << std::string(3, 'd');
  EXPECT_EQ(capture.text(), "a=1;b=2;cddd");
}

TEST(Printing, LongFormattedOutputIsNotCut) {
  io::OutputCapture capture;
  std::string big(5000, 'x');
  int n = utPrintf("[%s]", big.c_str());
  EXPECT_EQ(n, 5002);
  EXPECT_EQ(capture.text(), "[" + big + "]");
}

TEST(Printing, NestedCapturesRestoreTheirPredecessor) {
  io::OutputCapture outer;
  {
    io::OutputCapture inner;
    utPrintf("inner");
    EXPECT_EQ(inner.take(), "inner");
    utPrintf("again");
    EXPECT_EQ(inner.text(), "again");
  }
  utPrintf("outer");
  EXPECT_EQ(outer.text(), "outer");
}

TEST(Printing, SinkMayPrintThroughItself) {
  // A sink that prints again (a tee adding a mark) must not deadlock.
  std::string seen;
  bool inside = false;
  auto previous = io::setOutputSink([&](std::string_view text) {
    seen.append(text);
    if (inside) return;
    inside = true;
    io::writeOutput("!");
    inside = false;
  });
  utPrintf("x");
  io::setOutputSink(std::move(previous));
  EXPECT_EQ(seen, "x!");
}

TEST(Printing, WindowColumnsComeFromTheSetterThenTheEnvironment) {
  int old = io::setNumWindowColumns(132);
  EXPECT_EQ(ioGetNumWindowColumns(), 132);
  io::setNumWindowColumns(0);
  const char* env = std::getenv("COLUMNS");
  int expected = env && std::atoi(env) > 0 ? std::atoi(env) : 80;
  EXPECT_EQ(ioGetNumWindowColumns(), expected);
  io::setNumWindowColumns(old);
}

TEST(Printing, ArrayNamesComeFromTheInnermostMatchingScope) {
  auto* a = reinterpret_cast<const vxArray*>(0x1000);
  auto* b = reinterpret_cast<const vxArray*>(0x2000);
  EXPECT_EQ(ioGetArrayName(a, 1), "");
  {
    io::ArrayNameScope outer(a, "fig");
    io::ArrayNameScope other(b, "ax", 2);
    EXPECT_EQ(ioGetArrayName(a, 1), "fig");
    EXPECT_EQ(ioGetArrayName(b, 2), "ax");
    EXPECT_EQ(ioGetArrayName(b, 1), "") << "the position is part of the match";
    {
      io::ArrayNameScope inner(a, "h");
      EXPECT_EQ(ioGetArrayName(a, 1), "h");
    }
    EXPECT_EQ(ioGetArrayName(a, 1), "fig");
  }
  EXPECT_EQ(ioGetArrayName(a, 1), "");
}
