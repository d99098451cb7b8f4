// addlistener of class "handle" in its forms, and the listener objects it
// gives: they run their callback with the source and an event data object,
// obey Enabled, stop when deleted, and live exactly as long as a source or a
// variable holds them. Listener objects made by the constructors of
// "event.listener" and "event.proplistener" live only while a variable holds
// them.
#include <gtest/gtest.h>

#include "BuiltinTestSupport.h"

using bt::text;

namespace {

struct Heard {
  int count = 0;
  COSInterface* source = nullptr;
  std::string dataClass, eventName;
  COSInterface* affected = nullptr;
};

// A callback that records what it heard.
matrix::unique_vxArray recorder(Heard& h) {
  return bt::fn([&h](int nrhs, const vxArray* in[]) -> vxArray* {
    ++h.count;
    EXPECT_EQ(nrhs, 2);
    h.source = omGetArrayElement(in[0], 0).get();
    h.dataClass = vxGetClassName(in[1]);
    COSInterfacePtr data = omGetArrayElement(in[1], 0);
    h.eventName = bt::getText(data, "EventName");
    if (h.dataClass == "event.PropertyEvent")
      h.affected = omGetArrayElement(bt::getValue(data, "AffectedObject").get(), 0).get();
    return nullptr;
  });
}

void ping(const COSInterfacePtr& o) { o->notifyEvent(COSGetPublicClient(), COSID("Ping"), nullptr); }

matrix::unique_vxArray addlistener(std::vector<const vxArray*> in) { return bt::call("addlistener", std::move(in)); }

TEST(AddListenerEvent, CallbackGetsSourceAndEventData) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  auto l = addlistener({bt::arr(n).get(), text("Ping").get(), cb.get()});
  EXPECT_STREQ(vxGetClassName(l.get()), "event.listener");
  ping(n);
  EXPECT_EQ(h.count, 1);
  EXPECT_EQ(h.source, n.get());
  EXPECT_EQ(h.dataClass, "event.EventData");
  EXPECT_EQ(h.eventName, "Ping");
  COSInterfacePtr lo = omGetArrayElement(l.get(), 0);
  EXPECT_EQ(bt::getText(lo, "EventName"), "Ping");
  n->deleteObject(COSGetPublicClient());
}

TEST(AddListenerEvent, DisabledListenerIsSilentUntilEnabledAgain) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  COSInterfacePtr lo = omGetArrayElement(addlistener({bt::arr(n).get(), text("Ping").get(), cb.get()}).get(), 0);
  bt::setValue(lo, "Enabled", matrix::unique_vxArray(vxCreateLogicalScalar(false)).get());
  ping(n);
  EXPECT_EQ(h.count, 0);
  bt::setValue(lo, "Enabled", matrix::unique_vxArray(vxCreateLogicalScalar(true)).get());
  ping(n);
  EXPECT_EQ(h.count, 1);
  n->deleteObject(COSGetPublicClient());
}

TEST(AddListenerEvent, DeletingTheListenerObjectStopsIt) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  auto l = addlistener({bt::arr(n).get(), text("Ping").get(), cb.get()});
  bt::call("delete", {l.get()}, 0);
  EXPECT_TRUE(omGetArrayElement(l.get(), 0)->isDestroyed());
  ping(n);
  EXPECT_EQ(h.count, 0);
  n->deleteObject(COSGetPublicClient());
}

TEST(AddListenerEvent, ListenerLivesWithItsSourceAndNoLonger) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  COSInterfacePtr watch;  // weak: only asks isDestroyed
  watch.setReferenceType(COSWeakReference);
  watch = omGetArrayElement(addlistener({bt::arr(n).get(), text("Ping").get(), cb.get()}).get(), 0).get();
  ping(n);
  EXPECT_EQ(h.count, 1) << "the source keeps a listener whose array is gone";
  EXPECT_FALSE(watch->isDestroyed());
  n->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(watch->isDestroyed()) << "a listener object outlived its only source";
}

TEST(AddListenerEvent, DroppedSourceWithListenersLeavesNothingBehind) {
  bt::setUp();
  const std::size_t before = vcos::liveObjectCount();
  {
    COSInterfacePtr n = bt::make("bt.Node");
    Heard h;
    auto cb = recorder(h);
    addlistener({bt::arr(n).get(), text("Ping").get(), cb.get()});
    auto pl = addlistener({bt::arr(n).get(), text("Value").get(), text("PostSet").get(), cb.get()});
    ping(n);
    bt::setValue(n, "Value", bt::number(2).get());  // makes event data objects too
    EXPECT_EQ(h.count, 2);
  }
  EXPECT_EQ(vcos::liveObjectCount(), before) << "a listener, its object or event data kept memory alive";
}

