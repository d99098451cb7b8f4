// The life of a graphics object after construction: reset and its event,
// defaults applied on reset, required children, BeingDeleted, application
// data, placeholders in arrays, and the closed list of subclasses.
#include <gtest/gtest.h>

#include "TestGraphicsClasses.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgutils/persistence/UDDConverter.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/vcos.h"

using namespace sgtest;

namespace {

class Lifecycle : public ::testing::Test {
 protected:
  void SetUp() override {
    registerTestClasses();
    journal() = Journal();
  }
};

COSInterfacePtr listenTo(const COSInterfacePtr& source, const char* event, std::function<void()> fn) {
  COSInterfacePtr l = COSListener::createListener(COSListenerOp::fromFunction([fn](COSInterface*, COSEventData*) { fn(); }));
  source->addListener(COSID(event), COSListener::toListener(l));
  return l;
}

bool isOn(const Arr& value) { return vxArrayToStdString(value.get()) == "on"; }

void callReset(const COSInterfacePtr& object) {
  Arr self = obj(object);
  const vxArray* in[] = {self.get()};
  ASSERT_TRUE(omCallMethod(kTestClass, "reset", COSGetPublicClient(), 0, nullptr, 1, in, true));
}

}  // namespace

TEST_F(Lifecycle, ResetSendsItsEventOnlyWhenAllowed) {
  Arr width = str("Width"), five = num(5);
  COSInterfacePtr o = construct({width.get(), five.get()});
  int events = 0;
  COSInterfacePtr l = listenTo(o, "Reset", [&events] { ++events; });

  blockOf(o)->allowReset = false;
  callReset(o);
  EXPECT_EQ(events, 0);
  EXPECT_EQ(journal().resets, 0);
  EXPECT_EQ(blockOf(o)->width, 5.0) << "a refused reset touched the object";

  blockOf(o)->allowReset = true;
  callReset(o);
  EXPECT_EQ(events, 1);
  EXPECT_EQ(blockOf(o)->width, 1.0) << "reset did not restore the class default";
}

TEST_F(Lifecycle, ResetAppliesDefaultsOnlyUnderAParent) {
  COSInterfacePtr parent = construct({});
  COSInterfacePtr orphan = construct({});
  callReset(orphan);
  EXPECT_EQ(journal().defaultsApplied, 0);

  Arr parentName = str("Parent"), parentArr = obj(parent);
  COSInterfacePtr child = construct({parentName.get(), parentArr.get()});
  journal().stages.clear();
  callReset(child);
  EXPECT_EQ(journal().stages, (std::vector<std::string>{":ApplyingDefaults", ":DefaultsApplied"}));
  EXPECT_FALSE(blockOf(child)->isApplyingDefaults());
}

TEST_F(Lifecycle, RequiredChildGoesOnlyWithItsParent) {
  COSInterfacePtr parent = construct({});
  Arr parentName = str("Parent"), parentArr = obj(parent);
  COSInterfacePtr child = construct({parentName.get(), parentArr.get()});
  blockOf(child)->setIsRequiredChild(true);

  EXPECT_FALSE(child->deleteObject(COSGetPublicClient()));
  EXPECT_FALSE(child->isDestroyed());
  EXPECT_TRUE(parent->deleteObject(COSGetPublicClient()));
  EXPECT_TRUE(child->isDestroyed());
}

TEST_F(Lifecycle, BeingDeletedIsTrueBelowAnObjectBeingDestroyed) {
  COSInterfacePtr parent = construct({});
  Arr parentName = str("Parent"), parentArr = obj(parent);
  COSInterfacePtr child = construct({parentName.get(), parentArr.get()});
  COSInterfacePtr grandchild;
  {
    Arr childArr = obj(child);
    grandchild = construct({parentName.get(), childArr.get()});
  }
  bool seenChild = false, seenGrandchild = false, childItselfBeingDestroyed = true;
  COSInterfacePtr l = listenTo(parent, "ObjectBeingDestroyed", [&] {
    seenChild = isOn(getProp(child, "BeingDeleted"));
    seenGrandchild = isOn(getProp(grandchild, "BeingDeleted"));
    childItselfBeingDestroyed = child->isBeingDestroyed();
  });
  EXPECT_FALSE(isOn(getProp(grandchild, "BeingDeleted")));
  parent->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(seenChild);
  EXPECT_TRUE(seenGrandchild);
  EXPECT_FALSE(childItselfBeingDestroyed);
}

