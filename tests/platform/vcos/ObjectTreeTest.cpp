// The object tree, iterators over it, deletion and destroyed shells.
#include <gtest/gtest.h>

#include <map>

#include "VcosTestClasses.h"
#include "foundation/core/except/Error.h"
#include "vcos/InstanceBlocks.h"

using foundation::core::except::Error;

namespace {

std::vector<COSInterface*> walk(COSInterface* start, int type, int direction) {
  std::vector<COSInterface*> out;
  COSIterator it(start, type, direction);
  while (it.hasMoreElements()) out.push_back(it.nextElement().get());
  return out;
}

struct Tree {
  COSInterfacePtr root = vt::make("vt.Shape");
  COSInterfacePtr a = vt::make("vt.Shape");
  COSInterfacePtr b = vt::make("vt.Circle");
  COSInterfacePtr a1 = vt::make("vt.Shape");
  COSInterfacePtr a2 = vt::make("vt.Shape");
  Tree() {
    root->hookChild(a.get());
    root->hookChild(b.get());
    a->hookChild(a1.get());
    a->hookChild(a2.get());
  }
};

TEST(ObjectTree, ChainIsNewestFirstAndIteratorsWalkBothWays) {
  Tree t;
  EXPECT_EQ(t.root->getNewestChild(), t.b.get());
  EXPECT_EQ(t.root->getOldestChild(), t.a.get());
  COSInterfacePtr owner;
  t.a1->getOwner(owner);
  EXPECT_EQ(owner, t.a);
  EXPECT_EQ(walk(t.root->getNewestChild(), 3, 0), (std::vector<COSInterface*>{t.b.get(), t.a.get()}));
  EXPECT_EQ(walk(t.root->getOldestChild(), 3, 1), (std::vector<COSInterface*>{t.a.get(), t.b.get()}));
  EXPECT_EQ(walk(t.root->getNewestChild(), 2, 0),
            (std::vector<COSInterface*>{t.b.get(), t.a.get(), t.a2.get(), t.a1.get()}));
  EXPECT_EQ(walk(t.root->getOldestChild(), 2, 1),
            (std::vector<COSInterface*>{t.a.get(), t.a1.get(), t.a2.get(), t.b.get()}));
  COSIterator it(t.a2.get(), 3, 0);
  it.nextElement();
  it.nextElement();
  EXPECT_THROW(it.nextElement(), ENoElements);
  // Rehooking moves a child to the newest place: how an order is rebuilt.
  t.root->hookChild(t.a.get());
  EXPECT_EQ(walk(t.root->getNewestChild(), 3, 0), (std::vector<COSInterface*>{t.a.get(), t.b.get()}));
  EXPECT_THROW(t.a1->hookChild(t.root.get()), Error);
}

TEST(ObjectTree, MemberIteratorsCoverInheritedMembers) {
  std::vector<std::string> supers;
  for (COSInterface* s : walk(vt::cls("vt.Circle"), IteratorSuperclasses, 0)) supers.push_back(cosiToClass(s)->getName());
  EXPECT_EQ(supers, (std::vector<std::string>{"vt.Shape", "vt.Named"}));
  bool sawName = false, sawRadius = false;
  for (COSInterface* p : walk(vt::cls("vt.Circle"), IteratorProperties, 0)) {
    sawName |= std::string(cosiToProp(p)->getName()) == "Name";
    sawRadius |= std::string(cosiToProp(p)->getName()) == "Radius";
  }
  EXPECT_TRUE(sawName && sawRadius);
}

TEST(ObjectDeletion, DeletingAParentDeletesTheSubtreeNewestFirstWithOneEventEach) {
  Tree t;
  std::map<COSInterface*, int> events;
  std::vector<COSInterface*> order;
  std::map<COSInterface*, COSInterface*> ownerSeen;
  COSInterfacePtr l = vt::listener([&](COSInterface* src, COSEventData*) {
    ++events[src];
    order.push_back(src);
    EXPECT_TRUE(src->isBeingDestroyed());
    EXPECT_FALSE(src->isDestroyed());
    COSInterfacePtr owner;
    src->getOwner(owner);
    ownerSeen[src] = owner.get();
  });
  vt::cls("vt.Shape")->addClassListener(COSID("ObjectBeingDestroyed"), vt::L(l));
  t.root->deleteObject(COSGetPublicClient());
  vt::cls("vt.Shape")->removeClassListener(COSID("ObjectBeingDestroyed"), vt::L(l));
  for (COSInterface* o : {t.root.get(), t.a.get(), t.b.get(), t.a1.get(), t.a2.get()}) {
    EXPECT_EQ(events[o], 1);
    EXPECT_TRUE(o->isDestroyed());
  }
  EXPECT_EQ(order, (std::vector<COSInterface*>{t.root.get(), t.b.get(), t.a.get(), t.a2.get(), t.a1.get()}));
  // A child going with its owner still sees that owner while it is notified.
  EXPECT_EQ(ownerSeen[t.a2.get()], t.a.get());
  EXPECT_EQ(ownerSeen[t.b.get()], t.root.get());
  EXPECT_EQ(t.a2->getOwnerObject(), nullptr) << "a deleted child kept its owner link";
  EXPECT_EQ(t.root->getNewestChild(), nullptr);
}

// A class whose instances may not be sent "ObjectBeingDestroyed" by the
// public client.
class GuardedInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Guarded"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addEvent(new COSEventT(COSID("ObjectBeingDestroyed"), PrivateAccess));
  }
  void* allocateInstance(COSInterface*) override { return nullptr; }
};