TEST(AddListenerEvent, CallbackThatDeletesTheSourceIsSafe) {
  COSInterfacePtr n = bt::make("bt.Node");
  int runs = 0;
  auto killer = bt::fn([&](int, const vxArray* in[]) -> vxArray* {
    ++runs;
    omGetArrayElement(in[0], 0)->deleteObject(COSGetPublicClient());
    return nullptr;
  });
  Heard h;
  auto cb = recorder(h);
  auto l1 = addlistener({bt::arr(n).get(), text("Ping").get(), killer.get()});
  auto l2 = addlistener({bt::arr(n).get(), text("Ping").get(), cb.get()});
  ping(n);
  EXPECT_EQ(runs, 1);
  EXPECT_TRUE(n->isDestroyed());
  // A variable still holds the listener object: it stays, detached.
  auto valid = bt::call("isvalid", {l1.get()});
  EXPECT_TRUE(vxGetLogicals(valid.get())[0]);
  COSInterfacePtr listenerObject = omGetArrayElement(l1.get(), 0);
  auto sources = bt::getValue(listenerObject, "Source");
  EXPECT_TRUE(omGetArrayElement(vxGetCell(sources.get(), 0), 0)->isDestroyed());
  EXPECT_EQ(bt::errorId([&] { bt::setValue(listenerObject, "Enabled", matrix::unique_vxArray(vxCreateLogicalScalar(true)).get()); }), "");
}

TEST(AddListenerProperty, PostSetOfNamedPropertiesGetsPropertyEvent) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  auto l = addlistener({bt::arr(n).get(), text("Value").get(), text("PostSet").get(), cb.get()});
  EXPECT_STREQ(vxGetClassName(l.get()), "event.proplistener");
  bt::setValue(n, "Value", bt::number(4).get());
  EXPECT_EQ(h.count, 1);
  EXPECT_EQ(h.dataClass, "event.PropertyEvent");
  EXPECT_EQ(h.eventName, "PostSet");
  EXPECT_EQ(h.affected, n.get());
  bt::setValue(n, "Name", text("x").get());
  EXPECT_EQ(h.count, 1) << "another property";
  n->deleteObject(COSGetPublicClient());
}

TEST(AddListenerProperty, CellOfNamesAndPropertyObjectsAndGetEvents) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard sets, gets;
  auto onSet = recorder(sets), onGet = recorder(gets);
  matrix::unique_vxArray names(vxCreateCellMatrix(1, 2));
  vxSetCell(names.get(), 0, vxCreateString("Value"));
  vxSetCell(names.get(), 1, vxCreateString("name"));  // found without regard to case
  auto l1 = addlistener({bt::arr(n).get(), names.get(), text("PreSet").get(), onSet.get()});
  COSInterfacePtr tagProperty(n->findPropertyInfo(COSID("Tag")));
  auto l2 = addlistener({bt::arr(n).get(), bt::arr(tagProperty).get(), text("PostGet").get(), onGet.get()});
  bt::setValue(n, "Value", bt::number(1).get());
  bt::setValue(n, "Name", text("y").get());
  EXPECT_EQ(sets.count, 2);
  bt::getValue(n, "Tag");
  EXPECT_EQ(gets.count, 1);
  n->deleteObject(COSGetPublicClient());
}

TEST(AddListenerErrors, BadFormsRaiseWithIdentifiers) {
  COSInterfacePtr n = bt::make("bt.Node");
  auto self = bt::arr(n);
  auto cb = bt::fn([](int, const vxArray*[]) -> vxArray* { return nullptr; });
  auto run = [&](std::vector<const vxArray*> in) { return bt::errorId([&] { addlistener(in); }); };
  EXPECT_EQ(run({self.get(), text("NoSuchEvent").get(), cb.get()}), "VANTEL:vcos:addlistener:UnknownEvent");
  EXPECT_EQ(run({self.get(), text("Nope").get(), text("PostSet").get(), cb.get()}),
            "VANTEL:vcos:addlistener:UnknownProperty");
  EXPECT_EQ(run({self.get(), text("Value").get(), text("Set").get(), cb.get()}),
            "VANTEL:vcos:addlistener:BadPropertyEvent");
  EXPECT_EQ(run({self.get(), text("Ping").get(), bt::number(3).get()}), "VANTEL:vcos:addlistener:BadCallback");
  EXPECT_EQ(run({self.get(), text("Ping").get()}), "VANTEL:vcos:NoMatchingSignature");
  auto empty = bt::column({}, "bt.Node");
  EXPECT_EQ(run({empty.get(), text("Ping").get(), cb.get()}), "VANTEL:vcos:addlistener:NoSource");
  n->deleteObject(COSGetPublicClient());
  EXPECT_EQ(run({self.get(), text("Ping").get(), cb.get()}), "VANTEL:vcos:InvalidHandle");
}

matrix::unique_vxArray construct(const char* className, std::vector<const vxArray*> in) {
  return matrix::unique_vxArray(
      omConstructObjectWithClient(className, static_cast<int>(in.size()), in.data(), COSGetPublicClient()));
}

