// Method dispatch by name and signature, and events with instance and class
// listeners.
#include <gtest/gtest.h>

#include "VcosTestClasses.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSListenerOp.h"
#include "vcos/FaultInjection.h"

using foundation::core::except::Error;

namespace {

// Calls a method with the object first; returns the output word.
COSValue call(const COSInterfacePtr& o, const char* name, std::vector<COSValue> more = {},
              const COSClient* client = COSGetPublicClient(), bool* found = nullptr) {
  std::vector<COSValue> in{COSValue(o.get())};
  in.insert(in.end(), more.begin(), more.end());
  int nlhs = 1;
  COSValue out;
  bool ok = vcos::internal::callMethod(o->getClass(), COSID(name), client, nlhs, &out, static_cast<int>(in.size()), in.data());
  if (found) *found = ok;
  return out;
}

TEST(MethodDispatch, MostDerivedDefinitionWins) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSInterfacePtr c = vt::make("vt.Circle");
  vt::set<double>(s, "Width", 3.0);
  vt::set<double>(c, "Radius", 2.0);
  EXPECT_EQ(call(s, "area").asDouble(), 9.0);
  EXPECT_EQ(call(c, "area").asDouble(), 12.0);
  EXPECT_EQ(vt::cls("vt.Circle")->findMethod(COSID("area"))->getDefiningClass(), vt::cls("vt.Circle"));
}

TEST(MethodDispatch, SignatureChoosesAmongDefinitionsAndInheritedOnes) {
  COSInterfacePtr c = vt::make("vt.Circle");
  COSInterfacePtr other = vt::make("vt.Circle");
  COSInterfacePtr shape = vt::make("vt.Shape");
  // describe(obj, circle) is Circle's; describe(obj) falls back to Named's.
  EXPECT_EQ(call(c, "describe", {COSValue(other.get())}).asInt(), 2);
  EXPECT_EQ(call(c, "describe").asInt(), 1);
  // A shape is not a circle, and no definition takes two arguments otherwise.
  try {
    call(c, "describe", {COSValue(shape.get())});
    FAIL() << "a shape was accepted where a circle is required";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:NoMatchingSignature");
  }
}

TEST(MethodDispatch, UnknownNamesAnswerFalseAndAccessIsChecked) {
  COSInterfacePtr c = vt::make("vt.Circle");
  bool found = true;
  call(c, "noSuchMethod", {}, COSGetPublicClient(), &found);
  EXPECT_FALSE(found);
  EXPECT_THROW(call(c, "hiddenWork"), Error);
  call(c, "hiddenWork", {}, vt::cls("vt.Circle")->getPrivateClient(), &found);
  EXPECT_TRUE(found);
  // A static method takes no object.
  int nlhs = 1;
  COSValue out;
  ASSERT_TRUE(vcos::internal::callMethod(vt::cls("vt.Circle"), COSID("unit"), COSGetPublicClient(), nlhs, &out, 0, nullptr));
  EXPECT_EQ(out.asDouble(), 1.0);
  EXPECT_TRUE(vt::cls("vt.Circle")->findMethod(COSID("unit"))->isStatic());
}

TEST(MethodDispatch, ConstructorRunsWithArgumentsAndIsInheritedByClassesWithoutOne) {
  COSValue width = COSValue::fromDouble(6.0);
  COSInterfacePtr s = vt::cls("vt.Shape")->createInstance(COSGetPublicClient(), 1, &width);
  EXPECT_EQ(vt::get<double>(s, "Width"), 6.0);
  COSInterfacePtr c = vt::cls("vt.Circle")->createInstance(COSGetPublicClient(), 1, &width);
  EXPECT_EQ(vt::get<double>(c, "Width"), 6.0);
}

