// The base property mixins on generated test classes: the Type filled at
// setup and the two handle tests, the context menu (its checks, the
// listener that empties it, what a file keeps), the load mark, DeleteFcn,
// and the properties kept for old code.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MixinTestSupport.h"
#include "foundation/core/except/WarningChannel.h"
#include "sgutils/objects/ConcreteLegacy.gen.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/TestLoadObj.gen.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"

namespace sgtest::mixins {
namespace {

using foundation::core::except::WarningChannel;

TestLoadObj& blockOf(const COSInterfacePtr& object) {
  return *static_cast<TestLoadObj*>(static_cast<SGReference*>(object->getInstanceData(TestLoadObj::classID())));
}

bool callHandleTest(const COSInterfacePtr& object, const vxArray* type) {
  Arr self = obj(object);
  const vxArray* inputs[] = {self.get(), type};
  vxArray* outputs[1] = {nullptr};
  const int nrhs = type ? 2 : 1;
  EXPECT_TRUE(omCallMethod(object->getClass()->getID(), type ? "issghandlewithargs" : "issghandlewoargs",
                           COSGetPublicClient(), 1, outputs, nrhs, inputs, true));
  Arr result(outputs[0]);
  return vxGetScalar(result.get()) != 0;
}

// Catches warnings for a scope.
struct WarningLog {
  WarningLog() {
    old = WarningChannel::instance().setSink([this](std::string_view line) { lines.emplace_back(line); });
  }
  ~WarningLog() { WarningChannel::instance().setSink(std::move(old)); }
  WarningChannel::Sink old;
  std::vector<std::string> lines;
};

TEST(BaseMixinClasses, CoreClassIsAGraphicsObjectWithTheBaseFunctions) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  const COSClass* cls = object->getClass();
  EXPECT_TRUE(cls->isSubclassOf(COSID("vantel.graphics.Graphics")));
  EXPECT_TRUE(cls->isSubclassOf(COSID("vantel.graphics.internal.GraphicsBaseFunctions")));
  EXPECT_TRUE(cls->isSubclassOf(COSID("vantel.graphics.internal.GraphicsPropertyHandler")));
  // The legacy and button-down classes derive from the core class.
  for (const char* name : {"vantel.graphics.internal.Legacy", "vantel.graphics.internal.GraphicsUIProperties"}) {
    COSClass* other = COSClass::getClass(COSID(name));
    ASSERT_NE(other, nullptr) << name;
    EXPECT_TRUE(other->isSubclassOf(COSID("vantel.graphics.internal.GraphicsCoreProperties"))) << name;
  }
  remove(object);
}

TEST(TypeProperty, SetupFillsTypeFromTheClassNameMapAndLeavesUnmappedClassesEmpty) {
  COSInterfacePtr figure = make("vantel.ui.Figure");
  COSInterfacePtr unmapped = make("sg2utils.TestLoadObj");
  EXPECT_EQ(getText(figure, "Type"), "figure");
  EXPECT_EQ(getText(unmapped, "Type"), "");
  // Type is not the user's to set.
  EXPECT_NE(errorId([&] { set(figure, "Type", text("line").get()); }), "");
  EXPECT_EQ(getText(figure, "Type"), "figure");
  remove(figure);
  remove(unmapped);
}

TEST(HandleTests, EmptyIsAlwaysAHandleAndNumbersNever) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  EXPECT_TRUE(callHandleTest(object, nullptr));
  EXPECT_TRUE(callHandleTest(object, empty().get()));
  Arr number(vxCreateDoubleScalar(1));
  EXPECT_FALSE(callHandleTest(object, number.get()));
  remove(object);
}

TEST(HandleTests, TypeTextMatchesThroughTheClassMapOrTheTypeIgnoringCase) {
  COSInterfacePtr figure = make("vantel.ui.Figure");
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  EXPECT_TRUE(callHandleTest(figure, text("FIGURE").get()));
  EXPECT_FALSE(callHandleTest(object, text("FIGURE").get()));
  // An object outside the map answers through its Type.
  blockOf(object).setType("line", graphics::datatype::PrivateClient);
  EXPECT_TRUE(callHandleTest(object, text("LINE").get()));
  EXPECT_FALSE(callHandleTest(object, text("lin").get()));
  remove(figure);
  remove(object);
}

