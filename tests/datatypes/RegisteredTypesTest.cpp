// The types as the class-object system sees them: every type registered
// under its full name, its conversions from and to "any", the meaning of its
// value word (copy, destroy, equality), and the registration calls.
#include <gtest/gtest.h>

#include "DatatypesTestSupport.h"

using namespace graphics::datatype;
using namespace dtt;

namespace {

class RegisteredTypes : public ::testing::Test {
 protected:
  void SetUp() override { dtt::setUp(); }
};

struct RoundTrip {
  const char* type;
  std::function<unique_vxArray()> good;  // a value the type accepts
  std::function<unique_vxArray()> bad;   // one it refuses
  const char* error;
};

const RoundTrip kRoundTrips[] = {
    {kOnOffType, [] { return text("on"); }, [] { return text("maybe"); }, "VANTEL:datatypes:InvalidOnOff"},
    {kAutoManualType, [] { return text("manual"); }, [] { return text("x"); },
     "VANTEL:datatypes:InvalidEnumerationValue"},
    {kHandleVisibilityType, [] { return text("callback"); }, [] { return scalar(1); },
     "VANTEL:datatypes:InvalidEnumerationValue"},
    {kPickablePartsType, [] { return text("none"); }, [] { return text("some"); },
     "VANTEL:datatypes:InvalidEnumerationValue"},
    {kEraseModeType, [] { return text("background"); }, [] { return text("erase"); },
     "VANTEL:datatypes:InvalidEnumerationValue"},
    {kBusyActionType, [] { return text("queue"); }, [] { return text("drop"); },
     "VANTEL:datatypes:InvalidEnumerationValue"},
    {kUnitsType, [] { return text("points"); }, [] { return text("miles"); },
     "VANTEL:datatypes:InvalidEnumerationValue"},
    {kRGBAColorType, [] { return row({0.5, 0.25, 1}); }, [] { return row({2, 0, 0}); },
     "VANTEL:datatypes:InvalidColor"},
    {kColorOrderType, [] { return matrixOf(2, 3, {1, 0, 0, 1, 0, 0}); }, [] { return row({1, 0}); },
     "VANTEL:datatypes:InvalidColorOrder"},
    {kColorMapType, [] { return row({0, 0.5, 1}); }, [] { return emptyDouble(); },
     "VANTEL:datatypes:InvalidColorMap"},
    {kAlphaMapType, [] { return row({0, 0.5, 1}); }, [] { return row({-1}); }, "VANTEL:datatypes:InvalidAlphaMap"},
    {kZeroToOneType, [] { return scalar(0.75); }, [] { return scalar(7); }, "VANTEL:datatypes:InvalidZeroToOne"},
    {kPoint3Type, [] { return row({1, 2, 3}); }, [] { return row({1, 2}); }, "VANTEL:datatypes:InvalidPoint3"},
    {kPositionType, [] { return row({0, 0, 2, 3}); }, [] { return row({0, 0, -2, 3}); },
     "VANTEL:datatypes:InvalidPosition"},
    {kTileType, [] { return row({1, 2}); }, [] { return scalar(0); }, "VANTEL:datatypes:InvalidTile"},
    {kTiledGridSizeType, [] { return row({2, 2}); }, [] { return row({2, 0}); },
     "VANTEL:datatypes:InvalidTiledGridSize"},
    {kTypeNameType, [] { return text("line"); }, [] { return scalar(1); }, "VANTEL:datatypes:InvalidTypeName"},
    {kCallbackType, [] { return text("disp(1)"); }, [] { return scalar(1); }, "VANTEL:datatypes:InvalidCallback"},
    {kHandleOrEmptyType, [] { return emptyDouble(); }, [] { return text("gca"); },
     "VANTEL:datatypes:InvalidHandleOrEmpty"},
    {kLayoutOrEmptyType, [] { return emptyDouble(); }, [] { return row({1, 2}); }, "VANTEL:datatypes:InvalidLayout"},
};

TEST_F(RegisteredTypes, EveryTypeRoundTripsThroughAnyAndRefusesWithItsIdentifier) {
  int builtInPlace = 0;
  int takesLogical = 0;
  for (const RoundTrip& t : kRoundTrips) {
    SCOPED_TRACE(t.type);
    COSDataTypePtr type(t.type);
    ASSERT_TRUE(type);
    EXPECT_STREQ(type->getName(), t.type);
    auto given = t.good();
    COSValue v = fromAny(t.type, given.get());
    EXPECT_TRUE(type->checkValue(v, false));
    auto back = toAny(t.type, v);
    EXPECT_TRUE(vxAreMatricesEqualNanOptional(back.get(), given.get(), false));
    COSValue again = fromAny(t.type, back.get());
    EXPECT_TRUE(type->isEqual(v, again));
    COSValue copy = type->copy(v);
    EXPECT_TRUE(type->isEqual(copy, v));
    type->destroy(copy);
    type->destroy(again);
    type->destroy(v);
    auto refused = t.bad();
    EXPECT_EQ(raisedId([&] { fromAny(t.type, refused.get()); }), t.error);

    // A value built in the caller's room equals the heap one and is refused
    // alike; nothing is built when the conversion raises.
    const COSTypeConversion* conversion = COSTypeRepository::getConversion(COSID("any"), COSID(t.type));
    ASSERT_NE(conversion, nullptr);
    alignas(std::max_align_t) unsigned char room[COSTypeConversion::kInPlaceBytes];
    COSValue inPlace;
    COSTypeConversion::EndInPlace end = nullptr;
    if (conversion->convertInPlace(COSValue(given.get()), room, inPlace, end)) {
      EXPECT_EQ(inPlace.getValue(), static_cast<void*>(room));
      COSValue heap = fromAny(t.type, given.get());
      EXPECT_TRUE(type->isEqual(inPlace, heap));
      type->destroy(heap);
      end(room);
      end = nullptr;
      EXPECT_EQ(raisedId([&] { conversion->convertInPlace(COSValue(refused.get()), room, inPlace, end); }), t.error);
      EXPECT_EQ(end, nullptr);
      ++builtInPlace;
    }
    // A conversion that lets a caller take a logical scalar's word must
    // give that word itself.
    if (conversion->takesLogicalScalarAsBool()) {
      ++takesLogical;
      for (bool b : {false, true}) {
        const unique_vxArray logical(vxCreateLogicalScalar(b));
        EXPECT_EQ(conversion->convert(COSValue(logical.get())).getValue(), COSValue::fromBool(b).getValue()) << t.type;
      }
    }
  }
  EXPECT_EQ(builtInPlace, 13) << "every value class converts in place";
  EXPECT_EQ(takesLogical, 1) << "on/off alone takes a logical scalar as its word";
}

TEST_F(RegisteredTypes, DifferentValuesCompareUnequal) {
  auto differ = [](const char* type, unique_vxArray a, unique_vxArray b) {
    COSValue x = fromAny(type, a.get()), y = fromAny(type, b.get());
    bool equal = COSDataTypePtr(type)->isEqual(x, y);
    destroyValue(type, x);
    destroyValue(type, y);
    return !equal;
  };
  EXPECT_TRUE(differ(kRGBAColorType, text("r"), text("g")));
  EXPECT_TRUE(differ(kRGBAColorType, text("none"), text("k")));
  EXPECT_TRUE(differ(kAutoManualType, text("auto"), text("manual")));
  EXPECT_TRUE(differ(kOnOffType, text("on"), text("off")));
  EXPECT_TRUE(differ(kColorOrderType, row({1, 0, 0}), matrixOf(2, 3, {1, 1, 0, 0, 0, 0})));
  EXPECT_TRUE(differ(kCallbackType, text("a"), emptyDouble()));
  EXPECT_FALSE(differ(kRGBAColorType, text("red"), row({1, 0, 0})));
}

TEST_F(RegisteredTypes, ValueWordsFollowTheTable) {
  // on/off: the bool itself.
  COSValue on = fromAny(kOnOffType, text("on").get());
  EXPECT_EQ(on.word(), 1u);
  // Only that word is the whole value, which a holder may compare and store
  // without the type; a pointer word never is.
  for (const RoundTrip& t : kRoundTrips)
    EXPECT_EQ(COSDataTypePtr(t.type)->isPlainWord(), std::string_view(t.type) == kOnOffType) << t.type;
  EXPECT_FALSE(COSDataTypePtr(kCOSInterfaceType)->isPlainWord());
  // Enumerations: a pointer to one byte; copies point at the same canonical
  // byte, so passing a value allocates nothing.
  COSDataTypePtr am(kAutoManualType);
  COSValue manual = fromAny(kAutoManualType, text("manual").get());
  EXPECT_EQ(*manual.asPointer<const unsigned char>(), 1);
  EXPECT_EQ(am->copy(manual), manual);
  unsigned char memberByte = 1;  // a mode byte inside an object
  EXPECT_TRUE(am->isEqual(COSValue(&memberByte), manual));
  EXPECT_FALSE(am->checkValue(COSValue(canonicalEnumerationByte(2)), false));
  EXPECT_EQ(raisedId([&] { am->checkValue(COSValue(canonicalEnumerationByte(2)), true); }),
            "VANTEL:datatypes:InvalidValue");
  // Value classes: a pointer to the C++ value.
  COSValue red = fromAny(kRGBAColorType, text("red").get());
  EXPECT_EQ(*red.asPointer<const RGBAColor>(), RGBAColor(1, 0, 0));
  COSDataTypePtr color(kRGBAColorType);
  COSValue copy = color->copy(red);
  EXPECT_NE(copy, red);  // a separate value, freed separately
  color->destroy(red);
  EXPECT_EQ(*copy.asPointer<const RGBAColor>(), RGBAColor(1, 0, 0));
  color->destroy(copy);
  // A null word reads as the type's default value.
  COSDataTypePtr cb(kCallbackType);
  COSValue empty = fromAny(kCallbackType, emptyDouble().get());
  EXPECT_TRUE(cb->isEqual(COSValue(), empty));
  cb->destroy(empty);
  EXPECT_EQ(vxGetNumberOfElements(toAny(kCallbackType, COSValue()).get()), 0u);
}

// Reads of an enumeration share one kept text per value: each read is an
// array of its own, the null word reads as the first value and a byte past
// the enumeration as the empty text.
TEST_F(RegisteredTypes, EnumerationReadsAreTextsOfTheirOwn) {
  COSValue manual = fromAny(kAutoManualType, text("manual").get());
  auto first = toAny(kAutoManualType, manual);
  auto second = toAny(kAutoManualType, manual);
  ASSERT_TRUE(first && second);
  EXPECT_NE(first.get(), second.get());
  first.reset();
  EXPECT_EQ(vxArrayToStdString(second.get()), "manual");
  EXPECT_EQ(vxArrayToStdString(toAny(kAutoManualType, COSValue()).get()), "auto");
  EXPECT_EQ(vxArrayToStdString(toAny(kUnitsType, fromAny(kUnitsType, text("points").get())).get()), "points");
  auto outside = toAny(kAutoManualType, COSValue(canonicalEnumerationByte(9)));
  EXPECT_TRUE(vxIsChar(outside.get()));
  EXPECT_EQ(vxGetNumberOfElements(outside.get()), 0u);
}

TEST_F(RegisteredTypes, RegistrationCallsFindWhatExists) {
  COSPackage* p = register_namespace("vantel.graphics.datatype", nullptr, nullptr);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(register_namespace("vantel.graphics.datatype", nullptr, nullptr), p);
  COSPackage* fresh = register_namespace(
      "dtt.described", [] { return "no_description"; }, [] { return "no details"; });
  EXPECT_STREQ(fresh->getNamespaceInfo()->getDescription(), "no_description");
  EXPECT_STREQ(fresh->getNamespaceInfo()->getDetails(), "no details");

  COSDataTypePtr existing(kRGBAColorType);
  class Impostor final : public COSDataType {
   public:
    Impostor() : COSDataType(COSID(kRGBAColorType)) {}
  };
  EXPECT_EQ(register_datatype(new Impostor).get(), existing.get());
  VLInitialize_sgdatatypes();  // a second start changes nothing
  EXPECT_EQ(COSDataTypePtr(kRGBAColorType).get(), existing.get());
}

// An enumeration of a library above, with a value that is valid but hidden.
constexpr const char* kSchemeNames[] = {"light", "dark", "white"};
constexpr EnumerationDescription kScheme{"Scheme", kSchemeNames, 3, /*listed=*/2};

TEST_F(RegisteredTypes, EnumerationsOfOtherLibrariesWithHiddenValues) {
  COSDataTypePtr type = register_enumeration("dtt.datatype.Scheme", kScheme);
  EXPECT_EQ(type->getPossibleValues(), (std::vector<std::string>{"light", "dark"}));
  COSValue white = fromAny("dtt.datatype.Scheme", text("White").get());
  EXPECT_EQ(*white.asPointer<const unsigned char>(), 2);
  EXPECT_EQ(vxArrayToStdString(toAny("dtt.datatype.Scheme", white).get()), "white");
  try {
    fromAny("dtt.datatype.Scheme", text("grey").get());
    ADD_FAILURE() << "grey accepted";
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:datatypes:InvalidEnumerationValue");
    EXPECT_EQ(e.message().arguments().at(1), "'light' or 'dark'");  // the hidden value is not offered
  }
  // The library that registered it owns its conversions: termination of
  // this library leaves them.
  VLTerminate_sgdatatypes();
  EXPECT_NE(COSTypeRepository::getConversion(COSID("any"), COSID("dtt.datatype.Scheme")), nullptr);
  VLInitialize_sgdatatypes();
}

TEST_F(RegisteredTypes, TerminationTakesTheConversionsAwayAndStartBringsThemBack) {
  COSID any("any"), color(kRGBAColorType);
  ASSERT_NE(COSTypeRepository::getConversion(any, color), nullptr);
  VLTerminate_sgdatatypes();
  EXPECT_EQ(COSTypeRepository::getConversion(any, color), nullptr);
  EXPECT_EQ(COSTypeRepository::getConversion(COSID("double"), COSID(kCOSInterfaceType)), nullptr);
  VLInitialize_sgdatatypes();
  EXPECT_NE(COSTypeRepository::getConversion(any, color), nullptr);
}

}  // namespace