TEST(ObjectDeletion, ALeafNoOneListensToLeavesItsParentFreesItsBlocksAndStillChecksTheSend) {
  COSInterfacePtr parent = vt::make("vt.Shape");
  COSInterfacePtr older = vt::make("vt.Shape");
  COSInterfacePtr leaf = vt::make("vt.Circle");
  parent->hookChild(older.get());
  parent->hookChild(leaf.get());
  const int shapes = vt::journal().shapeBlocks, circles = vt::journal().circleBlocks;
  EXPECT_TRUE(leaf->deleteObject(COSGetPublicClient()));
  EXPECT_TRUE(leaf->isDestroyed());
  EXPECT_EQ(leaf->getOwnerObject(), nullptr);
  EXPECT_EQ(parent->getNewestChild(), older.get());
  EXPECT_EQ(parent->getOldestChild(), older.get());
  EXPECT_EQ(vt::journal().shapeBlocks, shapes - 1);
  EXPECT_EQ(vt::journal().circleBlocks, circles - 1);
  EXPECT_EQ(leaf->getInstanceData(COSID("vt.Circle")), nullptr);

  static bool once = [] {
    vt::registerClasses();
    COSPackage::getNamespace("vt")->addClass(new GuardedInfo);
    return true;
  }();
  (void)once;
  COSInterfacePtr guarded = COSClass::getClass(COSID("vt.Guarded"))->createInstance(COSGetPublicClient());
  parent->hookChild(guarded.get());
  try {
    guarded->deleteObject(COSGetPublicClient());
    ADD_FAILURE() << "an event the public client may not send was sent";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:EventAccessDenied");
  }
  EXPECT_TRUE(guarded->isDestroyed()) << "the refused event stopped the deletion";
  EXPECT_EQ(parent->getNewestChild(), older.get());
  parent->deleteObject(COSGetPublicClient());
}

TEST(ObjectDeletion, AChildDeletingItsSiblingDuringTeardownLeavesTheTreeConsistent) {
  Tree t;
  // When a2 goes, it deletes its older sibling a1 first.
  COSInterfacePtr l = vt::listener([&](COSInterface*, COSEventData*) { t.a1->deleteObject(COSGetPublicClient()); });
  t.a2->addListener(COSID("ObjectBeingDestroyed"), vt::L(l));
  t.a->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(t.a1->isDestroyed());
  EXPECT_TRUE(t.a2->isDestroyed());
  EXPECT_EQ(t.root->getNewestChild(), t.b.get());
  EXPECT_EQ(t.root->getOldestChild(), t.b.get());
}

