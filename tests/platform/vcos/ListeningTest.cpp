// Who may listen (listen access of events, get access of properties), and
// property listeners attached to a class rather than to one instance.
#include <gtest/gtest.h>

#include "VcosTestClasses.h"
#include "foundation/core/except/Error.h"
#include "support/ErrorId.h"

using foundation::core::except::Error;

namespace {

using sgtest::errorId;

TEST(ListenAccess, EventListenAccessDecidesWhoMayAddListeners) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSClass* shape = vt::cls("vt.Shape");
  int heard = 0;
  COSInterfacePtr l = vt::listener([&](COSInterface*, COSEventData*) { ++heard; });
  const COSID whisper("Whisper");  // listen access protected, send access public
  EXPECT_EQ(errorId([&] { s->addListener(COSGetPublicClient(), whisper, vt::L(l)); }), "VANTEL:vcos:EventAccessDenied");
  EXPECT_EQ(errorId([&] { s->addListener(whisper, vt::L(l)); }), "VANTEL:vcos:EventAccessDenied")
      << "the form without a client is the public client";
  EXPECT_EQ(errorId([&] { shape->addClassListener(whisper, vt::L(l)); }), "VANTEL:vcos:EventAccessDenied");
  EXPECT_EQ(errorId([&] { shape->addClassListener(vt::cls("vt.Friend")->getPrivateClient(), whisper, vt::L(l)); }),
            "VANTEL:vcos:EventAccessDenied");
  s->notifyEvent(COSGetPublicClient(), whisper, nullptr);
  EXPECT_EQ(heard, 0) << "a refused listener was attached";

  // A subclass's client passes the protected access.
  s->addListener(vt::cls("vt.Circle")->getPrivateClient(), whisper, vt::L(l));
  s->notifyEvent(COSGetPublicClient(), whisper, nullptr);
  EXPECT_EQ(heard, 1);
  s->removeListener(whisper, vt::L(l));
  COSInterfacePtr cl = vt::listener([&](COSInterface*, COSEventData*) { ++heard; });
  shape->addClassListener(shape->getPrivateClient(), whisper, vt::L(cl));
  s->notifyEvent(COSGetPublicClient(), whisper, nullptr);
  shape->removeClassListener(whisper, vt::L(cl));
  EXPECT_EQ(heard, 2);
  // Events that no class declares stay open to everyone.
  COSInterfacePtr any = vt::listener([](COSInterface*, COSEventData*) {});
  s->addListener(COSGetPublicClient(), COSID("Undeclared"), vt::L(any));
}

// The class's event and listeners are kept per class between
// notifications: an event declared after instances were notified of its
// name, and a listener added then, count from that moment.
TEST(SendAccess, AnEventDeclaredOnABuiltClassGuardsItsSendsFromThen) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSClass* shape = vt::cls("vt.Shape");
  const COSID late("LateShout");
  s->notifyEvent(COSGetPublicClient(), late, nullptr);  // undeclared: open to everyone
  shape->addEvent(new COSEventT(late, PrivateAccess));
  EXPECT_EQ(errorId([&] { s->notifyEvent(COSGetPublicClient(), late, nullptr); }), "VANTEL:vcos:EventAccessDenied");
  int heard = 0;
  COSInterfacePtr l = vt::listener([&](COSInterface*, COSEventData*) { ++heard; });
  shape->addClassListener(shape->getPrivateClient(), late, vt::L(l));
  s->notifyEvent(shape->getPrivateClient(), late, nullptr);
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(errorId([&] { s->notifyEvent(COSGetPublicClient(), late, nullptr); }), "VANTEL:vcos:EventAccessDenied");
  EXPECT_EQ(heard, 1);
  shape->removeClassListener(late, vt::L(l));
  s->notifyEvent(shape->getPrivateClient(), late, nullptr);
  EXPECT_EQ(heard, 1);
}

