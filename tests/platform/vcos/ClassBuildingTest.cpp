// Building classes from class infos: ancestry, closed subclass lists, sealed
// and abstract classes, data blocks per ancestry class.
#include <gtest/gtest.h>

#include "VcosTestClasses.h"
#include "foundation/core/except/Error.h"

using foundation::core::except::Error;

namespace {

std::vector<std::string> names(const std::vector<COSClass*>& classes) {
  std::vector<std::string> out;
  for (COSClass* c : classes) out.push_back(c->getName());
  return out;
}

std::string raisedId(const std::function<void()>& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.identifier();
  }
  return "";
}

TEST(ClassBuilding, DiamondAncestryIsDepthFirstWithEachClassOnce) {
  COSClass* d = vt::cls("vt.Diamond");
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(names(d->getAncestry()), (std::vector<std::string>{"vt.Diamond", "vt.Left", "vt.Shape", "vt.Right"}));
  EXPECT_TRUE(d->isSubclassOf(COSID("vt.Right")));
  EXPECT_FALSE(vt::cls("vt.Left")->isSubclassOf(COSID("vt.Right")));
  // The shared base contributes one block, so one Shape block per instance.
  int before = vt::journal().shapeBlocks;
  COSInterfacePtr o = vt::make("vt.Diamond");
  EXPECT_EQ(vt::journal().shapeBlocks, before + 1);
  // Shape's properties arrive once through both paths.
  EXPECT_EQ(d->getPropertyCount(), vt::cls("vt.Shape")->getPropertyCount());
}

TEST(ClassBuilding, ClosedListRestrictsDirectSubclassesOnly) {
  EXPECT_NE(vt::cls("vt.Allowed"), nullptr);
  EXPECT_NE(vt::cls("vt.Grandchild"), nullptr);
  EXPECT_EQ(raisedId([] { vt::cls("vt.Intruder"); }), "VANTEL:vcos:NotAllowedSubclass");
  // The refused class is not left half-built: asking again fails again.
  EXPECT_EQ(raisedId([] { vt::cls("vt.Intruder"); }), "VANTEL:vcos:NotAllowedSubclass");
}

TEST(ClassBuilding, SealedAndAbstractClassesAreEnforced) {
  EXPECT_EQ(raisedId([] { vt::cls("vt.UnderSealed"); }), "VANTEL:vcos:SealedSuperclass");
  EXPECT_EQ(raisedId([] { vt::make("vt.Abstract"); }), "VANTEL:vcos:AbstractClass");
  EXPECT_EQ(COSClass::getClass(COSID("vt.NoSuchClass")), nullptr);
}

TEST(ClassBuilding, InstanceDataBlocksAreFoundByClassAndFreedMostDerivedFirst) {
  vt::registerClasses();
  COSInterfacePtr c = vt::make("vt.Circle");
  auto* shape = static_cast<vt::ShapeData*>(c->getInstanceData(COSID("vt.Shape")));
  auto* circle = static_cast<vt::CircleData*>(c->getInstanceData(COSID("vt.Circle")));
  auto* named = static_cast<vt::NamedData*>(c->getInstanceData(COSID("vt.Named")));
  ASSERT_TRUE(shape && circle && named);
  EXPECT_NE(static_cast<void*>(shape), static_cast<void*>(circle));
  EXPECT_EQ(c->getInstanceData(COSID("vt.Left")), nullptr);
  vt::journal().deallocations.clear();
  c->deleteObject(COSGetPublicClient());
  EXPECT_EQ(vt::journal().deallocations, (std::vector<std::string>{"Circle", "Shape", "Named"}));
  EXPECT_EQ(c->getInstanceData(COSID("vt.Shape")), nullptr);
}

TEST(ClassBuilding, PackageFindsClassesByShortOrFullName) {
  vt::registerClasses();
  COSPackage* p = COSPackage::getNamespace("vt");
  ASSERT_NE(p, nullptr);
  COSInterfacePtr a, b;
  p->findClass(a, "Shape");
  p->findClass(b, "vt.Shape");
  EXPECT_EQ(cosiToClass(a.get()), vt::cls("vt.Shape"));
  EXPECT_EQ(a, b);
  struct Duplicate final : COSClassInfo {
    const char* getName() const override { return "Shape"; }
  };
  EXPECT_EQ(raisedId([&] { p->addClass(new Duplicate); }), "VANTEL:vcos:ExistingName");
  EXPECT_EQ(vcos::nameresolution::getBaseClassNameFromFullName("vt.sub.Shape"), "Shape");
}

}  // namespace

namespace {

TEST(ClassBuilding, VisitorSeesEachDefiningClassAndGenericInfosAreAdjustable) {
  struct Collect final : COSVisitor {
    std::vector<std::string> seen;
    bool visitProperty(COSClass* c, COSPropInfo* p) override {
      seen.push_back(std::string(c->getName()) + "." + p->getName());
      return seen.size() < 100;
    }
  } visitor;
  vt::cls("vt.Circle")->acceptPropertyVisitor(visitor);
  ASSERT_FALSE(visitor.seen.empty());
  EXPECT_EQ(visitor.seen.front(), "vt.Circle.Radius");
  EXPECT_NE(std::find(visitor.seen.begin(), visitor.seen.end(), "vt.Named.Name"), visitor.seen.end());
  EXPECT_NE(std::find(visitor.seen.begin(), visitor.seen.end(), "vt.Shape.Width"), visitor.seen.end());

  COSPackage* p = COSPackage::getNamespace("vt");
  auto* info = new COSGenericClass("Described", "made from data");
  info->setAbstract(true);
  p->addClass(info);
  EXPECT_THROW(vt::make("vt.Described"), Error);
  info->setAbstract(false);
  info->setConstructedOnLoad(true);
  EXPECT_TRUE(vt::make("vt.Described"));
  EXPECT_TRUE(vt::cls("vt.Described")->getClassInfo()->isConstructedOnLoad());
}

}  // namespace