TEST(Events, ClassListenersRunByPriorityThenInstanceListeners) {
  COSClass* shape = vt::cls("vt.Shape");
  COSInterfacePtr c = vt::make("vt.Circle");
  std::vector<std::string> order;
  COSInterfacePtr low = vt::listener([&](COSInterface*, COSEventData*) { order.push_back("class-low"); });
  COSInterfacePtr high = vt::listener([&](COSInterface*, COSEventData*) { order.push_back("class-high"); });
  COSInterfacePtr mine = vt::listener([&](COSInterface*, COSEventData*) { order.push_back("instance"); });
  shape->addClassListener(COSID("Changed"), vt::L(low), 1);
  shape->addClassListener(COSID("Changed"), vt::L(high), 5);
  c->addListener(COSID("Changed"), vt::L(mine));
  c->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  shape->removeClassListener(COSID("Changed"), vt::L(low));
  shape->removeClassListener(COSID("Changed"), vt::L(high));
  EXPECT_EQ(order, (std::vector<std::string>{"class-high", "class-low", "instance"}));
  EXPECT_THROW(c->notifyEvent(COSGetPublicClient(), COSID("Guarded"), nullptr), Error);
  c->notifyEvent(vt::cls("vt.Shape")->getPrivateClient(), COSID("Guarded"), nullptr);
}

TEST(Events, InstanceCreatedReachesClassListenersOfBaseClasses) {
  COSClass* shape = vt::cls("vt.Shape");
  std::vector<std::string> created;
  COSInterfacePtr l = vt::listener([&](COSInterface* src, COSEventData* d) {
    created.push_back(src->getClass()->getName());
    EXPECT_EQ(d->getSourceWeak().get(), src);
    EXPECT_EQ(d->getNotifyCount(), 1);
  });
  shape->addClassListener(COSID("InstanceCreated"), vt::L(l));
  COSInterfacePtr a = vt::make("vt.Circle");
  COSInterfacePtr b = vt::make("vt.Friend");
  shape->removeClassListener(COSID("InstanceCreated"), vt::L(l));
  EXPECT_EQ(created, (std::vector<std::string>{"vt.Circle"}));
}

// A listener op that says whether it would do anything for a source.
class HintedOp final : public COSListenerOp {
 public:
  HintedOp(bool& mayRun, std::vector<std::string>& runs, std::string name)
      : mayRun_(mayRun), runs_(runs), name_(std::move(name)) {}
  void callback(COSInterface*, COSEventData*) override { runs_.push_back(name_); }
  bool mayRunFor(COSInterface*) const noexcept override { return mayRun_; }

 private:
  bool& mayRun_;
  std::vector<std::string>& runs_;
  std::string name_;
};

TEST(Events, NothingIsDispatchedWhenNoListenerWouldRunAndAllRunInOrderOtherwise) {
  COSClass* shape = vt::cls("vt.Shape");
  std::vector<std::string> runs;
  bool classMayRun = false, instanceMayRun = false;
  COSInterfacePtr onClass = COSListener::createListener(new HintedOp(classMayRun, runs, "class"));
  COSInterfacePtr onInstance = COSListener::createListener(new HintedOp(instanceMayRun, runs, "instance"));
  shape->addClassListener(COSID("InstanceCreated"), vt::L(onClass));
  COSInterfacePtr c;
  {
    // No listener call at all: an injected listener fault is never met.
    vcos::fault::Scope scope(vcos::fault::Point::Listener, 1);
    c = vt::make("vt.Circle");
    EXPECT_FALSE(scope.fired());
  }
  EXPECT_TRUE(runs.empty());
  classMayRun = true;
  COSInterfacePtr d = vt::make("vt.Circle");
  EXPECT_EQ(runs, (std::vector<std::string>{"class"}));
  shape->removeClassListener(COSID("InstanceCreated"), vt::L(onClass));

  // One listener that may run: every listener runs, in the usual order.
  onClass = COSListener::createListener(new HintedOp(classMayRun, runs, "class"));  // a removed one never runs
  shape->addClassListener(COSID("Changed"), vt::L(onClass), 10);
  c->addListener(COSID("Changed"), vt::L(onInstance), 20);
  runs.clear();
  classMayRun = false;
  c->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_TRUE(runs.empty());
  instanceMayRun = true;
  c->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(runs, (std::vector<std::string>{"instance", "class"}));
  // A disabled listener never counts as one that may run.
  vt::L(onInstance)->setEnabled(false);
  runs.clear();
  c->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_TRUE(runs.empty());
  shape->removeClassListener(COSID("Changed"), vt::L(onClass));
}

