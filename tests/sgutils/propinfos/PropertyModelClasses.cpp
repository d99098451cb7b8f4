// The test classes of PropertyModelClasses.h.
#include "PropertyModelClasses.h"

#include "foundation/feature/Feature.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "sgutils/objects/EdgeColorTriple.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/PropertyDefinition.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSPropT.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/vcos.h"
#include "vx/vx.h"
#include "sgdatatypes/Enumeration.h"
#include "sgutils/objects/TwinProperties.gen.h"
#include "vcos/COSGenericClass.h"

namespace sgtest::propmodel {

namespace {

const COSID& graphicsId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

// A concrete graphics class whose Graphics block is a JournalingHandle.
class JournalingClassInfo : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  SGHandle* createHandleBlock() const override { return new JournalingHandle; }
  void* allocateInstance(COSInterface* instance) override { return instance->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}
};

class TestPostSetFcnInfo final : public JournalingClassInfo {
 public:
  const char* getName() const override { return "TestPostSetFcn"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addSuperclass(graphics::mixin::Selectable::classID(), false, 0, 1);
    cls->addMethod(new ObjectCtorMI<JournalingHandle, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
  }
};

// A static method "twice" (a double in, its double out), for calls by name.
class TwiceMI final : public COSMethodBase {
 public:
  explicit TwiceMI(COSID cls)
      : COSMethodBase(cls, COSID("twice"), PublicAccess, "twice",
                      COSMethodSignature::createMethodSignature(
                          COSID("twice"), {{COSID("x"), COSDataTypePtr("double scalar"), false}},
                          {{COSID("y"), COSDataTypePtr("double scalar"), false}}, COSMethodSignature::Static)) {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue* prhs) const override {
    plhs[0] = COSValue(vxCreateDoubleScalar(2 * vxGetScalar(prhs[0].asPointer<const vxArray>())));
    nlhs = 1;
  }
};

// A method that only notes its call: its name and the class of each input.
class JournalMI final : public COSMethodBase {
 public:
  JournalMI(COSID cls, const char* name, int inputs)
      : COSMethodBase(cls, COSID(name), PublicAccess, name,
                      COSMethodSignature::createMethodSignature(COSID(name), arguments(inputs), {})) {}
  void invoke(const COSClient*, int& nlhs, COSValue*, int nrhs, const COSValue* prhs) const override {
    std::string call = getName();
    for (int k = 0; k < nrhs; ++k) call += std::string(" ") + vxGetClassName(prhs[k].asPointer<const vxArray>());
    nodeCalls().push_back(call);
    nlhs = 0;
  }

 private:
  static std::vector<COSMethodSignature::Argument> arguments(int n) {
    std::vector<COSMethodSignature::Argument> a;
    for (int k = 0; k < n; ++k) a.push_back({COSID(k == 0 ? "obj" : "arg"), COSDataTypePtr("any"), false});
    return a;
  }
};

// Plain double properties with attributes. "Plain" has none, so it keeps the
// ordinary set path.
class TestPropertyFlagsInfo final : public JournalingClassInfo {
 public:
  const char* getName() const override { return "TestPropertyFlags"; }
  bool isPropertyTruncationAllowed() const override { return true; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    const COSID me = cls->getID();
    cls->addSuperclass(graphicsId(), true, 0, 1);
    for (const char* name : {"ObjectOnly", "LegendOnly", "ObjectAndLegend", "LimitsAndLegend", "Abortable", "Plain"})
      cls->addProperty(new COSPropT(me, COSID(name), COSDataTypePtr("double scalar"), COSValue::fromDouble(0.0),
                                    PublicAccess, PublicAccess,
                                    COSPropDefaultFlags | (std::string(name) == "Abortable" ? COSPropAbortSet : 0u)));
    cls->addProperty(new COSPropT(me, COSID("Component"), COSDataTypePtr("any")));
    sgtest::addEdgeColorTriple<JournalingHandle>(cls);
    const COSValue on = COSValue::fromBool(true);
    cls->setPropertyAttribute(COSID("Component"), COSID("InternalComponent"), on);
    cls->setPropertyAttribute(COSID("ObjectOnly"), COSID("AffectsObject"), on);
    cls->setPropertyAttribute(COSID("LegendOnly"), COSID("AffectsLegend"), on);
    cls->setPropertyAttribute(COSID("ObjectAndLegend"), COSID("AffectsObject"), on);
    cls->setPropertyAttribute(COSID("ObjectAndLegend"), COSID("AffectsLegend"), on);
    cls->setPropertyAttribute(COSID("LimitsAndLegend"), COSID("AffectsDataLimits"), on);
    cls->setPropertyAttribute(COSID("LimitsAndLegend"), COSID("AffectsLegend"), on);
    cls->setPropertyAttribute(COSID("Abortable"), COSID("AffectsObject"), on);
    cls->addMethod(new TwiceMI(me));
    cls->addMethod(new JournalMI(me, "addNode", 2));
    cls->addMethod(new JournalMI(me, "replaceChild", 3));
    cls->addMethod(new ObjectCtorMI<JournalingHandle, sgutils::PublicConstructorAccess>(me, COSID(getName())));
  }
};

// A graphics object with the generated TwinProperties mixin. Only the first
// of these two classes is on the mixin's list of allowed subclasses.
template <const char* Name>
class TwinHostInfo final : public JournalingClassInfo {
 public:
  const char* getName() const override { return Name; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addSuperclass(sgtest::TwinProperties::classID(), false, 0, 1);
    cls->addMethod(new ObjectCtorMI<JournalingHandle, sgutils::PublicConstructorAccess>(cls->getID(), COSID(Name)));
  }
};
constexpr char kTwinHostName[] = "TestLoadObjBase";
constexpr char kRefusedTwinHostName[] = "TestUpdateViewInfo";

// A handle object with a public "NodeParent", as the values of an internal
// component property have; it has no node methods of its own.
class TestNodeChildInfo final : public COSGenericClass {
 public:
  TestNodeChildInfo() : COSGenericClass("TestNodeChild") {}
  bool isHandleClass() const override { return true; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    cls->addSuperclass(COSID("handle"), true, 0, 1);
    cls->addProperty(new COSPropT(cls->getID(), COSID("NodeParent"), COSDataTypePtr("any")));
  }
};

graphics::datatype::AutoManual selectedModeOf(const COSInterface* object) {
  auto* s = sgutils::blockOf<graphics::mixin::Selectable>(object, graphics::mixin::Selectable::classID());
  return s ? s->getSelectedMode() : graphics::datatype::AutoManual::Auto;
}

}  // namespace

void JournalingHandle::doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags) {
  posts.push_back({property->getName(), false, flags, selectedModeOf(object)});
}

