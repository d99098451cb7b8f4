// The set path on a component container: its own properties keep
// UsedInUpdate and so take part in AbortSet and in the structure update,
// which reaches doPostSet as (false, true); inherited ones lose it. The
// class is also made constructed on load.
#include <gtest/gtest.h>

#include "PropertyModelClasses.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "vcos/COSClass.h"
#include "vcos/COSGenericClass.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"
#include "vcos/COSPropT.h"
#include "vcos/COSUseCustomMetaData.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgtest::propmodel {
namespace {

const COSID& graphicsMetaClass() {
  static const COSID id("vantel.graphics.internal.GraphicsMetaClass");
  return id;
}

class ContainerNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "vantel.ui.componentcontainer"; }
};

void addAffectingProperty(COSClass* cls, const char* name) {
  cls->addProperty(new COSPropT(cls->getID(), COSID(name), COSDataTypePtr("double scalar"), COSValue::fromDouble(0),
                                PublicAccess, PublicAccess, COSPropDefaultFlags | COSPropAbortSet));
  cls->setPropertyAttribute(COSID(name), COSID("AffectsObject"), COSValue::fromBool(true));
}

// The container root: no data, one property of its own.
class ComponentContainerInfo final : public COSClassInfo, public COSUseCustomMetaData {
 public:
  const char* getName() const override { return "ComponentContainer"; }
  COSID getMetaClassClassID() const override { return graphicsMetaClass(); }
  void initializeClass(COSClass* cls, const COSClient*) override { addAffectingProperty(cls, "Inherited"); }
  bool willAllocateData() const override { return false; }
};

// A concrete container whose qualities are data, so the metaclass can make
// it constructed on load.
class ContainerInfo final : public COSGenericClass, public COSUseCustomMetaData, public SGHandleBlockFactory {
 public:
  ContainerInfo() : COSGenericClass("TestStubPropertyDefinition") {}
  COSID getMetaClassClassID() const override { return graphicsMetaClass(); }
  void initializeClass(COSClass* cls, const COSClient*) override {
    cls->addSuperclass(COSID("vantel.graphics.Graphics"), true, 0, 1);
    cls->addSuperclass(COSID("vantel.ui.componentcontainer.ComponentContainer"), false, 0, 1);
    addAffectingProperty(cls, "Layout");
    cls->addMethod(new ObjectCtorMI<JournalingHandle, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new JournalingHandle; }
  void* allocateInstance(COSInterface* i) override { return i->getInstanceData(COSID("vantel.graphics.Graphics")); }
  void deallocateInstance(COSInterface*, void*) override {}
};

class ContainerSetPath : public ::testing::Test {
 protected:
  void SetUp() override {
    registerPropertyModelClasses();
    static const bool registered = [] {
      COSPackage* package = COSPackage::addNamespace(new ContainerNamespace);
      package->addClass(new ComponentContainerInfo, 0, 2);
      sgutils::getNamespace()->addClass(new ContainerInfo, 0, 2);
      return true;
    }();
    (void)registered;
    object = makeObject("sg2utils.TestStubPropertyDefinition");
    handleOf(object).posts.clear();
  }
  void TearDown() override { object->deleteObject(COSGetPublicClient()); }
  std::vector<PostSet>& posts() { return handleOf(object).posts; }

  COSInterfacePtr object;
};

TEST_F(ContainerSetPath, OwnPropertiesKeepUsedInUpdateInheritedOnesLoseIt) {
  EXPECT_TRUE(SGCustomMetaProperty::of(prop(object, "Layout"))->usedInUpdate);
  EXPECT_FALSE(SGCustomMetaProperty::of(prop(object, "Inherited"))->usedInUpdate)
      << "the subclass's pass left UsedInUpdate on an inherited property";
  EXPECT_TRUE(object->getClass()->getClassInfo()->isConstructedOnLoad());
}

TEST_F(ContainerSetPath, StructureUpdateTakesTheTwoFlagFormAndDropsTheOthers) {
  publicSet(object, "Layout", COSValue::fromDouble(1));
  ASSERT_EQ(posts().size(), 1u);
  EXPECT_TRUE(posts()[0].twoFlagForm);
  EXPECT_FALSE(posts()[0].flags.limits);
  EXPECT_TRUE(posts()[0].flags.object) << "the second argument carries structUpdate";

  publicSet(object, "Inherited", COSValue::fromDouble(1));
  ASSERT_EQ(posts().size(), 2u);
  EXPECT_FALSE(posts()[1].twoFlagForm) << "without structUpdate the dirty flags go as they are";
  EXPECT_TRUE(posts()[1].flags.object);
  EXPECT_FALSE(posts()[1].flags.structUpdate);
}

TEST_F(ContainerSetPath, AbortSetStoresAnEqualValueWithoutMarking) {
  publicSet(object, "Layout", COSValue::fromDouble(2));
  ASSERT_EQ(posts().size(), 1u);
  publicSet(object, "Layout", COSValue::fromDouble(2));
  EXPECT_EQ(posts().size(), 1u) << "an equal value was marked under AbortSet";
  publicSet(object, "Layout", COSValue::fromDouble(3));
  EXPECT_EQ(posts().size(), 2u);
  EXPECT_EQ(publicGet(object, "Layout").asDouble(), 3);
}

}  // namespace
}  // namespace sgtest::propmodel
