// The small value types and the enumerations: accepted inputs, refused inputs
// with their identifiers, read-back, equality.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "DatatypesTestSupport.h"

using namespace graphics::datatype;
using namespace dtt;

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(ZeroToOneValues, BothEndsIncludedNothingBeyond) {
  EXPECT_EQ(ZeroToOne::fromArray(scalar(0).get()).value(), 0.0);
  EXPECT_EQ(ZeroToOne::fromArray(scalar(1).get()).value(), 1.0);
  EXPECT_EQ(vxGetScalar(own(ZeroToOne(0.25).toArray()).get()), 0.25);
  for (double bad : {-1e-12, 1.0 + 1e-12, std::nan(""), kInf})
    EXPECT_EQ(raisedId([bad] { ZeroToOne::fromArray(scalar(bad).get()); }), "VANTEL:datatypes:InvalidZeroToOne")
        << bad;
  EXPECT_EQ(raisedId([] { ZeroToOne::fromArray(row({0.1, 0.2}).get()); }), "VANTEL:datatypes:InvalidZeroToOne");
  EXPECT_EQ(raisedId([] { ZeroToOne::fromArray(text("0.5").get()); }), "VANTEL:datatypes:InvalidZeroToOne");
}

TEST(PointsAndPositions, FiniteVectorsOfTheirLength) {
  Point3 p = Point3::fromArray(matrixOf(3, 1, {1, -2, 3.5}).get());
  EXPECT_EQ(p, Point3(1, -2, 3.5));
  EXPECT_EQ(Point3::fromArray(own(p.toArray()).get()), p);
  EXPECT_EQ(raisedId([] { Point3::fromArray(row({1, 2}).get()); }), "VANTEL:datatypes:InvalidPoint3");
  EXPECT_EQ(raisedId([] { Point3::fromArray(row({1, kInf, 0}).get()); }), "VANTEL:datatypes:InvalidPoint3");

  Position pos = Position::fromArray(row({-1, 2, 0, 4}).get());  // a zero width is allowed
  EXPECT_EQ(pos.width(), 0.0);
  EXPECT_EQ(Position::fromArray(own(pos.toArray()).get()), pos);
  EXPECT_EQ(raisedId([] { Position::fromArray(row({0, 0, -1, 1}).get()); }), "VANTEL:datatypes:InvalidPosition");
  EXPECT_EQ(raisedId([] { Position::fromArray(row({0, 0, 1, std::nan("")}).get()); }),
            "VANTEL:datatypes:InvalidPosition");
  EXPECT_EQ(raisedId([] { Position::fromArray(row({0, 0, 1}).get()); }), "VANTEL:datatypes:InvalidPosition");
}

TEST(TilesAndGridSizes, WholePositiveNumbers) {
  Tile byNumber = Tile::fromArray(scalar(4).get());
  EXPECT_FALSE(byNumber.isRowColumn());
  EXPECT_EQ(byNumber.index(), 4u);
  Tile byPlace = Tile::fromArray(row({2, 3}).get());
  EXPECT_TRUE(byPlace.isRowColumn());
  EXPECT_EQ(byPlace.row(), 2u);
  EXPECT_EQ(byPlace.column(), 3u);
  EXPECT_EQ(Tile::fromArray(own(byPlace.toArray()).get()), byPlace);
  EXPECT_EQ(Tile::fromArray(own(byNumber.toArray()).get()), byNumber);
  EXPECT_NE(Tile::number(2), Tile::rowColumn(2, 1));
  EXPECT_EQ(Tile::initialTile().index(), 1u);
  for (const auto& bad : {scalar(0), scalar(1.5), scalar(-2), row({1, 0}), row({1, 2, 3}), text("north")})
    EXPECT_EQ(raisedId([&] { Tile::fromArray(bad.get()); }), "VANTEL:datatypes:InvalidTile");

  TiledGridSize size = TiledGridSize::fromArray(row({3, 2}).get());
  EXPECT_EQ(size.rows(), 3u);
  EXPECT_EQ(size.columns(), 2u);
  EXPECT_EQ(TiledGridSize::fromArray(own(TiledGridSize().toArray()).get()), TiledGridSize(1, 1));
  for (const auto& bad : {scalar(2), row({0, 1}), row({1, 2.5}), row({kInf, 1})})
    EXPECT_EQ(raisedId([&] { TiledGridSize::fromArray(bad.get()); }), "VANTEL:datatypes:InvalidTiledGridSize");
}

