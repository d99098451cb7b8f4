// The manager's choice of strategy by the kind of component, its walk to
// the figure that may hold app-building defaults, and its methods, over
// classes of the class system made for the test that take the manager on as
// a superclass.
#include <gtest/gtest.h>

#include <string>

#include "sgutils/objects/ViewPropertiesManager.gen.h"
#include "sgutils/sgutils.h"
#include "support/ErrorId.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/vcos.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using graphics::mixin::ViewPropertiesManager;

class ContainerInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Container"; }
  void initializeClass(COSClass*, const COSClient*) override {}
};

// vmt.Panel: a custom component (a container of components).
class PanelInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Panel"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(COSID("lyt.Container"));
    c->addSuperclass(ViewPropertiesManager::classID());
  }
};

// vmt.Figure with the property whose value marks an app-building figure.
class FigureInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Figure"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(ViewPropertiesManager::classID());
    std::string flag = "yes";
    c->addProperty(new COSPropT(c->getID(), COSID("HasAppBuildingDefaults"), COSDataTypePtr("asciiString"),
                                COSValue(&flag)));
  }
};

class PlainInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Button"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(ViewPropertiesManager::classID()); }
};

struct Namespace final : COSNamespaceInfo {
  explicit Namespace(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }
  const char* name_;
};

COSInterfacePtr make(const char* className) {
  static const bool registered = [] {
    VLInitialize_sgutils();
    COSPackage::addNamespace(new Namespace("lyt"))->addClass(new ContainerInfo);
    COSPackage* vmt = COSPackage::addNamespace(new Namespace("vmt"));
    vmt->addClass(new PanelInfo);
    vmt->addClass(new FigureInfo);
    vmt->addClass(new PlainInfo);
    return true;
  }();
  (void)registered;
  return COSClass::getClass(COSID(className))->createInstance(COSGetPublicClient());
}

ViewPropertiesManager& managerOf(const COSInterfacePtr& object) {
  ViewPropertiesManager* manager = ViewPropertiesManager::fromObject(object.get());
  EXPECT_NE(manager, nullptr);
  return *manager;
}

struct Objects {
  std::vector<COSInterfacePtr> made;
  COSInterfacePtr operator()(const char* className) { return made.emplace_back(make(className)); }
  ~Objects() {
    for (auto it = made.rbegin(); it != made.rend(); ++it) (*it)->deleteObject(COSGetPublicClient());
  }
};

TEST(ViewPropertiesManager, ACustomComponentKeepsNoNamesAndNoCache) {
  Objects objects;
  COSInterfacePtr panel = objects("vmt.Panel");
  ViewPropertiesManager& manager = managerOf(panel);
  EXPECT_TRUE(ViewPropertiesManager::isCustomComponent(panel.get()));
  manager.markViewPropertyDirty(panel.get(), "Title");
  EXPECT_EQ(manager.strategy(), nullptr);
  EXPECT_FALSE(manager.isCacheReady());
  EXPECT_EQ(manager.getDirtyProperties(), nullptr);
  EXPECT_TRUE(manager.getDirtyPropertyStrings().empty());
}

TEST(ViewPropertiesManager, AnyOtherComponentGetsOneStrategyForLife) {
  Objects objects;
  COSInterfacePtr button = objects("vmt.Button");
  ViewPropertiesManager& manager = managerOf(button);
  EXPECT_FALSE(ViewPropertiesManager::isCustomComponent(button.get()));
  EXPECT_FALSE(ViewPropertiesManager::isVantelComponent(button.get()));
  manager.markViewPropertyDirty(button.get(), "Text_I");
  const sgutils::ViewPropertiesStrategy* first = manager.strategy();
  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(manager.isCacheReady());
  manager.markViewPropertyDirty(button.get(), "Text");
  EXPECT_EQ(manager.strategy(), first);
  EXPECT_EQ(manager.getDirtyPropertyStrings(), (std::vector<std::string>{"ContextMenu", "Text"}));
  manager.disableCache();
  EXPECT_FALSE(manager.isCacheReady());
}

// The strategy is made at the first mark; until then the names the class
// starts with are reported, and once the view was told they stay gone.
TEST(ViewPropertiesManager, TheStartingNamesNeedNoStrategyAndStayGoneOnceTold) {
  Objects objects;
  COSInterfacePtr first = objects("vmt.Button");
  COSInterfacePtr second = objects("vmt.Button");
  ViewPropertiesManager& told = managerOf(first);
  ViewPropertiesManager& fresh = managerOf(second);
  EXPECT_FALSE(told.hasDirtyProperties());
  told.setStrategy(first.get());
  fresh.setStrategy(second.get());
  EXPECT_EQ(told.strategy(), nullptr);
  EXPECT_TRUE(told.hasDirtyProperties());
  EXPECT_EQ(told.getDirtyPropertyStrings(), std::vector<std::string>{"ContextMenu"});
  matrix::unique_vxArray names(told.getDirtyProperties());
  ASSERT_NE(names, nullptr);
  EXPECT_EQ(vxGetNumberOfElements(names.get()), 1u);

  told.markClean();
  EXPECT_FALSE(told.hasDirtyProperties());
  told.markViewPropertyDirty(first.get(), "Text_I");
  EXPECT_NE(told.strategy(), nullptr);
  EXPECT_EQ(told.getDirtyPropertyStrings(), std::vector<std::string>{"Text"});
  // Another object of the class still starts with the class's names.
  fresh.markViewPropertyDirty(second.get(), "Text");
  EXPECT_EQ(fresh.getDirtyPropertyStrings(), (std::vector<std::string>{"ContextMenu", "Text"}));
}