TEST(TagProperty, PrivateSetLeavesTheModeAutoAndPublicSetTurnsItManual) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  blockOf(object).setTag(u"inner", graphics::datatype::PrivateClient);
  EXPECT_EQ(getText(object, "TagMode"), "auto");
  set(object, "Tag", text("outer").get());
  EXPECT_EQ(getText(object, "Tag"), "outer");
  EXPECT_EQ(getText(object, "TagMode"), "manual");
  remove(object);
}

class ContextMenu : public ::testing::Test {
 protected:
  void SetUp() override {
    figure = make("vantel.ui.Figure");
    otherFigure = make("vantel.ui.Figure");
    object = make("sg2utils.TestLoadObj");
    menu = make("sg2utils.TestContextMenu");
    figure->hookChild(object.get());
    figure->hookChild(menu.get());
  }
  void TearDown() override {
    for (auto* o : {&object, &menu, &figure, &otherFigure}) remove(*o);
  }

  COSInterfacePtr figure, otherFigure, object, menu;
};

TEST_F(ContextMenu, BothNamesShowOneMenuAndTheSameMenuAgainMarksNothing) {
  set(object, "ContextMenu", obj(menu).get());
  EXPECT_EQ(getObject(object, "UIContextMenu"), menu);
  EXPECT_EQ(getObject(object, "ContextMenu"), menu);
  EXPECT_EQ(blockOf(object).menuMarks, 1);
  set(object, "ContextMenu", obj(menu).get());
  EXPECT_EQ(blockOf(object).menuMarks, 1);
}

TEST_F(ContextMenu, RefusedMenusKeepTheOldMenuAndItsListener) {
  set(object, "UIContextMenu", obj(menu).get());
  COSInterfacePtr notAMenu = make("sg2utils.TestLoadObj");
  figure->hookChild(notAMenu.get());
  EXPECT_EQ(errorId([&] { set(object, "UIContextMenu", obj(notAMenu).get()); }), "VANTEL:sgutils:InvalidContextMenu");
  COSInterfacePtr foreignMenu = make("sg2utils.TestContextMenu");
  otherFigure->hookChild(foreignMenu.get());
  EXPECT_EQ(errorId([&] { set(object, "UIContextMenu", obj(foreignMenu).get()); }), "VANTEL:sg:InvalidObject");
  COSInterfacePtr deletedMenu = make("sg2utils.TestContextMenu");
  Arr deletedArray = obj(deletedMenu);
  remove(deletedMenu);
  EXPECT_EQ(errorId([&] { set(object, "UIContextMenu", deletedArray.get()); }), "VANTEL:sg:DeletedObject");
  EXPECT_EQ(getObject(object, "UIContextMenu"), menu);
  // The listener still belongs to the kept menu.
  remove(menu);
  EXPECT_EQ(getObject(object, "UIContextMenu"), nullptr);
  remove(notAMenu);
  remove(foreignMenu);
}

TEST_F(ContextMenu, AnObjectWithoutAFigureTakesAMenuFromAnyFigure) {
  COSInterfacePtr loose = make("sg2utils.TestLoadObj");
  set(loose, "UIContextMenu", obj(menu).get());
  EXPECT_EQ(getObject(loose, "UIContextMenu"), menu);
  remove(loose);
}

TEST_F(ContextMenu, ReplacedMenuNoLongerEmptiesTheProperty) {
  COSInterfacePtr second = make("sg2utils.TestContextMenu");
  figure->hookChild(second.get());
  set(object, "UIContextMenu", obj(menu).get());
  set(object, "UIContextMenu", obj(second).get());
  remove(menu);
  EXPECT_EQ(getObject(object, "UIContextMenu"), second);
  set(object, "UIContextMenu", empty().get());
  EXPECT_EQ(getObject(object, "UIContextMenu"), nullptr);
  remove(second);
}

