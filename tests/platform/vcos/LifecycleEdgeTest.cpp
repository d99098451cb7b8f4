// Failures on the way in and out of an object's life, and re-entrant use of
// listeners and iterators.
#include <gtest/gtest.h>

#include "VcosTestClasses.h"
#include "foundation/core/except/Error.h"

using foundation::core::except::Error;

namespace {

TEST(ClassBuilding, SuperclassCycleIsRefused) {
  try {
    vt::cls("vt.CycleA");
    FAIL() << "a class deriving from itself was built";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:CircularSuperclass");
  }
  EXPECT_THROW(vt::cls("vt.CycleB"), Error);
}

TEST(ObjectCreation, AFailedBlockAllocationFreesTheBlocksAlreadyMade) {
  vt::cls("vt.Fragile");
  std::size_t live = vcos::internal::liveInstanceCount();
  int shapes = vt::journal().shapeBlocks;
  vt::journal().failAllocation = true;
  EXPECT_THROW(vt::make("vt.Fragile"), Error);
  vt::journal().failAllocation = false;
  EXPECT_EQ(vt::journal().shapeBlocks, shapes) << "the base block made before the failure leaked";
  EXPECT_EQ(vcos::internal::liveInstanceCount(), live);
}

TEST(ObjectCreation, AFailingConstructorDeletesTheObjectWithoutInstanceCreated) {
  COSClass* fragile = vt::cls("vt.Fragile");
  int created = 0, destroyed = 0;
  COSInterfacePtr onCreate = vt::listener([&](COSInterface*, COSEventData*) { ++created; });
  COSInterfacePtr onDestroy = vt::listener([&](COSInterface*, COSEventData*) { ++destroyed; });
  fragile->addClassListener(COSID("InstanceCreated"), vt::L(onCreate));
  fragile->addClassListener(COSID("ObjectBeingDestroyed"), vt::L(onDestroy));
  std::size_t live = vcos::internal::liveInstanceCount();
  COSValue bad = COSValue::fromDouble(-1);
  EXPECT_THROW(fragile->createInstance(COSGetPublicClient(), 1, &bad), Error);
  EXPECT_EQ(created, 0);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(vcos::internal::liveInstanceCount(), live);
  COSValue good = COSValue::fromDouble(1);
  COSInterfacePtr ok = fragile->createInstance(COSGetPublicClient(), 1, &good);
  EXPECT_EQ(created, 1);
  fragile->removeClassListener(COSID("InstanceCreated"), vt::L(onCreate));
  fragile->removeClassListener(COSID("ObjectBeingDestroyed"), vt::L(onDestroy));
}

TEST(ObjectDeletion, AFailingListenerDoesNotStopDeletionAndItsErrorComesOut) {
  COSInterfacePtr parent = vt::make("vt.Shape");
  COSInterfacePtr child = vt::make("vt.Shape");
  parent->hookChild(child.get());
  COSInterfacePtr thrower = vt::listener([](COSInterface*, COSEventData*) {
    throw Error("VANTEL:vcos:InvalidHandle");
  });
  parent->addListener(COSID("ObjectBeingDestroyed"), vt::L(thrower));
  EXPECT_THROW(parent->deleteObject(COSGetPublicClient()), Error);
  EXPECT_TRUE(parent->isDestroyed());
  EXPECT_TRUE(child->isDestroyed());
}

TEST(ObjectTree, AWalkSurvivesDeletingTheElementJustHandedOut) {
  COSInterfacePtr root = vt::make("vt.Shape");
  std::vector<COSInterface*> hooked;
  for (int i = 0; i < 4; ++i) {
    COSInterfacePtr c = vt::make("vt.Shape");
    root->hookChild(c.get());
    hooked.push_back(c.get());
  }
  int visited = 0;
  COSIterator it(root->getNewestChild(), 3, 0);
  while (it.hasMoreElements()) {
    COSInterfacePtr e = it.nextElement();
    e->deleteObject(COSGetPublicClient());
    ++visited;
  }
  EXPECT_EQ(visited, 4);
  EXPECT_EQ(root->getNewestChild(), nullptr);
}

TEST(Events, ListenersDoNotReenterUnlessMarkedRecursive) {
  COSInterfacePtr s = vt::make("vt.Shape");
  int runs = 0;
  COSInterfacePtr again = vt::listener([&](COSInterface* src, COSEventData*) {
    if (++runs < 5) src->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  });
  s->addListener(COSID("Changed"), vt::L(again));
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(runs, 1);
  runs = 0;
  vt::L(again)->setRecursive(true);
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(runs, 5);
  vt::L(again)->setEnabled(false);
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr);
  EXPECT_EQ(runs, 5);
}

TEST(Events, CallerEventDataCountsNotificationsInFlight) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSInterfacePtr data(new COSEventData(s.get(), COSID("Changed")));
  auto* ed = static_cast<COSEventData*>(data.get());
  bool okDuring = true;
  COSInterfacePtr l = vt::listener([&](COSInterface*, COSEventData* d) { okDuring = d->isOkToDestroy(); });
  s->addListener(COSID("Changed"), vt::L(l));
  s->notifyEvent(COSGetPublicClient(), COSID("Changed"), ed);
  EXPECT_FALSE(okDuring);
  EXPECT_TRUE(ed->isOkToDestroy());
  // The data refers to its source weakly.
  COSInterfacePtr weakSource = ed->getSourceWeak();
  s = nullptr;
  EXPECT_TRUE(ed->getSourceWeak()->isDestroyed());
}

TEST(PropertySet, ResetPutsBackDefaultsOnlyWhereThereIsOne) {
  COSInterfacePtr s = vt::make("vt.Shape");
  vt::set<double>(s, "Width", 8.0);
  std::string framed = "framed";
  s->setPropertyValue(COSGetPublicClient(), vt::prop(s, "WindowStyle"), COSValue(&framed));
  s->resetToClassDefaults();
  EXPECT_EQ(vt::get<std::string>(s, "WindowStyle"), "none");
  // A C++ property without a class default keeps its value.
  EXPECT_EQ(vt::get<double>(s, "Width"), 8.0);
}

TEST(PropertyLookup, RemovingADynamicPropertyFreesItsValue) {
  COSInterfacePtr s = vt::make("vt.Shape");
  COSGenericProp* note = COSGenericProp::createNewDynamicProp("Owner", COSID("vt.Shape"), COSID("handle scalar"));
  s->addDynamicProperty(note);
  COSInterfacePtr held = vt::make("vt.Shape");
  COSInterfacePtr weak(held, COSWeakReference);
  s->setPropertyValue(COSGetPublicClient(), note, COSValue(held.get()));
  held = nullptr;
  EXPECT_FALSE(weak->isDestroyed()) << "the stored handle must keep its object";
  s->removeDynamicProperty(note);
  EXPECT_TRUE(weak->isDestroyed());
  EXPECT_EQ(s->findPropertyInfo(COSID("Owner")), nullptr);
}

}  // namespace