TEST(ListenAccess, PropertyListenersNeedGetAccess) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSPropInfo* secret = vt::prop(s, "Secret");  // protected get and set
  int heard = 0;
  COSInterfacePtr l = vt::listener([&](COSInterface*, COSEventData*) { ++heard; });
  EXPECT_EQ(errorId([&] { s->addPropertyListener(COSPropertyEvent::PostSet, secret, vt::L(l)); }),
            "VANTEL:vcos:PropertyListenDenied");
  EXPECT_EQ(errorId([&] {
              vt::cls("vt.Shape")->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, secret,
                                                            vt::L(l));
            }),
            "VANTEL:vcos:PropertyListenDenied");
  const COSClient* own = vt::cls("vt.Shape")->getPrivateClient();
  s->addPropertyListener(own, COSPropertyEvent::PostSet, secret, vt::L(l));
  vt::set<std::int32_t>(s, "Secret", 3, own);
  EXPECT_EQ(heard, 1);
}

// Records "tag:source class" for each run.
struct Log {
  std::vector<std::string> lines;
  COSInterfacePtr make(const char* tag) {
    return vt::listener([this, tag](COSInterface* src, COSEventData* d) {
      EXPECT_EQ(d->getSourceWeak().get(), src);
      lines.push_back(std::string(tag) + ":" + src->getClass()->getName());
    });
  }
};

TEST(ClassPropertyListeners, ReachInstancesOfTheClassAndSubclassesBeforeTheirOwn) {
  COSClass* shape = vt::cls("vt.Shape");
  COSClass* circle = vt::cls("vt.Circle");
  COSInterfacePtr c = vt::make("vt.Circle");  // its class is built before the listeners
  COSInterfacePtr named = vt::make("vt.Named");
  COSPropInfo* width = shape->findPropertyExact(COSID("Width"));
  Log log;
  COSInterfacePtr onShape = log.make("shape"), onCircle = log.make("circle"), own = log.make("own");
  COSInterfacePtr preGet = log.make("preget");
  c->addPropertyListener(COSPropertyEvent::PostSet, vt::prop(c, "Width"), vt::L(own));
  circle->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet,
                                   circle->findPropertyExact(COSID("Width")), vt::L(onCircle));
  shape->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, width, vt::L(onShape));
  shape->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PreGet, width, vt::L(preGet));

  vt::set<double>(c, "Width", 2.0);
  EXPECT_EQ(log.lines, (std::vector<std::string>{"circle:vt.Circle", "shape:vt.Circle", "own:vt.Circle"}))
      << "class listeners run first, in the order added, then the instance's";
  log.lines.clear();
  vt::set<double>(c, "Visible", false);
  EXPECT_TRUE(log.lines.empty()) << "another property";
  EXPECT_EQ(vt::get<double>(c, "Width"), 2.0);
  EXPECT_EQ(log.lines, (std::vector<std::string>{"preget:vt.Circle"}));
  log.lines.clear();

  // A class built after the listener was added marks itself.
  COSInterfacePtr late = vt::make("vt.LateShape");
  vt::set<double>(late, "Width", 3.0);
  EXPECT_EQ(log.lines, (std::vector<std::string>{"shape:vt.LateShape"}));
  log.lines.clear();

  shape->removeClassPropertyListener(COSPropertyEvent::PostSet, width, vt::L(onShape));
  shape->removeClassPropertyListener(COSPropertyEvent::PreGet, width, vt::L(preGet));
  vt::set<double>(late, "Width", 4.0);
  vt::get<double>(late, "Width");
  EXPECT_TRUE(log.lines.empty()) << "a removed class listener still ran";
  vt::set<double>(c, "Width", 5.0);
  EXPECT_EQ(log.lines, (std::vector<std::string>{"circle:vt.Circle", "own:vt.Circle"}))
      << "removing one class's listener dropped another's";
  circle->removeClassPropertyListener(COSPropertyEvent::PostSet, circle->findPropertyExact(COSID("Width")),
                                      vt::L(onCircle));
}

