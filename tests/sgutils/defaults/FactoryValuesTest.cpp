// Factory values: one by name, the map of a class and of all classes, and
// the factory names on get.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DefaultStoreClasses.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/defaults/FactoryBuiltins.h"
#include "support/ErrorId.h"

namespace sgtest::defaults {
namespace {

using sgtest::errorId;
using sgutils::DefaultNameAccess;
using sgutils::DefaultProp;
using sgutils::DefaultPropString;

std::vector<std::string> fieldNames(const vxArray* s) {
  std::vector<std::string> names;
  for (int f = 0; f < vxGetNumberOfFields(s); ++f) names.emplace_back(vxGetFieldNameByNumber(s, f));
  return names;
}

Arr classValues(const char* className) {
  Arr name = text(className);
  vxArray* out[1] = {nullptr};
  const vxArray* in[] = {name.get()};
  classFactoryValues(1, out, 1, in);
  return Arr(out[0]);
}

TEST(FactoryValues, OneValueByNameFollowsTheRulesOfDefaults) {
  registerDefaultStoreClasses();
  EXPECT_EQ(numberOf(DefaultProp::getFactoryValue(DefaultPropString("factoryLineshapeWidth", false)).get()), 1.0);
  EXPECT_EQ(errorId([] { DefaultProp::getFactoryValue(DefaultPropString("factoryLineshapeNoDefault", false)); }),
            "VANTEL:sg:DefaultCannotBeSetGet");
  EXPECT_EQ(errorId([] { DefaultProp::getFactoryValue(DefaultPropString("factoryLineshapeParent", false)); }),
            "VANTEL:sg:DefaultCannotBeSetGet");
  EXPECT_EQ(errorId([] { DefaultProp::getFactoryValue(DefaultPropString("factoryLineshapeNoSuch", false)); }),
            "VANTEL:sg:InvalidProperty");
  EXPECT_EQ(errorId([] { DefaultProp::getFactoryValue(DefaultPropString("", "no.such.Class", "Width", false)); }),
            "VANTEL:sgutils:InvalidClass");
  // A class with no property: the class's whole map.
  Arr whole = DefaultProp::getFactoryValue(DefaultPropString("factoryLegend", false));
  ASSERT_NE(whole, nullptr);
  EXPECT_TRUE(vxIsStruct(whole.get()));
}

TEST(FactoryValues, ClassMapListsVisibleReadableDefaultableSorted) {
  registerDefaultStoreClasses();
  Arr map = classValues(kLeaf);
  ASSERT_NE(map, nullptr);
  const std::vector<std::string> names = fieldNames(map.get());
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
  auto has = [&](const char* n) { return std::find(names.begin(), names.end(), n) != names.end(); };
  EXPECT_TRUE(has("factoryLineshapeWidth"));
  EXPECT_TRUE(has("factoryLineshapeTag"));
  // Set access is not looked at; a property without defaults is left out.
  EXPECT_TRUE(has("factoryLineshapeLocked"));
  EXPECT_FALSE(has("factoryLineshapeNoDefault"));
  EXPECT_EQ(numberOf(vxGetField(map.get(), 0, "factoryLineshapeWidth")), 1.0);
}

TEST(FactoryValues, BuiltinArgumentsAndClassesWithoutShortName) {
  registerDefaultStoreClasses();
  Arr name = text(kLeaf);
  vxArray* out[2] = {nullptr, nullptr};
  const vxArray* in[] = {name.get(), name.get()};
  EXPECT_FALSE(errorId([&] { classFactoryValues(2, out, 1, in); }).empty()) << "two outputs were accepted";
  EXPECT_FALSE(errorId([&] { classFactoryValues(1, out, 2, in); }).empty()) << "two inputs were accepted";
  EXPECT_FALSE(errorId([&] { classFactoryValues(1, out, 0, in); }).empty()) << "no input was accepted";
  // A registered class that the reverse map does not know gives no output.
  EXPECT_EQ(classValues("vantel.graphics.Graphics"), nullptr);
}

TEST(FactoryValues, RootListAndFactoryNamesOnGet) {
  registerDefaultStoreClasses();
  vxArray* out[1] = {nullptr};
  rootFactoryValues(1, out, 0, nullptr);
  Arr all(out[0]);
  const std::vector<std::string> names = fieldNames(all.get());
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
  // Each registered class of the map contributes its own list.
  for (const char* field : {"factoryLineshapeWidth", "factoryRectangleshapeWidth", "factoryLegendTag"})
    EXPECT_NE(std::find(names.begin(), names.end(), field), names.end()) << field;

  COSInterfacePtr top = make(kTop);
  // Only a root may ask for everything; these test classes are no root.
  EXPECT_EQ(errorId([&] { DefaultNameAccess::getFactory(top, "factory"); }),
            "VANTEL:sgutils:OnlyRootHasFactoryDefaults");
  EXPECT_EQ(errorId([&] { DefaultNameAccess::getFactory(top, ""); }), "VANTEL:sg:InvalidProperty");
  EXPECT_EQ(numberOf(DefaultNameAccess::getFactory(top, "factoryRectangleshapeWidth").get()), 1.0);
  // A stored default does not change the factory value.
  DefaultNameAccess::set(top, "defaultRectangleshapeWidth", number(7).get());
  EXPECT_EQ(numberOf(DefaultNameAccess::getFactory(top, "factoryRectangleshapeWidth").get()), 1.0);
  EXPECT_EQ(numberOf(DefaultNameAccess::get(top, "defaultRectangleshapeWidth").get()), 7.0);
}

}  // namespace
}  // namespace sgtest::defaults