TEST(TypeNames, AnyTextIncludingEmpty) {
  EXPECT_EQ(TypeName::fromArray(text("line").get()).str(), "line");
  EXPECT_EQ(TypeName::fromArray(own(vxCreateString(nullptr)).get()).str(), "");
  EXPECT_EQ(vxArrayToStdString(own(TypeName("axes").toArray()).get()), "axes");
  EXPECT_EQ(raisedId([] { TypeName::fromArray(scalar(1).get()); }), "VANTEL:datatypes:InvalidTypeName");
  EXPECT_EQ(raisedId([] { TypeName::fromArray(own(vxCreateStringArray(1, 1)).get()); }),  // a missing string
            "VANTEL:datatypes:InvalidTypeName");
}

TEST(Enumerations, TextsInTheirFixedOrderAnyCase) {
  // The order is part of the contract: the byte value of a text.
  EXPECT_EQ(enumerationFromArray<HandleVisibility>(text("on").get()), HandleVisibility::On);
  EXPECT_EQ(static_cast<int>(enumerationFromArray<HandleVisibility>(text("Callback").get())), 1);
  EXPECT_EQ(static_cast<int>(enumerationFromArray<HandleVisibility>(text("OFF").get())), 2);
  EXPECT_EQ(static_cast<int>(enumerationFromArray<AutoManual>(text("auto").get())), 0);
  EXPECT_EQ(static_cast<int>(enumerationFromArray<AutoManual>(text("manual").get())), 1);
  EXPECT_EQ(enumerationFromArray<PickableParts>(text("all").get()), PickableParts::All);
  EXPECT_EQ(enumerationFromArray<EraseMode>(text("xor").get()), EraseMode::Xor);
  EXPECT_EQ(enumerationFromArray<BusyAction>(text("cancel").get()), BusyAction::Cancel);
  EXPECT_EQ(enumerationFromArray<Units>(text("Normalized").get()), Units::Normalized);
  EXPECT_EQ(vxArrayToStdString(own(enumerationToArray(Units::Characters)).get()), "characters");
  EXPECT_STREQ(enumerationName(HandleVisibility::Callback), "callback");
}

TEST(Enumerations, RefusedTextsAndNonTexts) {
  const char* id = "VANTEL:datatypes:InvalidEnumerationValue";
  EXPECT_EQ(raisedId([] { enumerationFromArray<HandleVisibility>(text("hidden").get()); }), id);
  EXPECT_EQ(raisedId([] { enumerationFromArray<AutoManual>(text("autom").get()); }), id);  // no prefixes
  EXPECT_EQ(raisedId([] { enumerationFromArray<AutoManual>(scalar(0).get()); }), id);
  EXPECT_EQ(raisedId([] { enumerationFromArray<Units>(text("").get()); }), id);
  // A letter outside ASCII that folds to a listed one is no match; a char
  // matrix of two rows is no text; a string scalar is.
  EXPECT_EQ(raisedId([] { enumerationFromArray<AutoManual>(text("\xC3\xA1uto").get()); }), id);
  const vxSize twoRows[] = {2, 4};
  auto column = own(vxCreateCharArray(2, twoRows));
  for (vxSize k = 0; k < 8; ++k) vxGetChars(column.get())[k] = u"aauuttoo"[k];
  EXPECT_EQ(raisedId([&] { enumerationFromArray<AutoManual>(column.get()); }), id);
  auto manual = own(vxCreateStringArray(1, 1));
  vxSetStringElement(manual.get(), 0, std::u16string(u"Manual"));
  EXPECT_EQ(enumerationFromArray<AutoManual>(manual.get()), AutoManual::Manual);
}

TEST(OnOffSwitches, TextLogicalAndZeroOne) {
  EXPECT_EQ(onOffFromArray(text("ON").get()), on_off::On);
  EXPECT_EQ(onOffFromArray(text("off").get()), on_off::Off);
  EXPECT_EQ(onOffFromArray(own(vxCreateLogicalScalar(true)).get()), on_off::On);
  EXPECT_EQ(onOffFromArray(scalar(0).get()), on_off::Off);
  EXPECT_EQ(vxArrayToStdString(own(enumerationToArray(on_off::On)).get()), "on");
  for (const auto& bad : {scalar(2), text("yes"), row({1, 0}), emptyDouble()})
    EXPECT_EQ(raisedId([&] { onOffFromArray(bad.get()); }), "VANTEL:datatypes:InvalidOnOff");
}

}  // namespace
