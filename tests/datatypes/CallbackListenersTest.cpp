// Listeners that run the callback held in a property of the event's source,
// on real objects and real events.
#include <gtest/gtest.h>

#include "DatatypesTestSupport.h"
#include "vcos/COSGenericProp.h"

using namespace graphics::datatype;
using namespace dtt;

namespace {

class CallbackListeners : public ::testing::Test {
 protected:
  void SetUp() override { dtt::setUp(); }

  // Stores a C++ callback in the widget's "ClickFcn" through the public path.
  static void setClick(const COSInterfacePtr& w, VCallback::Function fn) {
    VCallback cb(std::move(fn));
    w->setPropertyValue(COSGetPublicClient(), w->findPropertyInfo(COSID("ClickFcn")), COSValue(&cb));
  }
  static void click(const COSInterfacePtr& w) { w->notifyEvent(COSGetPublicClient(), COSID("Click"), nullptr); }
};

TEST_F(CallbackListeners, RunTheCallbackStoredAtTheMomentOfTheEvent) {
  COSInterfacePtr w = make("dtt.Widget");
  COSInterfacePtr listener = createListener("ClickFcn", /*passEventData=*/true, /*allowRecursion=*/false);
  w->addListener(COSID("Click"), COSListener::toListener(listener));
  click(w);  // an empty callback: nothing runs

  std::vector<std::string> log;
  setClick(w, [&](COSInterface* s, COSEventData* d) {
    log.push_back(s == w.get() && d && d->getEventName() == COSID("Click") ? "first" : "wrong");
  });
  click(w);
  setClick(w, [&](COSInterface*, COSEventData*) { log.push_back("second"); });
  click(w);
  EXPECT_EQ(log, (std::vector<std::string>{"first", "second"}));

  w->removeListener(COSID("Click"), COSListener::toListener(listener));
  click(w);
  EXPECT_EQ(log.size(), 2u);
}

TEST_F(CallbackListeners, EventDataOnlyWhenAskedFor) {
  COSInterfacePtr w = make("dtt.Widget");
  COSInterfacePtr listener = createListener("ClickFcn", /*passEventData=*/false, /*allowRecursion=*/false);
  w->addListener(COSID("Click"), COSListener::toListener(listener));
  COSEventData* seen = reinterpret_cast<COSEventData*>(1);
  setClick(w, [&](COSInterface*, COSEventData* d) { seen = d; });
  click(w);
  EXPECT_EQ(seen, nullptr);
}

TEST_F(CallbackListeners, ACallbackMayReplaceItselfAndRecursionFollowsTheFlag) {
  for (bool recursive : {false, true}) {
    COSInterfacePtr w = make("dtt.Widget");
    COSInterfacePtr listener = createListener("ClickFcn", true, recursive);
    w->addListener(COSID("Click"), COSListener::toListener(listener));
    int depth = 0, runs = 0;
    setClick(w, [&](COSInterface*, COSEventData*) {
      ++runs;
      if (++depth < 3) click(w);  // fires the event it is running for
      --depth;
    });
    click(w);
    EXPECT_EQ(runs, recursive ? 3 : 1) << "recursive " << recursive;

    // The callback clears its own property while it runs; the running copy
    // stays valid.
    int after = 0;
    setClick(w, [&](COSInterface* s, COSEventData*) {
      VCallback empty;
      s->setPropertyValue(COSGetPublicClient(), s->findPropertyInfo(COSID("ClickFcn")), COSValue(&empty));
      ++after;
    });
    click(w);
    click(w);
    EXPECT_EQ(after, 1);
  }
}

TEST_F(CallbackListeners, ArrayPropertiesAndLanguageValuesGoThroughTheRunner) {
  COSInterfacePtr w = make("dtt.Widget");
  COSInterfacePtr listener = createListener("ArrayFcn", true, false);
  w->addListener(COSID("Click"), COSListener::toListener(listener));
  auto code = text("disp(42)");
  w->setPropertyValue(COSGetPublicClient(), w->findPropertyInfo(COSID("ArrayFcn")), COSValue(code.get()));
  std::string ran;
  COSInterface* source = nullptr;
  VCallback::Runner previous = VCallback::setRunner([&](const vxArray* v, COSInterface* s, COSEventData*) {
    ran = vxArrayToStdString(v);
    source = s;
  });
  click(w);
  VCallback::setRunner(std::move(previous));
  EXPECT_EQ(ran, "disp(42)");
  EXPECT_EQ(source, w.get());
}

TEST_F(CallbackListeners, MayRunOnlyWhereTheSourceHoldsACallback) {
  COSInterfacePtr w = make("dtt.Widget");
  const COSInterfacePtr held[] = {createListener("ClickFcn", true, false), createListener("ArrayFcn", true, false),
                                  createListener("NoSuchFcn", true, false)};
  COSListener* click = COSListener::toListener(held[0]);
  COSListener* array = COSListener::toListener(held[1]);
  COSListener* missing = COSListener::toListener(held[2]);
  EXPECT_FALSE(click->mayRunFor(w.get()));
  EXPECT_FALSE(array->mayRunFor(w.get()));
  EXPECT_FALSE(missing->mayRunFor(w.get()));
  setClick(w, [](COSInterface*, COSEventData*) {});
  EXPECT_TRUE(click->mayRunFor(w.get()));
  auto code = text("disp(1)");
  w->setPropertyValue(COSGetPublicClient(), w->findPropertyInfo(COSID("ArrayFcn")), COSValue(code.get()));
  EXPECT_TRUE(array->mayRunFor(w.get()));
  click->setEnabled(false);
  EXPECT_FALSE(click->mayRunFor(w.get()));
}

TEST_F(CallbackListeners, APropertyAddedAtRunTimeHoldsACallbackTooButNoOtherNameStandsForIt) {
  COSInterfacePtr w = make("dtt.Widget");
  const COSInterfacePtr held[] = {createListener("AddedFcn", false, false), createListener("Added", false, false)};
  COSListener* added = COSListener::toListener(held[0]);
  COSListener* prefix = COSListener::toListener(held[1]);
  EXPECT_FALSE(added->mayRunFor(w.get()));
  COSInterfacePtr property(COSGenericProp::createNewDynamicProp(COSString("AddedFcn"), w->getClass()->getID(),
                                                                COSID(kCallbackType)));
  w->addDynamicProperty(static_cast<COSPropInfo*>(property.get()));
  int runs = 0;
  VCallback cb([&](COSInterface*, COSEventData*) { ++runs; });
  w->setPropertyValue(COSGetPublicClient(), w->findPropertyInfo(COSID("AddedFcn")), COSValue(&cb));
  EXPECT_TRUE(added->mayRunFor(w.get()));
  added->fire(w.get(), nullptr);
  EXPECT_EQ(runs, 1);
  // A listener names its property in full: a shorter name finds nothing.
  EXPECT_FALSE(prefix->mayRunFor(w.get()));
  prefix->fire(w.get(), nullptr);
  EXPECT_EQ(runs, 1);
}

TEST_F(CallbackListeners, ClassListenerRunsForEveryInstanceAndSkipsOnesWithoutTheProperty) {
  COSClass* widget = COSClass::getClass(COSID("dtt.Widget"));
  COSInterfacePtr listener = createClassListener("ClickFcn", false, false);
  widget->addClassListener(COSID("Ping"), COSListener::toListener(listener));
  COSInterfacePtr a = make("dtt.Widget"), b = make("dtt.Widget");
  int runs = 0;
  setClick(a, [&](COSInterface*, COSEventData*) { ++runs; });
  setClick(b, [&](COSInterface*, COSEventData*) { runs += 10; });
  a->notifyEvent(COSGetPublicClient(), COSID("Ping"), nullptr);
  b->notifyEvent(COSGetPublicClient(), COSID("Ping"), nullptr);
  EXPECT_EQ(runs, 11);
  widget->removeClassListener(COSID("Ping"), COSListener::toListener(listener));

  // A listener attached to an object whose class has no such property does nothing.
  COSInterfacePtr figure = make("vantel.ui.Figure");
  COSInterfacePtr stray = createListener("ClickFcn", true, true);
  COSListener::toListener(stray)->fire(figure.get(), nullptr);
}

TEST_F(CallbackListeners, ObjectListenerRunsForADyingSourceClassListenerDoesNot) {
  // A deletion callback must still run while its object is being deleted; a
  // class listener (creation callbacks) must not run for an object whose
  // deletion has begun.
  COSClass* widget = COSClass::getClass(COSID("dtt.Widget"));
  COSID beingDestroyed("ObjectBeingDestroyed");
  COSInterfacePtr classListener = createClassListener("ClickFcn", false, false);
  widget->addClassListener(beingDestroyed, COSListener::toListener(classListener));
  COSInterfacePtr w = make("dtt.Widget");
  COSInterfacePtr objectListener = createListener("ClickFcn", false, false);
  w->addListener(beingDestroyed, COSListener::toListener(objectListener));
  int runs = 0;
  bool dying = false;
  setClick(w, [&](COSInterface* s, COSEventData*) {
    ++runs;
    dying = s->isBeingDestroyed();
  });
  ASSERT_TRUE(w->deleteObject(COSGetPublicClient()));
  widget->removeClassListener(beingDestroyed, COSListener::toListener(classListener));
  EXPECT_EQ(runs, 1);
  EXPECT_TRUE(dying);
}

}  // namespace

