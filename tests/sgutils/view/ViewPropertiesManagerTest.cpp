// The manager's choice of strategy by the kind of component, and its walk
// to the figure that may hold app-building defaults, over classes of the
// class system made for the test.
#include <gtest/gtest.h>

#include <string>

#include "sgutils/view/ViewPropertiesManager.h"
#include "vcos/vcos.h"

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
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(COSID("lyt.Container")); }
};

// vmt.Figure with the property whose value marks an app-building figure.
class FigureInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Figure"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    std::string flag = "yes";
    c->addProperty(new COSPropT(c->getID(), COSID("HasAppBuildingDefaults"), COSDataTypePtr("asciiString"),
                                COSValue(&flag)));
  }
};

class PlainInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Button"; }
  void initializeClass(COSClass*, const COSClient*) override {}
};

struct Namespace final : COSNamespaceInfo {
  explicit Namespace(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }
  const char* name_;
};

COSInterfacePtr make(const char* className) {
  static const bool registered = [] {
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
  ViewPropertiesManager manager;
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
  ViewPropertiesManager manager;
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

}  // namespace
