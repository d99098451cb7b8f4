// The per-class and per-thread shortcuts of object creation and of the
// by-name paths: the object array handed to constructors is reused but never
// changes under a copy that a constructor kept, nested constructions get
// their own, the allocating blocks of a class are learnt once, interned
// names and array conversions are remembered without going stale, and an
// event goes only to listeners of that event.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <utility>
#include <stdexcept>
#include <string>
#include <vector>

#include "VcosTestClasses.h"
#include "vcos/COSDataType.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSPackage.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "foundation/core/except/Error.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

// The objects that Keeper constructors saw, and copies of their arrays.
struct KeeperLog {
  std::vector<vxArray*> kept;  // shared copies of plhs[0], owned here
  std::vector<COSInterface*> seen;
  int nestedLeft = 0;  // how many constructors make a Keeper of their own
  ~KeeperLog() {
    for (vxArray* a : kept) vxDestroyArray(a);
  }
};
KeeperLog* keeperLog = nullptr;

class KeeperCtor final : public COSMethodBase {
 public:
  explicit KeeperCtor(COSID cls)
      : COSMethodBase(cls, COSID("Keeper"), PublicAccess, "",
                      COSMethodSignature::createMethodSignature(COSID("Keeper"), {}, {{COSID("out"), {}, false}}, 0)) {}
  void invoke(const COSClient* client, int&, COSValue* plhs, int, const COSValue*) const override {
    if (!keeperLog) return;
    const vxArray* self = plhs[0].asPointer<const vxArray>();
    keeperLog->seen.push_back(vxGetObjectElements(self)[0].get());
    keeperLog->kept.push_back(vxCreateSharedDataCopy(self));
    if (keeperLog->nestedLeft > 0) {
      --keeperLog->nestedLeft;
      COSInterfacePtr inner = getDefiningClass()->createInstance(client);
      // The outer constructor's array still holds the outer object.
      EXPECT_EQ(vxGetObjectElements(self)[0].get(), keeperLog->seen.front());
    }
  }
};

class KeeperInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Keeper"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addMethod(new KeeperCtor(c->getID())); }
  void* allocateInstance(COSInterface*) override { return nullptr; }
};

COSClass* keeperClass() {
  static COSClass* cls = [] {
    vt::registerClasses();
    COSPackage::getNamespace("vt")->addClass(new KeeperInfo);
    return COSClass::getClass(COSID("vt.Keeper"));
  }();
  return cls;
}

// A constructor with the entry for constructions without inputs: counts
// which entry each construction took, and raises from it on request.
struct DirectLog {
  int direct = 0, invoked = 0;
  bool raise = false;
};
DirectLog directLog;

class DirectCtor final : public COSMethodBase {
 public:
  DirectCtor(COSID cls, COSID name, MemberAccess access)
      : COSMethodBase(cls, name, access, "",
                      COSMethodSignature::createMethodSignature(
                          name, {{COSID("varargin"), COSTypeRepository::getType(COSID("any")), true}},
                          {{COSID("out"), {}, false}}, COSMethodSignature::VarArgIn)) {}
  void invoke(const COSClient*, int&, COSValue* plhs, int, const COSValue*) const override {
    ++directLog.invoked;
    EXPECT_NE(vxGetObjectElements(plhs[0].asPointer<const vxArray>())[0].get(), nullptr);
  }
  bool constructWithoutInputs(const COSClient*, const COSInterfacePtr& object) const override {
    ++directLog.direct;
    EXPECT_FALSE(object->isDestroyed());
    if (directLog.raise) throw std::runtime_error("refused");
    return true;
  }
};

class DirectInfo final : public COSClassInfo {
 public:
  DirectInfo(const char* name, MemberAccess access) : name_(name), access_(access) {}
  const char* getName() const override { return name_; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addMethod(new DirectCtor(c->getID(), COSID(name_), access_)); }
  void* allocateInstance(COSInterface*) override { return nullptr; }

 private:
  const char* name_;
  MemberAccess access_;
};

class PlainLateInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Late"; }
  void* allocateInstance(COSInterface*) override { return nullptr; }
};

COSClass* directClass(const char* name, MemberAccess access) {
  vt::registerClasses();
  if (COSClass* c = COSClass::getClass(COSID(std::string("vt.") + name))) return c;
  COSPackage::getNamespace("vt")->addClass(new DirectInfo(name, access));
  return COSClass::getClass(COSID(std::string("vt.") + name));
}