TEST(ListenerConstructor, ListensUntilTheLastVariableLetsGo) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  auto l = construct("event.listener", {bt::arr(n).get(), text("Ping").get(), cb.get()});
  ASSERT_STREQ(vxGetClassName(l.get()), "event.listener");
  COSInterfacePtr watch;  // weak: only asks isDestroyed
  watch.setReferenceType(COSWeakReference);
  watch = omGetArrayElement(l.get(), 0).get();
  EXPECT_EQ(bt::getText(watch, "EventName"), "Ping");
  ping(n);
  EXPECT_EQ(h.count, 1);
  EXPECT_EQ(h.source, n.get());
  EXPECT_EQ(h.dataClass, "event.EventData");
  l.reset();
  EXPECT_TRUE(watch->isDestroyed()) << "the source kept a constructed listener alive";
  ping(n);
  EXPECT_EQ(h.count, 1) << "a listener ran after its last variable went";
  n->deleteObject(COSGetPublicClient());
}

TEST(ListenerConstructor, OutlivesItsSourceWhileAVariableHoldsIt) {
  bt::setUp();
  const std::size_t before = vcos::liveObjectCount();
  {
    COSInterfacePtr n = bt::make("bt.Node");
    Heard h;
    auto cb = recorder(h);
    auto l = construct("event.proplistener", {bt::arr(n).get(), text("Value").get(), text("PostSet").get(), cb.get()});
    ASSERT_STREQ(vxGetClassName(l.get()), "event.proplistener");
    bt::setValue(n, "Value", bt::number(3).get());
    EXPECT_EQ(h.count, 1);
    EXPECT_EQ(h.dataClass, "event.PropertyEvent");
    EXPECT_EQ(h.affected, n.get());
    n->deleteObject(COSGetPublicClient());
    n = nullptr;
    COSInterfacePtr lo = omGetArrayElement(l.get(), 0);
    EXPECT_FALSE(lo->isDestroyed());
    EXPECT_EQ(bt::errorId([&] { bt::getValue(lo, "Source"); }), "");
  }
  EXPECT_EQ(vcos::liveObjectCount(), before) << "a constructed listener or its source kept memory alive";
}

TEST(ListenerConstructor, BadInputsAttachNothing) {
  COSInterfacePtr n = bt::make("bt.Node");
  Heard h;
  auto cb = recorder(h);
  auto run = [&](const char* cls, std::vector<const vxArray*> in) { return bt::errorId([&] { construct(cls, in); }); };
  EXPECT_EQ(run("event.listener", {}), "VANTEL:vcos:NoMatchingSignature");
  EXPECT_EQ(run("event.listener", {bt::arr(n).get(), text("Value").get(), text("PostSet").get(), cb.get()}),
            "VANTEL:vcos:NoMatchingSignature")
      << "the property form belongs to event.proplistener";
  EXPECT_EQ(run("event.proplistener", {bt::arr(n).get(), text("Ping").get(), cb.get()}),
            "VANTEL:vcos:NoMatchingSignature");
  // The second source fails after the first was checked.
  COSInterfacePtr dead = bt::make("bt.Node");
  dead->deleteObject(COSGetPublicClient());
  auto both = bt::column({n, dead}, "bt.Node");
  EXPECT_EQ(run("event.listener", {both.get(), text("Ping").get(), cb.get()}), "VANTEL:vcos:InvalidHandle");
  EXPECT_EQ(run("event.listener", {bt::arr(n).get(), text("Ping").get(), bt::number(1).get()}),
            "VANTEL:vcos:addlistener:BadCallback");
  ping(n);
  EXPECT_EQ(h.count, 0) << "a failed construction left a listener attached";
  n->deleteObject(COSGetPublicClient());
}

TEST(AddListenerCallbacks, NamedFunctionAndCellWithExtraArguments) {
  static int namedRuns = 0;
  static int extraInputs = 0;
  vcos::FunctionDispatcher::instance().registerBuiltin(
      "btOnPing", [](int, vxArray*[], int nrhs, const vxArray*[]) {
        ++namedRuns;
        extraInputs = nrhs - 2;
      });
  COSInterfacePtr n = bt::make("bt.Node");
  auto l1 = addlistener({bt::arr(n).get(), text("Ping").get(), text("btOnPing").get()});
  ping(n);
  EXPECT_EQ(namedRuns, 1);
  EXPECT_EQ(extraInputs, 0);
  bt::call("delete", {l1.get()}, 0);
  matrix::unique_vxArray withArgs(vxCreateCellMatrix(1, 3));
  vxSetCell(withArgs.get(), 0, vxCreateString("btOnPing"));
  vxSetCell(withArgs.get(), 1, vxCreateDoubleScalar(1));
  vxSetCell(withArgs.get(), 2, vxCreateDoubleScalar(2));
  auto l2 = addlistener({bt::arr(n).get(), text("Ping").get(), withArgs.get()});
  ping(n);
  EXPECT_EQ(namedRuns, 2);
  EXPECT_EQ(extraInputs, 2);
  vcos::FunctionDispatcher::instance().unregisterBuiltin("btOnPing");
  n->deleteObject(COSGetPublicClient());
}

}  // namespace