TEST(ObjectDeletion, ADestroyedObjectIsAShellThatRaisesOnEveryOperation) {
  COSInterfacePtr weak;
  weak.setReferenceType(COSWeakReference);  // assignment keeps the target's type
  {
    COSInterfacePtr s = vt::make("vt.Shape");
    weak = s;
  }  // the last strong reference deletes it
  ASSERT_TRUE(weak->isDestroyed());
  COSInterfacePtr out;
  auto raises = [](const std::function<void()>& f) {
    try {
      f();
    } catch (const Error& e) {
      return e.identifier() == "VANTEL:vcos:InvalidHandle";
    }
    return false;
  };
  COSPropInfo* width = vt::cls("vt.Shape")->findPropertyExact(COSID("Width"));
  EXPECT_TRUE(raises([&] { weak->findProperty(out, COSID("Width")); }));
  EXPECT_TRUE(raises([&] { weak->getPropertyValue(COSGetPublicClient(), width); }));
  EXPECT_TRUE(raises([&] { weak->setPropertyValue(COSGetPublicClient(), width, COSValue::fromDouble(1)); }));
  EXPECT_TRUE(raises([&] { weak->notifyEvent(COSGetPublicClient(), COSID("Changed"), nullptr); }));
  EXPECT_TRUE(raises([&] { weak->deleteObject(COSGetPublicClient()); }));
  EXPECT_TRUE(raises([&] { weak->getOwner(out); }));
  EXPECT_TRUE(raises([&] { weak->resetToClassDefaults(); }));
  EXPECT_TRUE(raises([&] { weak->hookChild(vt::make("vt.Shape").get()); }));
  EXPECT_EQ(weak->getInstanceData(COSID("vt.Shape")), nullptr);
}

TEST(ObjectBlocks, ABlockByItsKeptIndexIsTheBlockByClassId) {
  // A circle carries blocks of its own class and of both superclasses, at
  // other indices than a shape's: each index holds the block the class id
  // finds, and a class not in the ancestry has none.
  COSInterfacePtr shape = vt::make("vt.Shape");
  COSInterfacePtr circle = vt::make("vt.Circle");
  for (const COSInterfacePtr& o : {shape, circle}) {
    for (const char* name : {"vt.Shape", "vt.Named", "vt.Circle"}) {
      const int slot = vcos::blockSlotOf(o->getClass(), COSID(name));
      void* byId = o->getInstanceData(COSID(name));
      EXPECT_EQ(slot < 0, byId == nullptr) << name;
      if (slot >= 0) EXPECT_EQ(vcos::instanceDataAt(o.get(), slot), byId) << name;
    }
  }
  EXPECT_NE(vcos::blockSlotOf(circle->getClass(), COSID("vt.Shape")), -1);
  EXPECT_EQ(vcos::blockSlotOf(shape->getClass(), COSID("vt.Circle")), -1);
  EXPECT_EQ(vcos::blockSlotOf(nullptr, COSID("vt.Shape")), -1);
}

TEST(ObjectDeletion, IsOkToDestroyCanRefuseAnExplicitDelete) {
  COSInterfacePtr s = vt::make("vt.Shape");
  vt::journal().refuseDestroy = true;
  EXPECT_FALSE(s->deleteObject(COSGetPublicClient()));
  vt::journal().refuseDestroy = false;
  EXPECT_FALSE(s->isDestroyed());
  EXPECT_TRUE(s->deleteObject(COSGetPublicClient()));
}

TEST(ObjectLifetime, ADroppedSubtreeLeavesNoLiveObjectOrBlock) {
  vt::registerClasses();
  std::size_t liveBefore = vcos::internal::liveInstanceCount();
  int shapesBefore = vt::journal().shapeBlocks;
  {
    COSInterfacePtr root = vt::make("vt.Shape");
    for (int i = 0; i < 10; ++i) {
      COSInterfacePtr child = vt::make(i % 2 ? "vt.Circle" : "vt.Shape");
      root->hookChild(child.get());
      child->hookChild(vt::make("vt.Shape").get());
      // A listener on the child that refers back to the root weakly.
      COSInterfacePtr back(root, COSWeakReference);
      child->addListener(COSID("Changed"), vt::L(vt::listener([back](COSInterface*, COSEventData*) {})));
      child->addDynamicProperty(COSGenericProp::createNewDynamicProp("Note", COSID("vt.Shape"), COSID("asciiString")));
      vt::set<std::string>(child, "Note", "kept in the instance");
    }
    EXPECT_EQ(vcos::internal::liveInstanceCount(), liveBefore + 21);
  }
  EXPECT_EQ(vcos::liveObjectCount(), liveBefore) << "a dropped subtree was kept alive";
  EXPECT_EQ(vt::journal().shapeBlocks, shapesBefore);
}

}  // namespace
