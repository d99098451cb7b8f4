// The generated classes as the class system sees them: one shared block per
// C++ line of generated classes, the class lookup, and the registration.
#include <gtest/gtest.h>

#include <string>

#include "PropertyModelClasses.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/objects/Mixin.gen.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/Findobj.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgtest::propmodel {
namespace {

using graphics::mixin::GraphicsPickable;
using graphics::mixin::Mixin;
using graphics::mixin::Selectable;

// Fault pinned: each generated class used to get a block of its own, so
// Selectable's inherited HitTest member was a stale copy of the value that
// the GraphicsPickable property wrote into a second block.
TEST(GeneratedClass, GeneratedAncestorsShareTheMostDerivedBlock) {
  COSInterfacePtr object = makeObject(kSelectableClass);
  void* selectable = object->getInstanceData(Selectable::classID());
  ASSERT_NE(selectable, nullptr);
  EXPECT_EQ(object->getInstanceData(GraphicsPickable::classID()), selectable);
  EXPECT_EQ(object->getInstanceData(Mixin::classID()), selectable);
  publicSet(object, "HitTest", COSValue::fromBool(false));
  EXPECT_FALSE(selectableOf(object).getHitTest());
  object->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(object->isDestroyed());
}

// Fault pinned: the signature had untyped inputs and outputs.
TEST(GeneratedClass, ConstructorTakesAnyInputsAndGivesTheClass) {
  registerPropertyModelClasses();
  COSClass* cls = Selectable::getClassInstance();
  ASSERT_NE(cls, nullptr);
  COSMethodInfo* ctor = cls->findMethod(COSID("Selectable"));
  ASSERT_NE(ctor, nullptr);
  const COSMethodSignature* signature = ctor->getMethodSignature();
  ASSERT_NE(signature, nullptr);
  ASSERT_EQ(signature->getInputs().size(), 1u);
  EXPECT_TRUE(signature->hasVarArgIn());
  EXPECT_EQ(signature->getInputs()[0].type.getID(), COSID("any"));
  ASSERT_EQ(signature->getOutputs().size(), 1u);
  EXPECT_EQ(signature->getOutputs()[0].type.getID(), Selectable::classID());
}

// A graphics object keeps one block for the ReferenceObject and Graphics
// slots; deleting the object frees it once (checked under the sanitizers).
TEST(GeneratedClass, TheReferenceSlotOfAGraphicsObjectIsItsGraphicsBlock) {
  COSInterfacePtr object = makeObject(kSelectableClass);
  void* graphics = object->getInstanceData(COSID("vantel.graphics.Graphics"));
  ASSERT_NE(graphics, nullptr);
  EXPECT_EQ(object->getInstanceData(COSID("vantel.graphics.internal.ReferenceObject")), graphics);
  EXPECT_EQ(SGHandle::fromObject(object.get())->getCOSObject(), object.get());
  ASSERT_NE(SGHandle::fromObject(object.get())->getApplicationData(), nullptr) << "made on first read";
  object->deleteObject(COSGetPublicClient());
  EXPECT_TRUE(object->isDestroyed());
}

// findobj with the value given as text against an on/off property: each
// distinct value is turned into text once, and every object still gets the
// answer its own value gives, whatever the case of the text.
TEST(GeneratedClass, FindobjMatchesAnOnOffPropertyGivenAsText) {
  COSInterfacePtr root = makeObject(kSelectableClass);
  for (int i = 0; i < 12; ++i) {
    COSInterfacePtr child = makeObject(kSelectableClass);
    publicSet(child, "Selected", COSValue::fromBool(i % 3 == 0));
    root->hookChild(child.get());
  }
  matrix::unique_vxArray start(omCreateVCOSScalar(root));
  // The test class has no Children: the search walks the raw tree.
  const sgutils::DefaultFindobjClassInfo::FindAllScope rawTree;
  auto count = [&](const char* value) {
    matrix::unique_vxArray name(vxCreateString("Selected")), text(vxCreateString(value));
    const vxArray* args[] = {name.get(), text.get()};
    matrix::unique_vxArray found(vcos::findobj(start.get(), 2, args));
    return vxGetNumberOfElements(found.get());
  };
  EXPECT_EQ(count("on"), 4u);
  EXPECT_EQ(count("ON"), 4u);
  EXPECT_EQ(count("off"), 9u) << "the root is off too";
  EXPECT_EQ(count("maybe"), 0u);
  root->deleteObject(COSGetPublicClient());
}

TEST(GeneratedClass, ClassesAreRegisteredAndFoundOnce) {
  registerPropertyModelClasses();
  COSClass* cls = Selectable::getClassInstance();
  ASSERT_NE(cls, nullptr);
  EXPECT_EQ(Selectable::getClassInstance(), cls);
  EXPECT_EQ(cls->getID(), Selectable::classID());
  EXPECT_TRUE(cls->isSubclassOf(Mixin::classID()));
  // A second start-up registers nothing twice.
  VLInitialize_sgutils();
  EXPECT_EQ(Selectable::getClassInstance(), cls);
  // A class without properties still has its constructor method.
  COSClass* mixin = Mixin::getClassInstance();
  ASSERT_NE(mixin, nullptr);
  EXPECT_NE(mixin->findMethod(COSID("Mixin")), nullptr);
  EXPECT_EQ(mixin->getPropertyCount(), 0u);
  // The faces in declaration order: X, XMode, X_I.
  std::vector<std::string> own;
  for (std::size_t i = 0; i < cls->getPropertyCount(); ++i)
    if (cls->getPropertyAt(i)->getDefiningClass() == cls) own.push_back(cls->getPropertyAt(i)->getName());
  const std::vector<std::string> expected = {"Selected", "SelectedMode", "Selected_I", "SelectionHighlight",
                                             "SelectionHighlightMode", "SelectionHighlight_I"};
  EXPECT_EQ(own, expected);
}

}  // namespace
}  // namespace sgtest::propmodel
