// The factory colour data: named orders and their truncation, the two
// tables, and the built-in functions with their argument checks.
#include <gtest/gtest.h>

#include <cmath>

#include "sgutils/colorvalues/ColorBuiltins.h"
#include "sgutils/colorvalues/ColorValues.h"
#include "sgutils/sgutils.h"
#include "support/ErrorId.h"
#include "vx/vx.h"

namespace {

using sgtest::errorId;
namespace cv = sgutils::colorvalues;

class ColorValues : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { VLInitialize_sgutils(); }
};

TEST_F(ColorValues, NamedOrdersAnyCaseAndTruncatedToThreeDecimals) {
  const auto gem = cv::getNamedColorOrder("GEM");
  ASSERT_EQ(gem.rows(), 7u);
  EXPECT_EQ(gem, cv::factoryColorOrder(true));
  // #0072BD: cut, not rounded (0xBD / 255 = 0.74118).
  EXPECT_EQ(gem.at(0).red(), 0.0);
  EXPECT_EQ(gem.at(0).green(), 0.447);
  EXPECT_EQ(gem.at(0).blue(), 0.741);
  const auto gem12 = cv::getNamedColorOrder("gem12");
  ASSERT_EQ(gem12.rows(), 12u);
  for (std::size_t r = 0; r < 7; ++r) EXPECT_EQ(gem12.at(r), gem.at(r)) << r;
  EXPECT_EQ(cv::extendedColorOrder(false), cv::getNamedColorOrder("glow12")) << "false means dark";
  EXPECT_EQ(cv::getNamedColorOrder("Sail").rows(), 5u);
  EXPECT_EQ(cv::getNamedColorOrder("reef").rows(), 6u);
  EXPECT_EQ(errorId([] { cv::getNamedColorOrder("gemstone"); }), "VANTEL:graphics:colororder:ValidNamedColorOrders");
  EXPECT_EQ(errorId([] { cv::getNamedColorOrder("ge"); }), "VANTEL:graphics:colororder:ValidNamedColorOrders");
}

TEST_F(ColorValues, HexStringsKeepTheirFullValueUntruncated) {
  const auto exact = cv::colorOrderFromHexArray({"#0072BD"}, false);
  EXPECT_NEAR(exact.at(0).blue(), 189.0 / 255, 1e-12);
}

TEST_F(ColorValues, TheTwoTables) {
  const auto map = cv::factoryColorMap();
  ASSERT_EQ(map.rows(), 256u);
  EXPECT_EQ(map.at(0), graphics::datatype::RGBAColor(0.2422, 0.1504, 0.6603));
  EXPECT_EQ(map.at(255), graphics::datatype::RGBAColor(0.9769, 0.9839, 0.0805));
  for (double v : map.columnMajor()) {
    EXPECT_GE(v, 0.0);
    EXPECT_LE(v, 1.0);
    EXPECT_EQ(std::round(v * 10000) / 10000, v) << "more than four decimals";
  }
  const auto alphaMap = cv::factoryAlphaMap();
  const auto& alpha = alphaMap.values();
  ASSERT_EQ(alpha.size(), 64u);
  EXPECT_EQ(alpha[0], 0.0);
  EXPECT_EQ(alpha[1], 0.0159);
  EXPECT_EQ(alpha[62], 0.9841);
  EXPECT_EQ(alpha[63], 1.0);
}

TEST_F(ColorValues, BuiltinsGiveArraysAndCheckTheirArguments) {
  matrix::unique_vxArray name(vxCreateString("dye"));
  const vxArray* in[] = {name.get()};
  vxArray* out[1] = {nullptr};
  colorOrderValues(1, out, 1, in);
  matrix::unique_vxArray order(out[0]);
  EXPECT_EQ(vxGetDimensions(order.get())[0], 7u);
  EXPECT_EQ(vxGetDimensions(order.get())[1], 3u);

  lumenColormapValues(0, out, 0, nullptr);
  matrix::unique_vxArray map(out[0]);
  EXPECT_EQ(vxGetDimensions(map.get())[0], 256u);
  EXPECT_EQ(vxGetPr(map.get())[0], 0.2422);

  matrix::unique_vxArray number(vxCreateDoubleScalar(3));
  const vxArray* bad[] = {number.get()};
  EXPECT_EQ(errorId([&] { colorOrderValues(1, out, 1, bad); }), "VANTEL:string:MustBeStringScalarOrCharacterVector");
  matrix::unique_vxArray missing(vxCreateStringArray(1, 1));
  const vxArray* absent[] = {missing.get()};
  EXPECT_EQ(errorId([&] { colorOrderValues(1, out, 1, absent); }), "VANTEL:string:MissingNotSupported");
  EXPECT_FALSE(errorId([&] { colorOrderValues(1, out, 0, in); }).empty()) << "no name was accepted";
  EXPECT_FALSE(errorId([&] { colorOrderValues(2, out, 1, in); }).empty()) << "two outputs were accepted";
}

}  // namespace