void JournalingHandle::doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  DirtyFlags flags;
  flags.limits = limitsDirty;
  flags.object = objectDirty;
  posts.push_back({property->getName(), true, flags, selectedModeOf(object)});
}

void registerPropertyModelClasses() {
  static const bool done = [] {
    VLInitialize_sgutils();
    sgutils::getNamespace()->addClass(new TestPostSetFcnInfo, 0, 2);
    sgutils::getNamespace()->addClass(new TestPropertyFlagsInfo, 0, 2);
    sgutils::generated::registerTwinProperties();
    sgutils::getNamespace()->addClass(new TwinHostInfo<kTwinHostName>, 0, 2);
    sgutils::getNamespace()->addClass(new TwinHostInfo<kRefusedTwinHostName>, 0, 2);
    sgutils::getNamespace()->addClass(new TestNodeChildInfo, 0, 2);
    return true;
  }();
  (void)done;
}

COSInterfacePtr makeObject(const char* className) {
  registerPropertyModelClasses();
  matrix::unique_vxArray result(omConstructObjectWithClient(className, 0, nullptr, COSGetPublicClient()));
  return omGetArrayElement(result.get(), 0);
}

std::vector<std::string>& nodeCalls() {
  static std::vector<std::string> calls;
  return calls;
}

JournalingHandle& handleOf(const COSInterfacePtr& object) {
  return *static_cast<JournalingHandle*>(SGHandle::fromObject(object.get()));
}

graphics::mixin::Selectable& selectableOf(const COSInterfacePtr& object) {
  return *sgutils::blockOf<graphics::mixin::Selectable>(object.get(), graphics::mixin::Selectable::classID());
}

COSPropInfo* prop(const COSInterfacePtr& object, const char* name) {
  return object->getClass()->findPropertyExact(COSID(name));
}

void publicSet(const COSInterfacePtr& object, const char* name, COSValue value) {
  object->setPropertyValue(COSGetPublicClient(), prop(object, name), value);
}

COSValue publicGet(const COSInterfacePtr& object, const char* name) {
  return object->getPropertyValue(COSGetPublicClient(), prop(object, name));
}

const unsigned char* modeWord(graphics::datatype::AutoManual mode) {
  return graphics::datatype::canonicalEnumerationByte(static_cast<unsigned char>(mode));
}

namespace {
void setOldBehaviour(double on) {
  matrix::unique_vxArray in(vxCreateDoubleScalar(on));
  vxArray* out[1] = {nullptr};
  const vxArray* inputs[1] = {in.get()};
  foundation::feature::call("UseOldSimplePropInfoSetValueBehavior", 1, out, 1, inputs);
  vxDestroyArray(out[0]);
}
}  // namespace

OldSetBehaviour::OldSetBehaviour() { setOldBehaviour(1); }
OldSetBehaviour::~OldSetBehaviour() { setOldBehaviour(0); }

}  // namespace sgtest::propmodel