TEST(ViewPropertiesManager, TheWalkUpStopsAtTheFirstFigure) {
  Objects objects;
  COSInterfacePtr figure = objects("vmt.Figure");
  COSInterfacePtr panel = objects("vmt.Panel");
  COSInterfacePtr button = objects("vmt.Button");
  EXPECT_FALSE(ViewPropertiesManager::isInAppBuildingFigure(button.get()));
  figure->hookChild(panel.get());
  panel->hookChild(button.get());
  EXPECT_TRUE(ViewPropertiesManager::isAppBuildingFigure(figure));
  EXPECT_TRUE(ViewPropertiesManager::isInAppBuildingFigure(button.get()));
  EXPECT_TRUE(ViewPropertiesManager::isInAppBuildingFigure(figure.get()));
  // Only a class named Figure counts.
  EXPECT_FALSE(ViewPropertiesManager::isAppBuildingFigure(panel));
}

using Arr = matrix::unique_vxArray;

// Calls a method of the object's class as the language does (public client).
Arr call(const COSInterfacePtr& object, const char* method, const vxArray* argument = nullptr) {
  Arr self(omCreateVCOSScalar(object));
  const vxArray* inputs[] = {self.get(), argument};
  vxArray* outputs[1] = {nullptr};
  EXPECT_TRUE(omCallMethod(object->getClass()->getID(), method, COSGetPublicClient(), 1, outputs, argument ? 2 : 1,
                           inputs, true));
  return Arr(outputs[0]);
}

std::vector<std::string> texts(const vxArray* row) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < vxGetNumberOfElements(row); ++i) {
    const std::u16string s = vxGetStringElement(row, i).value_or(u"");
    out.emplace_back(s.begin(), s.end());
  }
  return out;
}

Arr cell(std::initializer_list<const char*> names) {
  Arr c(vxCreateCellMatrix(1, names.size()));
  std::size_t i = 0;
  for (const char* name : names) vxSetCell(c.get(), i++, vxCreateString(name));
  return c;
}

TEST(ViewPropertiesManager, TheMethodsMarkReadAndDisableFromTheLanguage) {
  Objects objects;
  COSInterfacePtr button = objects("vmt.Button");
  call(button, "markViewPropertiesDirty", cell({"A", "B_I", "A"}).get());
  Arr names = call(button, "getDirtyProperties");
  ASSERT_TRUE(vxIsA(names.get(), "string"));
  EXPECT_EQ(texts(names.get()), (std::vector<std::string>{"ContextMenu", "A", "B"}));
  EXPECT_TRUE(vxIsLogicalScalarTrue(call(button, "isCacheReady").get()));
  call(button, "disableCache");
  EXPECT_FALSE(vxIsLogicalScalarTrue(call(button, "isCacheReady").get()));
  EXPECT_FALSE(vxIsLogicalScalarTrue(call(button, "isInAppBuildingFigure").get()));

  // A custom component has no strategy: no names, and no cache.
  COSInterfacePtr panel = objects("vmt.Panel");
  call(panel, "markViewPropertiesDirty", cell({"Title"}).get());
  Arr none = call(panel, "getDirtyProperties");
  EXPECT_FALSE(vxIsA(none.get(), "string"));
  EXPECT_TRUE(vxIsEmpty(none.get()));
  EXPECT_FALSE(vxIsLogicalScalarTrue(call(panel, "isCacheReady").get()));
}

// The names are read entry by entry as cells: a value with entries that is
// no cell is refused before any name is marked, and one without entries
// marks nothing and passes.
TEST(ViewPropertiesManager, MarkingFromAValueThatIsNoCellIsRefusedAtItsFirstEntry) {
  Objects objects;
  COSInterfacePtr button = objects("vmt.Button");
  ViewPropertiesManager& manager = managerOf(button);
  Arr numbers(vxCreateDoubleScalar(1));
  EXPECT_EQ(sgtest::errorId([&] { manager.markViewPropertiesDirty(button.get(), numbers.get()); }),
            "VANTEL:sgutils:NotCellArray");
  Arr nothing(vxCreateDoubleMatrix(0, 0, vxREAL));
  EXPECT_EQ(sgtest::errorId([&] { manager.markViewPropertiesDirty(button.get(), nothing.get()); }), "");
  EXPECT_EQ(manager.getDirtyPropertyStrings(), (std::vector<std::string>{"ContextMenu"}));
}

}  // namespace