TEST_F(CallbackListeners, OneListenerAnswersForEachClassItHearsAndForPropertiesAClassGainsLater) {
  COSInterfacePtr w = make("dtt.Widget");
  COSInterfacePtr f = make("vantel.ui.Figure");
  const COSInterfacePtr held[] = {createListener("ClickFcn", false, false), createListener("LateFcn", false, false)};
  COSListener* click = COSListener::toListener(held[0]);
  COSListener* late = COSListener::toListener(held[1]);
  setClick(w, [](COSInterface*, COSEventData*) {});
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(click->mayRunFor(f.get())) << round;
    EXPECT_TRUE(click->mayRunFor(w.get())) << round;
  }
  // The figure's class gains the property after the listener found none.
  EXPECT_FALSE(late->mayRunFor(f.get()));
  COSClass* figure = f->getClass();
  figure->addProperty(new COSPropT(figure->getID(), COSID("LateFcn"), COSDataTypePtr(kCallbackType)));
  COSInterfacePtr g = make("vantel.ui.Figure");
  int runs = 0;
  VCallback cb([&](COSInterface*, COSEventData*) { ++runs; });
  g->setPropertyValue(COSGetPublicClient(), g->findPropertyInfo(COSID("LateFcn")), COSValue(&cb));
  EXPECT_TRUE(late->mayRunFor(g.get()));
  late->fire(g.get(), nullptr);
  EXPECT_EQ(runs, 1);
}