TEST(ClassPropertyListeners, RefuseForeignAndUnobservableProperties) {
  COSClass* shape = vt::cls("vt.Shape");
  COSInterfacePtr l = vt::listener([](COSInterface*, COSEventData*) {});
  COSPropInfo* radius = vt::cls("vt.Circle")->findPropertyExact(COSID("Radius"));
  EXPECT_EQ(errorId([&] {
              shape->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, radius, vt::L(l));
            }),
            "VANTEL:vcos:PropertyNotOfClass");
  EXPECT_EQ(errorId([&] {
              shape->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet,
                                              shape->findPropertyExact(COSID("Quiet")), vt::L(l));
            }),
            "VANTEL:vcos:PropertyNotObservable");
}

TEST(ClassPropertyListeners, ListenerThatDeletesTheObjectStopsTheSet) {
  COSClass* shape = vt::cls("vt.Shape");
  COSPropInfo* width = shape->findPropertyExact(COSID("Width"));
  int postRuns = 0;
  COSInterfacePtr killer = vt::listener([](COSInterface* src, COSEventData*) { src->deleteObject(COSGetPublicClient()); });
  COSInterfacePtr post = vt::listener([&](COSInterface*, COSEventData*) { ++postRuns; });
  shape->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PreSet, width, vt::L(killer));
  shape->addClassPropertyListener(COSGetPublicClient(), COSPropertyEvent::PostSet, width, vt::L(post));
  COSInterfacePtr s = vt::make("vt.Shape");
  EXPECT_THROW(vt::set<double>(s, "Width", 2.0), Error);  // the store finds a deleted object
  EXPECT_TRUE(s->isDestroyed());
  EXPECT_EQ(postRuns, 0);
  shape->removeClassPropertyListener(COSPropertyEvent::PreSet, width, vt::L(killer));
  shape->removeClassPropertyListener(COSPropertyEvent::PostSet, width, vt::L(post));
}

// An op that declares it never reads event data.
class DatalessOp final : public COSListenerOp {
 public:
  explicit DatalessOp(std::vector<const COSEventData*>& seen) : seen_(seen) {}
  void callback(COSInterface*, COSEventData* data) override { seen_.push_back(data); }
  bool readsEventData() const noexcept override { return false; }

 private:
  std::vector<const COSEventData*>& seen_;
};

TEST(EventData, MadeOnlyWhenAListenerReadsIt) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSClass* shape = vt::cls("vt.Shape");
  const COSID shout("Shout");
  std::vector<const COSEventData*> dataless;
  COSInterfacePtr quiet = COSListener::createListener(new DatalessOp(dataless));
  shape->addClassListener(shout, vt::L(quiet));
  s->notifyEvent(COSGetPublicClient(), shout, nullptr);
  ASSERT_EQ(dataless.size(), 1u);
  EXPECT_EQ(dataless[0], nullptr) << "data made although no listener reads it";

  // A reader on the instance: both get the same data, naming source and event.
  const COSEventData* read = nullptr;
  COSInterfacePtr reader = vt::listener([&](COSInterface* source, COSEventData* data) {
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->getSourceWeak().get(), source);
    EXPECT_EQ(data->getEventName(), shout);
    EXPECT_EQ(data->getNotifyCount(), 1);
    read = data;
  });
  s->addListener(shout, vt::L(reader));
  s->notifyEvent(COSGetPublicClient(), shout, nullptr);
  ASSERT_EQ(dataless.size(), 2u);
  EXPECT_NE(read, nullptr);
  EXPECT_EQ(dataless[1], read);

  // Data the sender made reaches a dataless listener as it is.
  s->removeListener(shout, vt::L(reader));
  COSInterfacePtr given(new COSEventData(s.get(), shout));
  auto* givenData = static_cast<COSEventData*>(given.get());
  s->notifyEvent(COSGetPublicClient(), shout, givenData);
  ASSERT_EQ(dataless.size(), 3u);
  EXPECT_EQ(dataless[2], givenData);
  EXPECT_TRUE(givenData->isOkToDestroy());
  shape->removeClassListener(shout, vt::L(quiet));
}

}  // namespace
