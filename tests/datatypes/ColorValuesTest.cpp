// Colours, colour orders, colour maps and alpha maps: what users may give,
// what is refused and with which identifier, and what they read back.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "DatatypesTestSupport.h"

using namespace graphics::datatype;
using namespace dtt;

namespace {

void expectColor(const RGBAColor& c, double r, double g, double b, double a = 1.0) {
  EXPECT_DOUBLE_EQ(c.red(), r);
  EXPECT_DOUBLE_EQ(c.green(), g);
  EXPECT_DOUBLE_EQ(c.blue(), b);
  EXPECT_DOUBLE_EQ(c.alpha(), a);
  EXPECT_FALSE(c.isNone());
}

TEST(ColorParsing, NumericTriplesAndQuadruplesOfAnyRealClass) {
  expectColor(RGBAColor::fromArray(row({1, 0.5, 0}).get()), 1, 0.5, 0);
  expectColor(RGBAColor::fromArray(row({0.2, 0.4, 0.6, 0.25}).get()), 0.2, 0.4, 0.6, 0.25);
  expectColor(RGBAColor::fromArray(matrixOf(3, 1, {0, 1, 0}).get()), 0, 1, 0);  // a column is a vector too
  auto single = own(vxCreateNumericMatrix(1, 3, vxSINGLE_CLASS, vxREAL));
  static_cast<float*>(vxGetData(single.get()))[0] = 0.5f;
  expectColor(RGBAColor::fromArray(single.get()), 0.5, 0, 0);
  expectColor(RGBAColor::fromArray(row({0, 0, 0}).get()), 0, 0, 0);  // edges of the range
  expectColor(RGBAColor::fromArray(row({1, 1, 1, 0}).get()), 1, 1, 1, 0);
}

TEST(ColorParsing, NamesLettersAndHexInAnyCase) {
  expectColor(RGBAColor("red"), 1, 0, 0);
  expectColor(RGBAColor("  Magenta "), 1, 0, 1);
  expectColor(RGBAColor("k"), 0, 0, 0);
  expectColor(RGBAColor("W"), 1, 1, 1);
  expectColor(RGBAColor("y"), 1, 1, 0);
  expectColor(RGBAColor("#FF8000"), 1, 128 / 255.0, 0);
  expectColor(RGBAColor("#ff8000"), 1, 128 / 255.0, 0);
  expectColor(RGBAColor("#0F8"), 0, 1, 136 / 255.0);  // each digit doubled
  expectColor(RGBAColor::fromArray(text("blue").get()), 0, 0, 1);
  auto str = own(vxCreateStringArray(1, 1));
  vxSetStringElement(str.get(), 0, u"cyan");
  expectColor(RGBAColor::fromArray(str.get()), 0, 1, 1);
  EXPECT_TRUE(RGBAColor::fromArray(text("NONE").get()).isNone());
}

TEST(ColorParsing, RefusedValuesNameTheirIdentifier) {
  const char* numeric = "VANTEL:datatypes:InvalidColor";
  const char* words = "VANTEL:datatypes:InvalidColorText";
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(row({1, 0}).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(row({1, 0, 0, 1, 1}).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(row({1.0001, 0, 0}).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(row({-0.1, 0, 0}).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(row({std::nan(""), 0, 0}).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(matrixOf(2, 2, {0, 0, 0, 0}).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(own(vxCreateCellMatrix(1, 3)).get()); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(nullptr); }), numeric);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(text("re").get()); }), words);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(text("").get()); }), words);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(text("x").get()); }), words);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(text("#12345").get()); }), words);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(text("#GG0000").get()); }), words);
  EXPECT_EQ(raisedId([] { RGBAColor::fromArray(text("#").get()); }), words);
}

TEST(ColorParsing, ReadBackGivesWhatConvertsToAnEqualColour) {
  for (const auto& in : {row({0.1, 0.2, 0.3}), row({0.1, 0.2, 0.3, 0.4}), text("g"), text("#123456"), text("none")}) {
    RGBAColor c = RGBAColor::fromArray(in.get());
    auto back = own(c.toArray());
    EXPECT_EQ(RGBAColor::fromArray(back.get()), c) << vxGetClassName(in.get());
  }
  // An opaque colour reads back as a triple, a translucent one as a quadruple.
  EXPECT_EQ(vxGetNumberOfElements(own(RGBAColor(0.1, 0.2, 0.3).toArray()).get()), 3u);
  EXPECT_EQ(vxGetNumberOfElements(own(RGBAColor(0.1, 0.2, 0.3, 0.5).toArray()).get()), 4u);
  EXPECT_EQ(vxArrayToStdString(own(RGBAColor::none().toArray()).get()), "none");
}

