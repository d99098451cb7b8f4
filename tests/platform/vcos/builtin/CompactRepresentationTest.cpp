// The dimensions-and-class compact representation that classes call by name
// for their objects inside a struct or cell, and its option checks.
#include <gtest/gtest.h>

#include "BuiltinTestSupport.h"
#include "vcos/CompactRepresentation.h"
#include "vcos/FunctionDispatcher.h"
#include "vx/vxData.h"

using bt::text;

namespace {

class CompactRepresentationTest : public ::testing::Test {
 protected:
  void SetUp() override { bt::setUp(); }

  // Calls the function by its dispatcher name, as a class's provider does.
  static std::string represent(std::vector<const vxArray*> in) {
    vxArray* out[1] = {nullptr};
    vcos::FunctionDispatcher::instance().call(vcos::kDimensionsAndClassNameRepresentation, 1, out,
                                              static_cast<int>(in.size()), in.data());
    matrix::unique_vxArray result(out[0]);
    return vxArrayToStdString(result.get());
  }
};

TEST_F(CompactRepresentationTest, DimensionsWithTheFullShortOrGivenClassName) {
  auto pair = bt::column({bt::make("bt.Shown"), bt::make("bt.Shown")}, "bt.Shown");
  auto configuration = text("SingleLine");
  auto simple = text("UseSimpleName"), className = text("ClassName"), other = text("pkg.Other");
  matrix::unique_vxArray yes(vxCreateLogicalScalar(true)), no(vxCreateDoubleScalar(0));
  EXPECT_EQ(represent({pair.get(), configuration.get()}), "2x1 bt.Shown");
  EXPECT_EQ(represent({pair.get(), configuration.get(), simple.get(), yes.get()}), "2x1 Shown");
  EXPECT_EQ(represent({pair.get(), configuration.get(), simple.get(), no.get()}), "2x1 bt.Shown");
  // The given name replaces the class name and is shortened like it.
  EXPECT_EQ(represent({pair.get(), configuration.get(), simple.get(), yes.get(), className.get(), other.get()}),
            "2x1 Other");
  // Values other than objects show their own class.
  matrix::unique_vxArray numbers(vxCreateDoubleMatrix(2, 3, vxREAL));
  EXPECT_EQ(represent({numbers.get(), configuration.get()}), "2x3 double");
}

TEST_F(CompactRepresentationTest, OptionsMustBeKnownNameValuePairs) {
  auto one = bt::arr(bt::make("bt.Shown"));
  auto configuration = text("Column"), simple = text("UseSimpleName"), color = text("Color");
  auto word = text("yes");
  matrix::unique_vxArray yes(vxCreateLogicalScalar(true));
  EXPECT_EQ(sgtest::errorId([&] { represent({one.get(), configuration.get(), simple.get()}); }),
            "VANTEL:vcos:display:BadOption");
  EXPECT_EQ(sgtest::errorId([&] { represent({one.get(), configuration.get(), simple.get(), word.get()}); }),
            "VANTEL:vcos:display:BadOption");
  EXPECT_EQ(sgtest::errorId([&] { represent({one.get(), configuration.get(), color.get(), yes.get()}); }),
            "VANTEL:vcos:display:UnknownOption");
  EXPECT_EQ(sgtest::errorId([&] { represent({one.get()}); }), "VANTEL:minrhs");
}

}  // namespace