TEST(ObjectCreation, AConstructionWithoutInputsTakesTheDirectEntryOnlyWhereTheCallWouldReachTheMethod) {
  COSClass* open = directClass("DirectOpen", PublicAccess);
  directLog = {};
  COSInterfacePtr a = open->createInstance(COSGetPublicClient());
  EXPECT_EQ(directLog.direct, 1);
  EXPECT_EQ(directLog.invoked, 0);
  matrix::unique_vxArray input(vxCreateDoubleScalar(1));
  const COSValue inputs[] = {COSValue(input.get())};
  COSInterfacePtr b = open->createInstance(COSGetPublicClient(), 1, inputs);
  EXPECT_EQ(directLog.direct, 1) << "a construction with inputs goes through the object array";
  EXPECT_EQ(directLog.invoked, 1);

  // A constructor the client may not call raises as before, without running.
  COSClass* closed = directClass("DirectClosed", PrivateAccess);
  try {
    closed->createInstance(COSGetPublicClient());
    ADD_FAILURE() << "a private constructor ran for the public client";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:MethodAccessDenied");
  }
  EXPECT_EQ(directLog.direct, 1);

  // A direct entry that raises fails the creation and deletes the object.
  int deleted = 0;
  COSInterfacePtr onDelete = vt::listener([&](COSInterface*, COSEventData*) { ++deleted; });
  open->addClassListener(COSID("ObjectBeingDestroyed"), vt::L(onDelete));
  directLog.raise = true;
  EXPECT_THROW(open->createInstance(COSGetPublicClient()), std::runtime_error);
  directLog.raise = false;
  EXPECT_EQ(deleted, 1);
  a->deleteObject(COSGetPublicClient());
  b->deleteObject(COSGetPublicClient());
  open->removeClassListener(COSID("ObjectBeingDestroyed"), vt::L(onDelete));
}

// The constructor a class chose is chosen again when its methods change.
TEST(ObjectCreation, AConstructorAddedToABuiltClassRunsFromItsNextInstanceOn) {
  static bool once = [] {
    vt::registerClasses();
    COSPackage::getNamespace("vt")->addClass(new PlainLateInfo);
    return true;
  }();
  (void)once;
  COSClass* late = COSClass::getClass(COSID("vt.Late"));
  ASSERT_NE(late, nullptr);
  directLog = {};
  COSInterfacePtr a = late->createInstance(COSGetPublicClient());
  EXPECT_EQ(directLog.direct + directLog.invoked, 0) << "a class without a constructor ran one";
  late->addMethod(new DirectCtor(late->getID(), COSID("Late"), PublicAccess));
  COSInterfacePtr b = late->createInstance(COSGetPublicClient());
  EXPECT_EQ(directLog.direct, 1);
  // A second candidate of the name: the call chooses among them.
  late->addMethod(new DirectCtor(late->getID(), COSID("Late"), PublicAccess));
  COSInterfacePtr c = late->createInstance(COSGetPublicClient());
  EXPECT_EQ(directLog.direct, 1);
  EXPECT_EQ(directLog.invoked, 1);
  for (COSInterfacePtr* o : {&a, &b, &c}) (*o)->deleteObject(COSGetPublicClient());
}

TEST(ObjectCreation, AConstructorsCopyOfItsArrayKeepsItsObject) {
  COSClass* cls = keeperClass();
  KeeperLog log;
  keeperLog = &log;
  COSInterfacePtr a = cls->createInstance(COSGetPublicClient());
  COSInterfacePtr b = cls->createInstance(COSGetPublicClient());
  keeperLog = nullptr;
  ASSERT_EQ(log.kept.size(), 2u);
  EXPECT_EQ(log.seen, (std::vector<COSInterface*>{a.get(), b.get()}));
  EXPECT_EQ(vxGetObjectElements(static_cast<const vxArray*>(log.kept[0]))[0].get(), a.get())
      << "the next construction changed an array a constructor kept";
  EXPECT_EQ(vxGetObjectElements(static_cast<const vxArray*>(log.kept[1]))[0].get(), b.get());
  EXPECT_STREQ(vxGetClassName(log.kept[0]), "vt.Keeper");
}