TEST(ColorParsing, EqualityTellsNoneFromBlackAndAlphaApart) {
  EXPECT_EQ(RGBAColor("k"), RGBAColor(0, 0, 0));
  EXPECT_NE(RGBAColor::none(), RGBAColor(0, 0, 0));
  EXPECT_EQ(RGBAColor::none(), RGBAColor("none"));
  EXPECT_NE(RGBAColor(1, 0, 0, 1), RGBAColor(1, 0, 0, 0.5));
}

TEST(ColorTables, OrderAndMapTakeNBy3RowsInRange) {
  auto m = matrixOf(2, 3, {1, 0, 0, 1, 0, 0.5});  // rows [1 0 0] and [0 1 0.5]
  ColorOrder order(m.get());
  ASSERT_EQ(order.rows(), 2u);
  EXPECT_EQ(order.at(1), RGBAColor(0, 1, 0.5));
  ColorMap map(m.get());
  EXPECT_EQ(map.at(0), RGBAColor(1, 0, 0));
  EXPECT_EQ(ColorOrder(row({0.2, 0.3, 0.4}).get()).rows(), 1u);

  auto back = own(order.toArray());
  EXPECT_TRUE(vxAreMatricesEqualNanOptional(back.get(), m.get(), false));
  EXPECT_EQ(ColorOrder::fromArray(back.get()), order);
  EXPECT_NE(ColorOrder(row({0.2, 0.3, 0.4}).get()), order);
}

TEST(ColorTables, RefusedShapesAndValues) {
  for (const char* id : {"VANTEL:datatypes:InvalidColorOrder", "VANTEL:datatypes:InvalidColorMap"}) {
    bool isOrder = std::string(id).ends_with("Order");
    auto attempt = [isOrder](const vxArray* a) {
      return raisedId([&] {
        if (isOrder)
          ColorOrder{a};
        else
          ColorMap{a};
      });
    };
    EXPECT_EQ(attempt(matrixOf(3, 1, {0, 0, 0}).get()), id);
    EXPECT_EQ(attempt(matrixOf(1, 4, {0, 0, 0, 0}).get()), id);
    EXPECT_EQ(attempt(own(vxCreateDoubleMatrix(0, 3, vxREAL)).get()), id);
    EXPECT_EQ(attempt(matrixOf(1, 3, {0, 2, 0}).get()), id);
    EXPECT_EQ(attempt(text("red").get()), id);
  }
  EXPECT_EQ(raisedId([] { ColorOrder(std::vector<double>{0, 0}); }), "VANTEL:datatypes:InvalidColorOrder");
  EXPECT_EQ(raisedId([] { ColorMap(std::vector<double>{}); }), "VANTEL:datatypes:InvalidColorMap");
}

TEST(AlphaMaps, VectorsInRangeReadBackAsRows) {
  AlphaMap a(matrixOf(3, 1, {0, 0.5, 1}).get());
  EXPECT_EQ(a.values(), (std::vector<double>{0, 0.5, 1}));
  auto back = own(a.toArray());
  EXPECT_EQ(vxGetM(back.get()), 1u);
  EXPECT_EQ(AlphaMap::fromArray(back.get()), a);
  EXPECT_EQ(raisedId([] { AlphaMap(emptyDouble().get()); }), "VANTEL:datatypes:InvalidAlphaMap");
  EXPECT_EQ(raisedId([] { AlphaMap(row({0, 1.5}).get()); }), "VANTEL:datatypes:InvalidAlphaMap");
  EXPECT_EQ(raisedId([] { AlphaMap(matrixOf(2, 2, {0, 0, 0, 0}).get()); }), "VANTEL:datatypes:InvalidAlphaMap");
  EXPECT_EQ(raisedId([] { AlphaMap(std::vector<double>{}); }), "VANTEL:datatypes:InvalidAlphaMap");
}

}  // namespace
