// The default store of one object: writing and validating defaults, reading
// them up the tree, removing them, the look-ups by class, and the errors of
// names that address nothing a default can be given to.
#include <gtest/gtest.h>

#include "DefaultStoreClasses.h"
#include "sgutils/defaults/DefaultProp.h"
#include "vcos/ObjectArray.h"
#include "support/ErrorId.h"

namespace sgtest::defaults {
namespace {

using sgtest::errorId;
using sgutils::DefaultProp;
using sgutils::DefaultPropString;

DefaultPropString name(const char* text) { return DefaultPropString(text, false); }

std::vector<std::string> fieldsOf(const vxArray* s) {
  std::vector<std::string> out;
  if (!s) return out;
  for (int f = 0; f < vxGetNumberOfFields(s); ++f) out.push_back(vxGetFieldNameByNumber(s, f));
  return out;
}

TEST(DefaultStore, StoresAValidatedCopyUnderTheCompatNameOfThePropertysOwnName) {
  COSInterfacePtr top = make(kTop);
  DefaultProp defaults(top);
  EXPECT_EQ(defaults.getDefaultPropArray(), nullptr);

  Arr value = number(4);
  defaults.set(name("defaultLineshapeWidth"), value.get());
  vxGetPr(value.get())[0] = 99;  // the store keeps its own copy
  defaults.set(name("default.vantel.graphics.shape.Rectangle.Width"), number(5).get());
  EXPECT_EQ(fieldsOf(defaults.getDefaultPropArray()),
            (std::vector<std::string>{"defaultLineshapeWidth", "defaultRectangleshapeWidth"}));
  EXPECT_EQ(numberOf(defaults.get(name("defaultLineshapeWidth")).get()), 4);
  EXPECT_TRUE(defaults.contains(name("DefaultRectangleshapeWidth")));

  // A second write replaces the value and keeps the field where it was.
  defaults.set(name("defaultLineshapeWidth"), number(6).get());
  EXPECT_EQ(fieldsOf(defaults.getDefaultPropArray()).front(), "defaultLineshapeWidth");
  EXPECT_EQ(numberOf(defaults.get(name("defaultLineshapeWidth")).get()), 6);

  // A value the type refuses leaves the store as it was.
  EXPECT_NE(errorId([&] { defaults.set(name("defaultLineshapeEdgeColor"), number(7).get()); }), "");
  EXPECT_FALSE(defaults.contains(name("defaultLineshapeEdgeColor")));

  // The whole store comes back as a copy.
  Arr whole = DefaultProp::getDefaults(top);
  EXPECT_EQ(fieldsOf(whole.get()).size(), 2u);
}

TEST(DefaultStore, SpecialTextsStoreTheFactoryValueOrTheEscapedWord) {
  COSInterfacePtr top = make(kTop);
  DefaultProp defaults(top);
  defaults.set(name("defaultLineshapeWidth"), text("factory").get());
  EXPECT_EQ(numberOf(defaults.get(name("defaultLineshapeWidth")).get()), 1.0);
  defaults.set(name("defaultLineshapeTag"), text("\\remove").get());
  EXPECT_EQ(textOf(defaults.get(name("defaultLineshapeTag")).get()), "remove");
  defaults.set(name("defaultLineshapeTag"), text("\\default").get());
  EXPECT_EQ(textOf(defaults.get(name("defaultLineshapeTag")).get()), "default");
}

TEST(DefaultStore, NamesThatAddressNoDefaultableProperty) {
  COSInterfacePtr top = make(kTop);
  DefaultProp defaults(top);
  Arr one = number(1);
  EXPECT_EQ(errorId([&] { defaults.set(name("defaultLineshapeBogus"), one.get()); }), "VANTEL:sg:InvalidProperty");
  EXPECT_EQ(errorId([&] { defaults.set(name("defaultLineshapeNoDefault"), one.get()); }),
            "VANTEL:sg:DefaultCannotBeSetGet");
  EXPECT_EQ(errorId([&] { defaults.set(name("defaultLineshapeParent"), one.get()); }),
            "VANTEL:sg:DefaultCannotBeSetGet");
  EXPECT_EQ(errorId([&] { defaults.set(name("defaultLineshapeLocked"), one.get()); }), "VANTEL:vcos:SetProhibited");
  // A class that does not exist: a write is silent, a read of a store raises.
  EXPECT_EQ(errorId([&] { defaults.set(name("default.no.such.Thing.Width"), one.get()); }), "");
  EXPECT_EQ(errorId([&] { defaults.get(name("default.no.such.Thing.Width")); }), "VANTEL:sgutils:InvalidClass");
  EXPECT_EQ(errorId([&] { defaults.get(name("defaultLegend")); }), "VANTEL:sgutils:EmptyPropName");
  EXPECT_EQ(fieldsOf(defaults.getDefaultPropArray()), std::vector<std::string>{});
}

TEST(DefaultStore, ReadsTheNearestAncestorsValueUpTheParentChain) {
  COSInterfacePtr top = make(kTop);
  COSInterfacePtr middle = make(kMiddle, top);
  COSInterfacePtr leaf = make(kLeaf, middle);
  DefaultProp(top).set(name("defaultLineshapeWidth"), number(2).get());
  DefaultProp(top).set(name("defaultLineshapeTag"), text("from top").get());
  DefaultProp(middle).set(name("defaultLineshapeWidth"), number(3).get());

  DefaultProp fromLeaf(leaf);
  EXPECT_EQ(numberOf(fromLeaf.get(name("defaultLineshapeWidth")).get()), 3);
  EXPECT_EQ(textOf(fromLeaf.get(name("defaultLineshapeTag")).get()), "from top");
  EXPECT_EQ(fromLeaf.get(name("defaultLineshapeSelected")), nullptr);
  // The leaf itself stores nothing by being asked.
  EXPECT_EQ(fromLeaf.getDefaultPropArray(), nullptr);
}

TEST(DefaultStore, RemoveAndClearTakeFieldsOut) {
  COSInterfacePtr top = make(kTop);
  DefaultProp defaults(top);
  defaults.set(name("defaultLineshapeWidth"), number(2).get());
  defaults.set(name("defaultLineshapeTag"), text("t").get());
  defaults.remove(name("defaultLINESHAPEWIDTH"));  // compared without regard to case
  defaults.remove(name("default.gone.Class.Width"));  // no class, no field: nothing happens
  EXPECT_EQ(fieldsOf(defaults.getDefaultPropArray()), std::vector<std::string>{"defaultLineshapeTag"});
  SGHandle::fromObject(top.get())->clearDefaultProperty();
  EXPECT_EQ(fieldsOf(defaults.getDefaultPropArray()), std::vector<std::string>{});
}

// Fault pinned: a store of object class was left as it was.
TEST(DefaultStore, ClearEmptiesAnObjectStoreToo) {
  COSInterfacePtr top = make(kTop);
  COSInterfacePtr held = make(kTop);
  Arr objects(omCreateVCOSScalar(held));
  SGHandle* block = SGHandle::fromObject(top.get());
  block->setDefaultProp(objects.get());
  ASSERT_EQ(vxGetClassID(DefaultProp(top).getDefaultPropArray()), vxOBJECT_CLASS);
  block->clearDefaultProperty();
  const vxArray* emptied = DefaultProp(top).getDefaultPropArray();
  ASSERT_NE(emptied, nullptr);
  EXPECT_TRUE(vxIsStruct(emptied));
  EXPECT_EQ(fieldsOf(emptied), std::vector<std::string>{});
}

TEST(DefaultStore, ClassQueriesAndPossibleValues) {
  COSInterfacePtr top = make(kTop);
  DefaultProp defaults(top);
  EXPECT_EQ(defaults.getClassDefaults("defaultLine"), nullptr);  // no store
  defaults.set(name("defaultRectangleshapeWidth"), number(1).get());
  defaults.set(name("defaultLineshapeTag"), text("t").get());
  defaults.set(name("defaultLineshapeWidth"), number(2).get());
  defaults.set(name("defaultLegendWidth"), number(3).get());

  Arr lines = defaults.getClassDefaults("defaultLine");
  EXPECT_EQ(fieldsOf(lines.get()), (std::vector<std::string>{"defaultLineshapeTag", "defaultLineshapeWidth"}));
  EXPECT_EQ(numberOf(vxGetField(lines.get(), 0, "defaultLineshapeWidth")), 2);

  Arr selected = defaults.set(name("defaultLineshapeSelected"));
  ASSERT_TRUE(vxIsCell(selected.get()));
  EXPECT_GT(vxGetNumberOfElements(selected.get()), 1u);
  EXPECT_EQ(vxGetNumberOfElements(defaults.set(name("defaultLineshapeWidth")).get()), 0u);
  Arr all = defaults.set();
  EXPECT_EQ(fieldsOf(all.get()), fieldsOf(defaults.getDefaultPropArray()));
}

}  // namespace
}  // namespace sgtest::defaults