TEST(ObjectCreation, AConstructionInsideAConstructorGetsItsOwnArray) {
  COSClass* cls = keeperClass();
  KeeperLog log;
  log.nestedLeft = 1;
  keeperLog = &log;
  COSInterfacePtr outer = cls->createInstance(COSGetPublicClient());
  keeperLog = nullptr;
  ASSERT_EQ(log.seen.size(), 2u);
  EXPECT_EQ(log.seen[0], outer.get());
  EXPECT_NE(log.seen[1], outer.get());
  EXPECT_EQ(vxGetObjectElements(static_cast<const vxArray*>(log.kept[0]))[0].get(), outer.get());
  EXPECT_EQ(vxGetObjectElements(static_cast<const vxArray*>(log.kept[1]))[0].get(), log.seen[1]);
  // A later construction works as before.
  COSInterfacePtr after = cls->createInstance(COSGetPublicClient());
  EXPECT_FALSE(after->isDestroyed());
}

TEST(ObjectCreation, BlocksOfEveryAllocatingClassAreMadeAndFreedForEachObject) {
  vt::cls("vt.Circle");
  const int shapes = vt::journal().shapeBlocks, circles = vt::journal().circleBlocks;
  {
    std::vector<COSInterfacePtr> many;
    for (int i = 0; i < 5; ++i) many.push_back(vt::make("vt.Circle"));
    EXPECT_EQ(vt::journal().shapeBlocks, shapes + 5);
    EXPECT_EQ(vt::journal().circleBlocks, circles + 5);
    for (COSInterfacePtr& o : many) o->deleteObject(COSGetPublicClient());
  }
  EXPECT_EQ(vt::journal().shapeBlocks, shapes);
  EXPECT_EQ(vt::journal().circleBlocks, circles);
}

TEST(Interning, TheSameBufferWithNewTextGivesTheNewId) {
  char buffer[16];
  std::strcpy(buffer, "Width");
  const COSID first(static_cast<const char*>(buffer));
  EXPECT_EQ(first, COSID("Width"));
  std::strcpy(buffer, "Height");
  const COSID second(static_cast<const char*>(buffer));
  EXPECT_EQ(second, COSID("Height"));
  std::strcpy(buffer, "Heigh");  // a prefix: same address, shorter text
  EXPECT_EQ(COSID(static_cast<const char*>(buffer)), COSID("Heigh"));
  EXPECT_EQ(COSID(std::string_view(buffer, 3)), COSID("Hei"));
}

class ConstantConversion final : public COSTypeConversion {
 public:
  explicit ConstantConversion(double v) : v_(v) {}
  COSValue convert(COSValue) const override { return COSValue(vxCreateDoubleScalar(v_)); }

 private:
  double v_;
};

TEST(Conversions, AReplacedArrayConversionTakesEffectAtOnce) {
  const COSID name("vt.ConvertedType"), any("any");
  if (!COSTypeRepository::getType(name)) COSTypeRepository::addType(new COSDataType(name));
  COSDataTypePtr type = COSTypeRepository::getType(name);
  ASSERT_TRUE(type);
  EXPECT_EQ(COSTypeRepository::getArrayConversion(*type, true), nullptr);
  auto* first = new ConstantConversion(1);
  COSTypeRepository::addConversion(name, any, first);
  EXPECT_EQ(COSTypeRepository::getArrayConversion(*type, true), first);
  EXPECT_EQ(COSTypeRepository::getArrayConversion(*type, false), nullptr) << "the other direction has none";
  auto* second = new ConstantConversion(2);
  COSTypeRepository::addConversion(name, any, second);
  EXPECT_EQ(COSTypeRepository::getArrayConversion(*type, true), second);
  COSTypeRepository::removeConversion(name, any);
  EXPECT_EQ(COSTypeRepository::getArrayConversion(*type, true), nullptr);
}

TEST(Events, AClassListenerOfOneEventDoesNotHearAnother) {
  COSClass* shape = vt::cls("vt.Shape");
  int created = 0, destroyed = 0;
  COSInterfacePtr onCreate = vt::listener([&](COSInterface*, COSEventData*) { ++created; });
  shape->addClassListener(COSID("InstanceCreated"), vt::L(onCreate));
  COSInterfacePtr o = vt::make("vt.Shape");
  COSInterfacePtr onDestroy = vt::listener([&](COSInterface*, COSEventData*) { ++destroyed; });
  o->addListener(COSID("ObjectBeingDestroyed"), vt::L(onDestroy));
  o->deleteObject(COSGetPublicClient());
  shape->removeClassListener(COSID("InstanceCreated"), vt::L(onCreate));
  EXPECT_EQ(created, 1);
  EXPECT_EQ(destroyed, 1);
}