TEST(Events, ListenersMayRemoveOthersAndDeleteTheSourceWhileNotified) {
  COSInterfacePtr s = vt::make("vt.Shape");
  int secondRuns = 0, thirdRuns = 0;
  COSInterfacePtr second = vt::listener([&](COSInterface*, COSEventData*) { ++secondRuns; });
  COSInterfacePtr third = vt::listener([&](COSInterface*, COSEventData*) { ++thirdRuns; });
  COSInterfacePtr first = vt::listener([&](COSInterface* src, COSEventData*) {
    src->removeListener(COSID("Changed"), vt::L(second));
    src->deleteObject(COSGetPublicClient());
  });
  s->addListener(COSID("Changed"), vt::L(first), 2);
  s->addListener(COSID("Changed"), vt::L(second), 1);
  s->addListener(COSID("Changed"), vt::L(third), 0);
  COSInterfacePtr weak(s, COSWeakReference);
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(secondRuns, 0) << "a removed listener still ran";
  EXPECT_EQ(thirdRuns, 0) << "a listener ran on a deleted source";
  EXPECT_TRUE(weak->isDestroyed());
}

TEST(Events, AListenerAddedDuringNotificationWaitsForTheNextOne) {
  COSInterfacePtr s = vt::make("vt.Shape");
  int lateRuns = 0;
  COSInterfacePtr late = vt::listener([&](COSInterface*, COSEventData*) { ++lateRuns; });
  COSInterfacePtr adder = vt::listener([&](COSInterface* src, COSEventData*) {
    if (!lateRuns) src->addListener(COSID("Changed"), vt::L(late));
  });
  s->addListener(COSID("Changed"), vt::L(adder));
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(lateRuns, 0);
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(lateRuns, 1);
}

}  // namespace

namespace {

TEST(MethodSignature, VariableInputTakesAnyNumberOfItsType) {
  vt::registerClasses();
  using Arg = COSMethodSignature::Argument;
  auto sig = COSMethodSignature::createMethodSignature(
      COSID("f"), {Arg{COSID("first"), {}, false}, Arg{COSID("rest"), COSDataTypePtr("vt.Circle scalar"), false}}, {},
      COSMethodSignature::VarArgIn);
  COSInterfacePtr c = vt::make("vt.Circle");
  COSInterfacePtr s = vt::make("vt.Shape");
  COSValue anything = COSValue::fromInt(42);
  std::vector<COSValue> one{anything}, circles{anything, COSValue(c.get()), COSValue(c.get())},
      mixed{anything, COSValue(c.get()), COSValue(s.get())};
  EXPECT_FALSE(sig->accepts(0, nullptr));
  EXPECT_TRUE(sig->accepts(1, one.data()));
  EXPECT_TRUE(sig->accepts(3, circles.data()));
  EXPECT_FALSE(sig->accepts(3, mixed.data())) << "an extra input of the wrong class was accepted";
  auto fixed = COSMethodSignature::createMethodSignature(COSID("g"), {Arg{COSID("a"), {}, false}, Arg{COSID("b"), {}, true}}, {});
  EXPECT_TRUE(fixed->accepts(1, circles.data()));
  EXPECT_TRUE(fixed->accepts(2, circles.data()));
  EXPECT_FALSE(fixed->accepts(3, circles.data()));
}

}  // namespace
