// The rest of what travels during an update: the events that come back, the
// clocks, and the scene viewer parent found on a real object.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "sgutils/TestGraphicsClasses.h"
#include "sgutils/propinfos/PropertyModelClasses.h"
#include "sgutils/view/Duration.h"
#include "sgutils/view/JavaViewObject.h"
#include "sgutils/view/NullSceneViewerParent.h"
#include "sgutils/view/Timestamp.h"
#include "sgutils/view/UpdateViewResults.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/vcos.h"

namespace {

using sgutils::UpdateViewResults;

// Event data is counted by the runtime; the shared pointer holds one count.
boost::shared_ptr<COSEventData> eventData(const char* name) {
  auto* data = new COSEventData(nullptr, COSID(name));
  return boost::shared_ptr<COSEventData>(data, [hold = COSInterfacePtr(data)](COSEventData*) mutable { hold.reset(); });
}

TEST(UpdateViewResultsEvents, RangesAppendInArrivalOrderAndShareTheData) {
  UpdateViewResults::EventList first{eventData("A"), eventData("B"), eventData("C")};
  UpdateViewResults::EventList second{eventData("D")};
  UpdateViewResults results;
  results.addEvents(std::next(first.begin()), first.end());
  results.addEvents(second.begin(), second.end());
  results.addEvents(first.begin(), first.begin());

  std::vector<std::string> names;
  for (const auto& event : results.getEvents()) names.push_back(event->getEventName().c_str());
  EXPECT_EQ(names, (std::vector<std::string>{"B", "C", "D"}));
  EXPECT_EQ(results.getEvents().front().get(), std::next(first.begin())->get());
}

// A Java view holds its peer: one made from a raw reference leaves it to the
// Java layer, one made from a shared peer (and every copy) shares it, and the
// peer goes once, with its last holder, also through the base class.
TEST(JavaViewObjects, ShareTheirPeerAndOwnARawReferenceNever) {
  int released = 0;
  alignas(8) static unsigned char storage[8];
  auto* raw = reinterpret_cast<_jobject*>(storage);
  {
    sgutils::JavaViewObject fromRaw(raw);
    EXPECT_EQ(fromRaw.getJavaPeer().get(), raw);
  }  // nothing to release: destroying a borrowed reference would be a fault
  {
    boost::shared_ptr<_jobject> peer(raw, [&](_jobject*) { ++released; });
    std::unique_ptr<sgutils::ViewObject> view =
        std::make_unique<sgutils::JavaViewObject>(graphics::datatype::JavaPeer(peer));
    sgutils::JavaViewObject copy(*static_cast<sgutils::JavaViewObject*>(view.get()));
    peer.reset();
    EXPECT_EQ(copy.getJavaPeer().get(), raw);
    EXPECT_EQ(copy.getJavaPeer().use_count(), 3);  // the two views and this answer
    view.reset();
    EXPECT_EQ(released, 0);
  }
  EXPECT_EQ(released, 1);
  EXPECT_FALSE(sgutils::JavaViewObject(graphics::datatype::JavaPeer()).getJavaPeer());
}

TEST(ViewClocks, TimestampIsMillisecondsOfTheSystemClock) {
  using namespace std::chrono;
  const auto ms = [] { return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count(); };
  const auto before = ms();
  const auto stamp = sgutils::timestamp();
  const auto after = ms();
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, after);
}

TEST(ViewClocks, ACopiedDurationMeasuresFromTheOriginalStart) {
  const sgutils::Duration original;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const sgutils::Duration copy = original;
  sgutils::Duration assigned;
  assigned = original;
  EXPECT_GE(copy.getDurationInSeconds(), 0.02);
  EXPECT_GE(assigned.getDurationInSeconds(), 0.02);
  const double first = original.getDurationInSeconds();
  EXPECT_GE(original.getDurationInSeconds(), first) << "reading does not restart the measurement";
  EXPECT_LT(first, 3600.0) << "seconds, not nanoseconds";
}

// A graphics object whose Graphics block is a scene viewer parent, as a
// container of a scene viewer would be. Graphics admits a closed list of
// subclasses; this class takes the name of an example class on it, in a
// package of its own.
class ViewerParentBlock : public SGHandle, public sgutils::test::NullSceneViewerParent {};

class TestSceneViewerParentInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "NewCircle"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addMethod(
        new ObjectCtorMI<ViewerParentBlock, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new ViewerParentBlock; }
  void* allocateInstance(COSInterface* instance) override { return instance->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}

 private:
  static const COSID& graphicsId() {
    static const COSID id("vantel.graphics.Graphics");
    return id;
  }
};

class ExamplesNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "sg2examples"; }
};

COSInterfacePtr makeViewerParent() {
  static const bool registered = [] {
    sgtest::registerTestClasses();
    COSPackage::addNamespace(new ExamplesNamespace)->addClass(new TestSceneViewerParentInfo, 0, 2);
    return true;
  }();
  (void)registered;
  matrix::unique_vxArray result(
      omConstructObjectWithClient("sg2examples.NewCircle", 0, nullptr, COSGetPublicClient()));
  return omGetArrayElement(result.get(), 0);
}

TEST(SceneViewerParentLookup, FoundOnTheGraphicsBlockOfALiveObjectOnly) {
  COSInterfacePtr parent = makeViewerParent();
  sgutils::SceneViewerParent* found = sgutils::SceneViewerParent::getSceneViewerParentInterface(parent);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found, static_cast<sgutils::SceneViewerParent*>(
                       static_cast<ViewerParentBlock*>(SGHandle::fromObject(parent.get()))));
  found->processSceneViewerEvent(parent, parent, nullptr, {1.0, 2.0, 0.0});

  COSInterfacePtr plain = sgtest::propmodel::makeObject(sgtest::propmodel::kFlagsClass);
  EXPECT_EQ(sgutils::SceneViewerParent::getSceneViewerParentInterface(plain), nullptr);
  EXPECT_EQ(sgutils::SceneViewerParent::getSceneViewerParentInterface(COSInterfacePtr()), nullptr);

  parent->deleteObject(COSGetPublicClient());
  plain->deleteObject(COSGetPublicClient());
  EXPECT_EQ(sgutils::SceneViewerParent::getSceneViewerParentInterface(parent), nullptr) << "a deleted object's block is gone";
}

}  // namespace