// What a class remembers of its ancestry's listeners on an event must follow
// every change: a listener added to a base class after instances were made
// and deleted without one, a removed one, one turned off and on again, and a
// third event between two remembered ones.
TEST(Events, ClassListenersAddedRemovedOrTurnedOffLaterAreHeard) {
  COSClass* shape = vt::cls("vt.Shape");
  COSClass* circle = vt::cls("vt.Circle");
  const COSID created("InstanceCreated"), destroyed("ObjectBeingDestroyed"), other("vt.OtherEvent");
  vt::make("vt.Circle")->deleteObject(COSGetPublicClient());  // nothing listens yet

  int made = 0, gone = 0, others = 0;
  COSInterfacePtr onMade = vt::listener([&](COSInterface*, COSEventData*) { ++made; });
  COSInterfacePtr onGone = vt::listener([&](COSInterface*, COSEventData*) { ++gone; });
  COSInterfacePtr onOther = vt::listener([&](COSInterface*, COSEventData*) { ++others; });
  shape->addClassListener(created, vt::L(onMade));
  COSInterfacePtr a = vt::make("vt.Circle");
  EXPECT_EQ(made, 1) << "a base class's listener added after the first instances";
  circle->addClassListener(destroyed, vt::L(onGone));
  circle->addClassListener(other, vt::L(onOther));
  a->notifyEvent(COSGetPublicClient(), other, nullptr);
  a->deleteObject(COSGetPublicClient());
  EXPECT_EQ(gone, 1);
  EXPECT_EQ(others, 1);

  vt::L(onMade)->setEnabled(false);
  COSInterfacePtr b = vt::make("vt.Circle");
  EXPECT_EQ(made, 1) << "a listener turned off";
  vt::L(onMade)->setEnabled(true);
  COSInterfacePtr c = vt::make("vt.Circle");
  EXPECT_EQ(made, 2) << "turned on again";

  shape->removeClassListener(created, vt::L(onMade));
  circle->removeClassListener(destroyed, vt::L(onGone));
  circle->removeClassListener(other, vt::L(onOther));
  COSInterfacePtr d = vt::make("vt.Circle");
  for (COSInterfacePtr* o : {&b, &c, &d}) (*o)->deleteObject(COSGetPublicClient());
  EXPECT_EQ(made, 2);
  EXPECT_EQ(gone, 1) << "a removed listener";
}

// An op that, asked whether it may run, first calls a hook (once), then
// answers no.
class HookedOp final : public COSListenerOp {
 public:
  explicit HookedOp(std::function<void()> hook) : hook_(std::move(hook)) {}
  void callback(COSInterface*, COSEventData*) override { ADD_FAILURE() << "a listener that may not run ran"; }
  bool mayRunFor(COSInterface*) const noexcept override {
    if (auto hook = std::exchange(hook_, nullptr)) hook();
    return false;
  }

 private:
  mutable std::function<void()> hook_;
};

// A class listener's mayRunFor that removes the next class listener (whose
// only reference the class held) while the listeners are asked: the next
// one must not be asked, nor run, once it is gone.
TEST(Events, AListenerRemovedWhileListenersAreAskedIsNotAskedAfterwards) {
  COSClass* circle = vt::cls("vt.Circle");
  const COSID created("InstanceCreated");
  vt::make("vt.Circle")->deleteObject(COSGetPublicClient());
  int ran = 0;
  COSListener* second = nullptr;
  {
    COSInterfacePtr secondRef = vt::listener([&](COSInterface*, COSEventData*) { ++ran; });
    second = vt::L(secondRef);
    COSInterfacePtr first = COSListener::createListener(
        new HookedOp([&] { circle->removeClassListener(created, second); }));
    circle->addClassListener(created, vt::L(first), 10);
    circle->addClassListener(created, second, 0);
    secondRef.reset();  // the class holds the only reference
    COSInterfacePtr o = vt::make("vt.Circle");
    o->deleteObject(COSGetPublicClient());
    circle->removeClassListener(created, vt::L(first));
  }
  EXPECT_EQ(ran, 0);
}

}  // namespace