TEST_F(ContextMenu, MenuOutlivingItsUserDeletesCleanly) {
  set(object, "UIContextMenu", obj(menu).get());
  remove(object);
  // The listener on the menu finds its user gone and does nothing.
  remove(menu);
  EXPECT_TRUE(menu->isDestroyed());
}

TEST_F(ContextMenu, AMenuThatIsNotSerializableIsLeftOutOfTheFile) {
  set(object, "UIContextMenu", obj(menu).get());
  // Read as a file's writer reads it: through the property itself.
  COSPropInfo* twin = object->getClass()->findPropertyExact(COSID("SerializableUIContextMenu"));
  auto saved = [&] {
    const COSValue v = twin->getValue(object.get());
    const bool has = !v.isEmpty() && !v.asPointer<const graphics::datatype::HandleOrEmpty>()->isEmpty();
    twin->releaseValue(object.get(), v);
    return has;
  };
  EXPECT_TRUE(saved());
  set(menu, "Serializable", text("off").get());
  EXPECT_FALSE(saved());
  EXPECT_EQ(getObject(object, "UIContextMenu"), menu);
}

TEST(LoadMark, TopLevelSerializedObjectReadsStoredValueThenTrue) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  EXPECT_EQ(getText(object, "TopLevelSerializedObject"), "off");
  EXPECT_EQ(getText(object, "TopLevelSerializedObject"), "on");
  set(object, "TopLevelSerializedObject", text("off").get());
  EXPECT_EQ(getText(object, "TopLevelSerializedObject"), "off");
  remove(object);
}

TEST(DeleteFcn, RunsOnceWhileTheObjectIsBeingDeleted) {
  COSInterfacePtr object = make("sg2utils.TestLoadObj");
  static int calls;
  static std::string beingDeleted;
  calls = 0;
  graphics::datatype::VCallback cb([](COSInterface* source, COSEventData*) {
    ++calls;
    beingDeleted = getText(COSInterfacePtr(source), "BeingDeleted");
  });
  blockOf(object).setDeleteFcn(cb, graphics::datatype::PublicClient);
  EXPECT_EQ(getText(object, "BeingDeleted"), "off");
  remove(object);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(beingDeleted, "on");
}

TEST(LegacyProperties, EraseModeWarnsAndGoesToSG1Erase) {
  COSInterfacePtr object = make("sg2utils.ConcreteLegacy");
  WarningLog log;
  set(object, "EraseMode", text("xor").get());
  EXPECT_EQ(WarningChannel::instance().lastId(), "VANTEL:sg:EraseModeIgnored");
  EXPECT_EQ(getText(object, "SG1Erase"), "xor");
  EXPECT_EQ(getText(object, "SG1EraseMode"), "manual");
  set(object, "SG1Erase", text("background").get());
  EXPECT_EQ(getText(object, "EraseMode"), "background");
  EXPECT_EQ(log.lines.size(), 2u);
  remove(object);
}

TEST(LegacyProperties, SerializableBehaviorCarriesBehaviorThroughAFile) {
  COSInterfacePtr object = make("sg2utils.ConcreteLegacy");
  // Written and read as a file's reader and writer do: through the property.
  COSPropInfo* twin = object->getClass()->findPropertyExact(COSID("SerializableBehavior"));
  Arr saved(vxCreateDoubleScalar(7));
  twin->setValue(object.get(), COSValue(saved.get()));
  // Fault pinned: a read from the language took the stored array itself,
  // and the reader's destroy freed it under the property.
  EXPECT_EQ(vxGetScalar(get(object, "Behavior").get()), 7);
  EXPECT_EQ(vxGetScalar(get(object, "Behavior").get()), 7);
  set(object, "Behavior", text("b").get());
  const COSValue read = twin->getValue(object.get());
  EXPECT_EQ(vxArrayToStdString(read.asPointer<const vxArray>()), "b");
  twin->releaseValue(object.get(), read);
  remove(object);
}

}  // namespace
}  // namespace sgtest::mixins