TEST_F(Lifecycle, SettingBeingDeletedHasNoEffect) {
  COSInterfacePtr o = construct({});
  Arr yes(vxCreateLogicalScalar(true));
  EXPECT_NO_THROW(setProp(o, "BeingDeleted", yes.get()));
  EXPECT_FALSE(isOn(getProp(o, "BeingDeleted")));
}

TEST_F(Lifecycle, ApplicationDataKeepsStructsAndReplacesAnythingElse) {
  COSInterfacePtr o = construct({});
  const char* fields[] = {"a"};
  Arr s(vxCreateStructMatrix(1, 1, 1, fields));
  vxSetField(s.get(), 0, "a", vxCreateDoubleScalar(2));
  setProp(o, "ApplicationData", s.get());
  Arr back = getProp(o, "ApplicationData");
  EXPECT_EQ(vxGetScalar(vxGetField(back.get(), 0, "a")), 2.0);
  // The stored value is a copy: changing the input leaves it alone.
  vxSetField(s.get(), 0, "a", vxCreateDoubleScalar(3));
  EXPECT_EQ(vxGetScalar(vxGetField(getProp(o, "ApplicationData").get(), 0, "a")), 2.0);

  blockOf(o)->setApplicationData(num(1).get());
  const vxArray* stored = blockOf(o)->getApplicationData();
  EXPECT_TRUE(vxIsStruct(stored));
  EXPECT_EQ(vxGetNumberOfFields(stored), 0);
}

TEST_F(Lifecycle, SerializableApplicationDataIsACopyOfTheLiveData) {
  COSInterfacePtr o = construct({});
  const char* fields[] = {"a"};
  Arr s(vxCreateStructMatrix(1, 1, 1, fields));
  vxSetField(s.get(), 0, "a", vxCreateDoubleScalar(4));
  blockOf(o)->setApplicationData(s.get());
  blockOf(o)->getSerializableApplicationData();
  const vxArray* copy = blockOf(o)->getSerializableApplicationData();
  EXPECT_NE(copy, blockOf(o)->getApplicationData());
  EXPECT_EQ(vxGetScalar(vxGetField(copy, 0, "a")), 4.0);
  // The cached copy and the live data are freed apart (ASan checks it).
  blockOf(o)->setApplicationData(nullptr);
  EXPECT_EQ(vxGetScalar(vxGetField(copy, 0, "a")), 4.0);
}

// Fault pinned: the value went in as it was, old handles included.
TEST_F(Lifecycle, SerializableApplicationDataTurnsOldHandlesIntoPlaceholders) {
  COSInterfacePtr o = construct({});
  const char* fields[] = {"h", "n"};
  Arr s(vxCreateStructMatrix(1, 1, 2, fields));
  const vxSize dims[] = {1, 3};
  vxArray* old = vxCreateNumericArray(2, dims, vxDOUBLE_CLASS, vxCOMPLEX);
  for (vxIndex k = 0; k < 3; ++k) vxGetComplexDoubles(old)[k] = {1.0, sgutils::UDDConverter::handleMarker()};
  vxSetField(s.get(), 0, "h", old);
  vxSetField(s.get(), 0, "n", vxCreateDoubleScalar(2));
  blockOf(o)->setSerializableApplicationData(s.get());

  const vxArray* live = blockOf(o)->getApplicationData();
  EXPECT_STREQ(vxGetClassName(vxGetField(live, 0, "h")), "vantel.graphics.GraphicsPlaceholder");
  EXPECT_EQ(vxGetNumberOfElements(vxGetField(live, 0, "h")), 3u);
  EXPECT_EQ(vxGetScalar(vxGetField(live, 0, "n")), 2.0);
  EXPECT_TRUE(vxIsComplex(vxGetField(s.get(), 0, "h"))) << "the caller's value was changed";
  // The saved form is a copy of what is stored now.
  const vxArray* saved = blockOf(o)->getSerializableApplicationData();
  EXPECT_NE(saved, live);
  EXPECT_STREQ(vxGetClassName(vxGetField(saved, 0, "h")), "vantel.graphics.GraphicsPlaceholder");
}