// A class listener on a class without the callback property is skipped for
// objects that have nothing added; what is added to an object, or to the
// class, later counts at once.
TEST_F(CallbackListeners, AClassListenerSkippedForItsClassStillRunsWhatIsAddedLater) {
  COSClass* figure = COSClass::getClass(COSID("vantel.ui.Figure"));
  const COSInterfacePtr held[] = {createClassListener("OwnPingFcn", false, false),
                                  createClassListener("ClassPingFcn", false, false)};
  for (const COSInterfacePtr& l : held) figure->addClassListener(COSID("Ping"), COSListener::toListener(l));
  std::vector<std::string> ran;
  auto ping = [](const COSInterfacePtr& o) { o->notifyEvent(COSGetPublicClient(), COSID("Ping"), nullptr); };

  COSInterfacePtr f = make("vantel.ui.Figure");
  ping(f);  // neither property exists
  COSInterfacePtr own(COSGenericProp::createNewDynamicProp(COSString("OwnPingFcn"), figure->getID(),
                                                           COSID(kCallbackType)));
  f->addDynamicProperty(static_cast<COSPropInfo*>(own.get()));
  VCallback first([&](COSInterface*, COSEventData*) { ran.push_back("own"); });
  f->setPropertyValue(COSGetPublicClient(), f->findPropertyInfo(COSID("OwnPingFcn")), COSValue(&first));
  ping(f);
  EXPECT_EQ(ran, (std::vector<std::string>{"own"}));

  COSInterfacePtr g = make("vantel.ui.Figure");
  ping(g);
  // The class gains the property with a callback for its default value:
  // a new object holds it without anything of its own.
  VCallback second([&](COSInterface*, COSEventData*) { ran.push_back("class"); });
  figure->addProperty(
      new COSPropT(figure->getID(), COSID("ClassPingFcn"), COSDataTypePtr(kCallbackType), COSValue(&second)));
  COSInterfacePtr h = make("vantel.ui.Figure");
  ping(h);
  EXPECT_EQ(ran, (std::vector<std::string>{"own", "class"}));

  for (const COSInterfacePtr& l : held) figure->removeClassListener(COSID("Ping"), COSListener::toListener(l));
  for (const COSInterfacePtr& o : {f, g, h}) o->deleteObject(COSGetPublicClient());
}
