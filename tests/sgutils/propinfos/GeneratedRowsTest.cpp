// What the rows of a class description turn into beyond properties: the
// graphics metadata attributes written on a row, events with their
// callback attribute, and the type names the generator admits.
#include <gtest/gtest.h>

#include <string>

#include "PropertyModelClasses.h"
#include "sgutils/metadata/SGCustomMetaEvent.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "sgutils/objects/MetaRows.gen.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventInfo.h"
#include "support/TypeListCheck.h"

namespace sgtest::propmodel {
namespace {

COSClass* metaRowsClass() {
  registerPropertyModelClasses();
  sgutils::generated::registerMetaRows();
  COSClass* cls = sgtest::MetaRows::getClassInstance();
  EXPECT_NE(cls, nullptr);
  return cls;
}

const SGCustomMetaProperty& metaOf(COSClass* cls, const char* name) {
  COSPropInfo* p = cls->findPropertyExact(COSID(name));
  EXPECT_NE(p, nullptr) << name;
  const SGCustomMetaProperty* meta = SGCustomMetaProperty::of(p);
  EXPECT_NE(meta, nullptr) << name;
  return *meta;
}

TEST(GeneratedRows, AttributesOfARowReachTheMetaDataOfItsPublicFace) {
  COSClass* cls = metaRowsClass();
  ASSERT_NE(cls, nullptr);
  const SGCustomMetaProperty& weight = metaOf(cls, "Weight");
  EXPECT_TRUE(weight.getAffectsObject());
  EXPECT_TRUE(weight.getAffectsLegend());
  EXPECT_FALSE(weight.getAffectsDataLimits());
  EXPECT_FALSE(cls->findPropertyExact(COSID("Weight"))->isResetAllowed()) << "!Resettable reaches the flag word";
  EXPECT_FALSE(metaOf(cls, "Weight_I").getAffectsObject()) << "attributes go to the public face only";
  EXPECT_TRUE(cls->isCustomSetOn(cls->findPropertyExact(COSID("Weight"))));

  const SGCustomMetaProperty& copied = metaOf(cls, "Copied");
  EXPECT_TRUE(copied.getReconnectOnCopy());
  EXPECT_FALSE(copied.getDeepCopy()) << "a library property keeps its own deep-copy answer";
  const SGCustomMetaProperty& plain = metaOf(cls, "Plain");
  EXPECT_FALSE(plain.getReconnectOnCopy());
  EXPECT_FALSE(plain.getAffectsObject());
  EXPECT_TRUE(plain.getResettable());
}

TEST(GeneratedRows, EventRowsAddEventsWithTheirCallbackAttribute) {
  COSClass* cls = metaRowsClass();
  ASSERT_NE(cls, nullptr);
  COSEventInfo* changed = cls->findEvent(COSID("Changed"));
  COSEventInfo* moved = cls->findEvent(COSID("Moved"));
  ASSERT_NE(changed, nullptr);
  ASSERT_NE(moved, nullptr);
  ASSERT_NE(SGCustomMetaEvent::of(changed), nullptr);
  EXPECT_TRUE(SGCustomMetaEvent::of(changed)->getHasCallbackProperty());
  ASSERT_NE(SGCustomMetaEvent::of(moved), nullptr);
  EXPECT_FALSE(SGCustomMetaEvent::of(moved)->getHasCallbackProperty());
}

// The generator refuses a type name that is not on its list, so every name
// on the list must be a type the started library knows.
TEST(GeneratedRows, EveryTypeNameTheGeneratorAdmitsIsRegistered) {
  registerPropertyModelClasses();
  sgtest::expectEveryListedTypeRegistered(std::string(SG_SOURCE_ROOT) + "/tools/classgen/types.txt", 21);
}

}  // namespace
}  // namespace sgtest::propmodel
