// The guards of a lent property value and of a converted value: each gives
// its value back exactly once, also after being moved, and a converted
// value handed on is not destroyed.
#include <gtest/gtest.h>

#include <utility>

#include "VcosTestClasses.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropT.h"
#include "vcos/ConvertedValue.h"

namespace {

// A property whose values are numbered and whose releases are counted.
class CountingProp final : public COSPropT {
 public:
  CountingProp() : COSPropT(COSID("vt.Counting"), COSID("Counted"), COSDataTypePtr("double scalar")) {}
  COSValue getValue(COSInterface*) const override { return COSValue::fromInt(++reads); }
  void releaseValue(COSInterface*, COSValue value) const override {
    ++releases;
    lastReleased = value.asInt();
  }
  mutable int reads = 0;
  mutable int releases = 0;
  mutable std::int64_t lastReleased = 0;
};

// A type whose destroys are counted.
class CountingType final : public COSDataType {
 public:
  CountingType() : COSDataType(COSID("vt.CountingType")) {}
  void destroy(COSValue value) const override {
    ++destroys;
    lastDestroyed = value.asInt();
  }
  mutable int destroys = 0;
  mutable std::int64_t lastDestroyed = 0;
};

TEST(ValueGuards, ABorrowedValueGoesBackOnceThroughItsProperty) {
  COSInterfacePtr object = vt::make("vt.Circle");
  COSInterfacePtr owner(new CountingProp);
  auto& prop = static_cast<CountingProp&>(*owner);
  {
    BorrowedPropertyValue first = BorrowedPropertyValue::readDirect(object.get(), &prop);
    EXPECT_EQ(first.get().asInt(), 1);
    BorrowedPropertyValue moved = std::move(first);
    EXPECT_EQ(prop.releases, 0);
    BorrowedPropertyValue second = BorrowedPropertyValue::readDirect(object.get(), &prop);
    second = std::move(moved);  // gives value 2 back, takes value 1
    EXPECT_EQ(prop.releases, 1);
    EXPECT_EQ(prop.lastReleased, 2);
  }
  EXPECT_EQ(prop.releases, 2);
  EXPECT_EQ(prop.lastReleased, 1);
}

TEST(ValueGuards, AConvertedValueIsDestroyedOnceUnlessHandedOn) {
  auto* type = new CountingType;
  COSDataTypePtr typePtr(type);
  {
    ConvertedValue a(typePtr, COSValue::fromInt(5));
    ConvertedValue b = std::move(a);
    EXPECT_EQ(a.get().asInt(), 0) << "a moved-from guard still holds the value";
    ConvertedValue handedOn(typePtr, COSValue::fromInt(6));
    EXPECT_EQ(handedOn.release().asInt(), 6);
  }
  EXPECT_EQ(type->destroys, 1);
  EXPECT_EQ(type->lastDestroyed, 5);
}

}  // namespace