TEST_F(Lifecycle, ApplicationDataHoldingAnObjectDoesNotOutliveDeletion) {
  COSInterfacePtr holder = construct({});
  COSInterfacePtr held = construct({});
  const char* fields[] = {"o"};
  Arr s(vxCreateStructMatrix(1, 1, 1, fields));
  vxSetField(s.get(), 0, "o", omCreateVCOSScalar(held));
  blockOf(holder)->setApplicationData(s.get());
  s.reset();
  COSInterfacePtr weak(held.get(), COSWeakReference);
  held.reset();
  EXPECT_FALSE(weak->isDestroyed()) << "stored application data owns its objects";
  holder->deleteObject(COSGetPublicClient());
  holder.reset();
  EXPECT_TRUE(weak->isDestroyed()) << "the destroyed block kept its stored object alive";
}

TEST_F(Lifecycle, GapsInGraphicsArraysArePlaceholders) {
  COSInterfacePtr o = construct({});
  Arr a(omCreateVCOSMatrix(1, 2, kTestClass));
  omSetArrayElement(a.get(), 1, o);
  omSetClassOfHeterogeneousArray(a.get());
  COSInterfacePtr gap = omGetArrayElement(a.get(), 0);
  ASSERT_TRUE(gap);
  EXPECT_STREQ(gap->getClass()->getName(), "vantel.graphics.GraphicsPlaceholder");
  EXPECT_STREQ(omGetCOSClassID(a.get()).c_str(), "vantel.graphics.Graphics");
}

namespace {
// A class outside every closed list, deriving from the root it is given.
class IntruderInfo final : public BaseObjectCOSInfo {
 public:
  IntruderInfo(std::string name, const char* root) : name_(std::move(name)), root_(root) {}
  const char* getName() const override { return name_.c_str(); }
  void initializeClass(COSClass* cls, const COSClient*) override { cls->addSuperclass(COSID(root_), true, 0, 1); }

 private:
  std::string name_;
  const char* root_;
};
}  // namespace

TEST_F(Lifecycle, OnlyListedClassesDeriveFromTheRoots) {
  const char* roots[] = {"vantel.graphics.Graphics", "vantel.graphics.internal.ReferenceObject",
                         "vantel.graphics.internal.GraphicsPropertyHandler"};
  int n = 0;
  for (const char* root : roots) {
    const std::string name = "Intruder" + std::to_string(n++);
    sgutils::getNamespace()->addClass(new IntruderInfo(name, root), 0, 2);
    try {
      COSClass::getClass(COSID("sg2utils." + name));
      ADD_FAILURE() << name << " derived from " << root;
    } catch (const foundation::core::except::IMsgIDException& e) {
      EXPECT_EQ(e.identifier(), "VANTEL:vcos:NotAllowedSubclass") << root;
    }
  }
  EXPECT_NE(COSClass::getClass(COSID(kTestClass)), nullptr) << "a listed class must still build";
}

TEST_F(Lifecycle, SerializableApplicationDataIsNotPubliclySettable) {
  COSInterfacePtr o = construct({});
  Arr s(vxCreateStructMatrix(1, 1, 0, nullptr));
  EXPECT_ANY_THROW(setProp(o, "SerializableApplicationData", s.get()));
  EXPECT_NO_THROW(setProp(o, "ApplicationData", s.get()));
}
