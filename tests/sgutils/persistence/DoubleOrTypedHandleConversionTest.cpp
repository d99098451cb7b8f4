// Numbers and empties for properties typed by a graphics class, and struct
// fields from a file put back on an object, with the conversions the
// library installs for every class it adds.
#include <gtest/gtest.h>

#include "sgutils/objects/MixinTestSupport.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgutils/persistence/CustomElementSerialization.h"
#include "sgutils/persistence/DoubleOrTypedHandleConversion.h"
#include "support/ErrorId.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"

namespace sgtest::mixins {
namespace {

using graphics::datatype::HandleNumberTable;

COSTypeConversion* fromArray(const char* type) { return COSTypeRepository::getConversion(COSID("any"), COSID(type)); }
COSTypeConversion* toArray(const char* type) { return COSTypeRepository::getConversion(COSID(type), COSID("any")); }

class HandleConversion : public ::testing::Test {
 protected:
  void TearDown() override { remove(object); }
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
};

TEST_F(HandleConversion, NumberBecomesItsObjectInEveryForm) {
  Arr number(vxCreateDoubleScalar(HandleNumberTable::numberFor(object.get())));
  const COSValue scalar = fromArray("sg2utils.TestLoadObj scalar")->convert(COSValue(number.get()));
  EXPECT_EQ(scalar.asPointer<COSInterface>(), object.get());
  COSTypeRepository::getType(COSID("sg2utils.TestLoadObj scalar"))->destroy(scalar);
  Arr array(fromArray("sg2utils.TestLoadObj vector")->convert(COSValue(number.get())).asPointer<vxArray>());
  ASSERT_TRUE(omIsVCOS(array.get()));
  EXPECT_EQ(omGetArrayElement(array.get(), 0), object);
}

TEST_F(HandleConversion, EmptyIsNoObjectAndReadsBackAsAnEmptyOfTheClassOrAPlaceholder) {
  for (const char* type : {"sg2utils.TestLoadObj", "sg2utils.TestLoadObj scalar"})
    EXPECT_TRUE(fromArray(type)->convert(COSValue(empty().get())).isEmpty()) << type;
  Arr concrete(toArray("sg2utils.TestLoadObj")->convert(COSValue()).asPointer<vxArray>());
  EXPECT_TRUE(vxIsEmpty(concrete.get()));
  EXPECT_TRUE(vxIsA(concrete.get(), "sg2utils.TestLoadObj"));
  // Graphics is abstract: no empty of its own.
  Arr abstract(toArray("vantel.graphics.Graphics scalar")->convert(COSValue()).asPointer<vxArray>());
  EXPECT_TRUE(vxIsA(abstract.get(), "vantel.graphics.GraphicsPlaceholder"));
}

TEST_F(HandleConversion, NumberOfNoObjectIsRefused) {
  Arr stale(vxCreateDoubleScalar(-17.5));
  EXPECT_EQ(errorId([&] { fromArray("sg2utils.TestLoadObj scalar")->convert(COSValue(stale.get())); }),
            "VANTEL:vcos:ConversionFailed");
  EXPECT_EQ(errorId([&] { fromArray("sg2utils.TestLoadObj")->convert(COSValue(stale.get())); }),
            "VANTEL:vcos:ConversionFailed");
}

TEST_F(HandleConversion, ReplacingTwiceLeavesWorkingConversions) {
  const COSID cls("sg2utils.TestLoadObj");
  sgutils::DoubleOrTypedHandleConversion::replaceConverters(cls, false);
  sgutils::DoubleOrTypedHandleConversion::replaceConverters(cls, false);
  Arr back(toArray("sg2utils.TestLoadObj scalar")->convert(COSValue(object.get())).asPointer<vxArray>());
  EXPECT_EQ(omGetArrayElement(back.get(), 0), object);
}

TEST_F(HandleConversion, StructFieldsGoOntoTheObjectPastAccessChecks) {
  const char* names[] = {"Tag", "BusyAction", "Type"};
  Arr fields(vxCreateStructMatrix(1, 1, 3, names));
  vxSetFieldByNumber(fields.get(), 0, 0, vxCreateString("restored"));
  vxSetFieldByNumber(fields.get(), 0, 1, vxCreateString("cancel"));
  vxSetFieldByNumber(fields.get(), 0, 2, vxCreateString("line"));
  sgutils::CustomElementSerialization::copyValuesFromStructToObject(object, fields.get());
  EXPECT_EQ(getText(object, "Tag"), "restored");
  EXPECT_EQ(getText(object, "BusyAction"), "cancel");
  EXPECT_EQ(getText(object, "Type"), "line");

  const char* unknown[] = {"NoSuchProperty"};
  Arr bad(vxCreateStructMatrix(1, 1, 1, unknown));
  EXPECT_EQ(errorId([&] { sgutils::CustomElementSerialization::copyValuesFromStructToObject(object, bad.get()); }),
            "VANTEL:sg:InvalidProperty");
}

}  // namespace
}  // namespace sgtest::mixins
