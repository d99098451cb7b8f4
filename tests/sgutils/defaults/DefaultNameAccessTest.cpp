// Defaults reached by name: get and set of default names with their usage
// records, constructor input named like a default, and the words "default",
// "remove" and their escapes given as a property value.
#include <gtest/gtest.h>

#include "DefaultStoreClasses.h"
#include "foundation/usagelog/UsageCapture.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/DefaultProp.h"
#include "support/ErrorId.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::defaults {
namespace {

using sgtest::errorId;
using sgutils::DefaultNameAccess;
using sgutils::DefaultProp;
using sgutils::DefaultPropString;

std::string keyValue(const usagelog::UsageRecord& r, const char* key) {
  for (const auto& [k, v] : r.keyValues)
    if (k == key) return v;
  return "<none>";
}

TEST(DefaultNameAccess, GetAndSetByNameWithUsageRecords) {
  COSInterfacePtr top = make(kTop);
  usagelog::UsageCapture capture;
  EXPECT_EQ(DefaultNameAccess::get(top, "default"), nullptr);  // no store, no error

  DefaultNameAccess::set(top, "defaultLineshapeWidth", number(2).get());
  DefaultNameAccess::set(top, "defaultRectangleshapeWidth", number(3).get());
  EXPECT_EQ(numberOf(DefaultNameAccess::get(top, "defaultLineshapeWidth").get()), 2);
  Arr lines = DefaultNameAccess::get(top, "defaultLine");
  EXPECT_EQ(vxGetNumberOfFields(lines.get()), 1);
  EXPECT_EQ(vxGetNumberOfFields(DefaultNameAccess::get(top, "Default").get()), 2);

  // "remove" and "default" as values take the default out.
  DefaultNameAccess::set(top, "defaultLineshapeWidth", text("remove").get());
  DefaultNameAccess::set(top, "defaultRectangleshapeWidth", text("default").get());
  // With no default left, a get by name falls back to the factory value.
  const Arr factory = DefaultProp::getFactoryValue(DefaultPropString("defaultLineshapeWidth", false));
  ASSERT_NE(factory, nullptr);
  EXPECT_EQ(numberOf(DefaultNameAccess::get(top, "defaultLineshapeWidth").get()), numberOf(factory.get()));
  EXPECT_EQ(numberOf(DefaultNameAccess::getFactory(top, "factoryLineshapeWidth").get()), numberOf(factory.get()));
  EXPECT_EQ(vxGetNumberOfFields(DefaultProp(top).getDefaultPropArray()), 0);

  // Without a value: the possible values, and no usage record.
  const std::size_t before = capture.records().size();
  EXPECT_TRUE(vxIsCell(DefaultNameAccess::set(top, "defaultLineshapeSelected", nullptr).get()));
  EXPECT_EQ(capture.records().size(), before);

  ASSERT_GE(capture.records().size(), 2u);
  const auto& set = capture.records()[1];
  EXPECT_EQ(set.eventKey, "VL_GRAPHICS_DEFAULTS");
  EXPECT_EQ(keyValue(set, "operation_type"), "set_default");
  EXPECT_EQ(keyValue(set, "target_object"), kTop);
  EXPECT_EQ(keyValue(set, "default_object"), "Line");
  EXPECT_EQ(keyValue(set, "property_name"), "Width");
  EXPECT_EQ(keyValue(capture.records()[0], "default_object"), "default");

  EXPECT_EQ(errorId([&] { DefaultNameAccess::set(top, "default", number(1).get()); }), "VANTEL:sgutils:EmptyClassName");
  EXPECT_EQ(errorId([&] { DefaultNameAccess::set(top, "factoryLineshapeWidth", number(1).get()); }),
            "VANTEL:sgutils:CannotSetFactoryValue");
}

TEST(DefaultNameAccess, ConstructorInputNamedLikeADefaultIsStored) {
  registerDefaultStoreClasses();
  Arr n1 = text("defaultLineshapeWidth"), v1 = number(6), n2 = text("Width"), v2 = number(2);
  const vxArray* in[] = {n1.get(), v1.get(), n2.get(), v2.get()};
  Arr made(omConstructObjectWithClient(kTop, 4, in, COSGetPublicClient()));
  COSInterfacePtr top = omGetArrayElement(made.get(), 0);
  EXPECT_EQ(numberOf(DefaultNameAccess::get(top, "defaultLineshapeWidth").get()), 6);
  EXPECT_EQ(numberOf(getProp(top, "Width").get()), 2);

  // Fault pinned: a factory name was refused as a factory value; as
  // constructor input it is a name that no property has.
  Arr f = text("factoryLineshapeWidth");
  const vxArray* bad[] = {f.get(), v1.get()};
  EXPECT_EQ(errorId([&] { Arr r(omConstructObjectWithClient(kTop, 2, bad, COSGetPublicClient())); }),
            "VANTEL:sg_graphics:invalidCtorProperty");
}

TEST(DefaultNameAccess, WordsAsValuesTakeTheInheritedDefaultOrTheTextItself) {
  COSInterfacePtr top = make(kTop);
  COSInterfacePtr leaf = make(kLeaf, top);
  DefaultProp(top).set(DefaultPropString("defaultLineshapeWidth", false), number(3).get());
  DefaultProp(leaf).set(DefaultPropString("defaultLineshapeWidth", false), number(4).get());
  const COSClient* client = COSGetPublicClient();

  SGHandle::setProperty(client, leaf, "Width", text("default").get());
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 4);
  // "remove" drops the leaf's own default first, so the top's applies.
  SGHandle::setProperty(client, leaf, "Width", text("remove").get());
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 3);
  EXPECT_FALSE(DefaultProp(leaf).contains(DefaultPropString("defaultLineshapeWidth", false)));

  SGHandle::setProperty(client, leaf, "Tag", text("\\default").get());
  EXPECT_EQ(textOf(getProp(leaf, "Tag").get()), "default");
  // No default anywhere: the word takes the factory value.
  SGHandle::setProperty(client, leaf, "Tag", text("remove").get());
  EXPECT_EQ(textOf(getProp(leaf, "Tag").get()), "");
  SGHandle::setProperty(client, leaf, "Width", text("factory").get());
  const Arr factory = DefaultProp::getFactoryValue(DefaultPropString("defaultLineshapeWidth", false));
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), numberOf(factory.get()));
}

}  // namespace
}  // namespace sgtest::defaults
