// The test classes of TestGraphicsClasses.h.
#include "TestGraphicsClasses.h"
#include "support/ParentPI.h"

#include "foundation/core/except/Error.h"
#include "sgdatatypes/Registration.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"
#include "vcos/vcos.h"

namespace sgtest {

Journal& journal() {
  static Journal j;
  return j;
}

namespace {

const COSID& graphicsId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

TestGraphicsObject& block(COSInterface* object) {
  return *static_cast<TestGraphicsObject*>(SGHandle::fromObject(object));
}

using sgtest::ParentPI;

class WidthPI final : public COSPropT {
 public:
  explicit WidthPI(COSID cls)
      : COSPropT(cls, COSID("Width"), COSDataTypePtr("double scalar"), COSValue::fromDouble(1.0)) {}
  COSValue getValue(COSInterface* object) const override { return COSValue::fromDouble(block(object).width); }
  void setValue(COSInterface* object, COSValue value) override {
    if (value.asDouble() < 0) throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", "any", "Width");
    block(object).width = value.asDouble();
  }
};

class TagPI final : public COSPropT {
 public:
  explicit TagPI(COSID cls) : COSPropT(cls, COSID("Tag"), COSDataTypePtr("asciiString")) {}
  COSValue getValue(COSInterface* object) const override { return COSValue(new std::string(block(object).tag)); }
  void setValue(COSInterface* object, COSValue value) override {
    auto* s = value.asPointer<const std::string>();
    block(object).tag = s ? *s : std::string();
  }
};

class CreateFcnPI final : public COSPropT {
 public:
  explicit CreateFcnPI(COSID cls)
      : COSPropT(cls, COSID("CreateFcn"), COSDataTypePtr(graphics::datatype::kCallbackType)) {}
  COSValue getValue(COSInterface* object) const override { return COSValue(new VCallback(block(object).createFcn)); }
  void setValue(COSInterface* object, COSValue value) override {
    auto* cb = value.asPointer<const VCallback>();
    block(object).createFcn = cb ? *cb : VCallback();
  }
};

class TestPropertyDefinitionInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "TestPropertyDefinition"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    const COSID me = cls->getID();
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addProperty(new ParentPI(me));
    cls->addProperty(new WidthPI(me));
    cls->addProperty(new TagPI(me));
    cls->addProperty(new CreateFcnPI(me));
    cls->addProperty(new BeingDeletedPI(me, COSDataTypePtr(graphics::datatype::kOnOffType),
                                        COSPropDefaultFlags & ~unsigned(COSPropResetAllowed)));
    cls->addMethod(new ObjectCtorMI<TestGraphicsObject, sgutils::PublicConstructorAccess>(me, COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new TestGraphicsObject; }
  // The class's own slot is the Graphics block, made through the factory.
  void* allocateInstance(COSInterface* instance) override { return instance->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}
};

}  // namespace

void TestGraphicsObject::record(const char* hook) { journal().stages.push_back(tag + ":" + hook); }

void TestGraphicsObject::Setup(COSInterfacePtr object) {
  SGHandle::Setup(object);
  record("Setup");
  if (std::exchange(journal().failSetup, false)) throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", "setup", "test");
}
void TestGraphicsObject::SetupFailed(COSInterfacePtr object) {
  SGHandle::SetupFailed(object);
  record("SetupFailed");
}
void TestGraphicsObject::CreationComplete(COSInterfacePtr object) {
  if (isLiveForHooks(object)) SGHandle::CreationComplete(object);
  record("CreationComplete");
  if (std::exchange(journal().failCreationComplete, false))
    throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", "complete", "test");
}
void TestGraphicsObject::ApplyingDefaults(COSInterfacePtr object) {
  if (isLiveForHooks(object)) SGHandle::ApplyingDefaults(object);
  record("ApplyingDefaults");
}
void TestGraphicsObject::DefaultsApplied(COSInterfacePtr object, bool fromReset) {
  if (isLiveForHooks(object)) SGHandle::DefaultsApplied(object, fromReset);
  ++journal().defaultsApplied;
  record("DefaultsApplied");
}
void TestGraphicsObject::doReset(COSInterfacePtr object) {
  ++journal().resets;
  SGHandle::doReset(object);
}

void registerTestClasses() {
  static const bool done = [] {
    VLInitialize_sgutils();
    sgutils::getNamespace()->addClass(new TestPropertyDefinitionInfo, 0, 2);
    return true;
  }();
  (void)done;
}

COSInterfacePtr construct(std::initializer_list<const vxArray*> inputs) {
  registerTestClasses();
  std::vector<const vxArray*> in(inputs);
  Arr result(omConstructObjectWithClient(kTestClass, static_cast<int>(in.size()), in.data(), COSGetPublicClient()));
  return omGetArrayElement(result.get(), 0);
}

TestGraphicsObject* blockOf(const COSInterfacePtr& object) {
  return static_cast<TestGraphicsObject*>(SGHandle::fromObject(object.get()));
}

Arr str(const char* text) { return Arr(vxCreateString(text)); }
Arr num(double value) { return Arr(vxCreateDoubleScalar(value)); }
Arr callback(VCallback::Function fn) {
  static const COSID type(graphics::datatype::kCallbackType), any("any");
  VCallback cb(std::move(fn));
  return Arr(COSTypeRepository::getConversion(type, any)->convert(COSValue(&cb)).asPointer<vxArray>());
}
Arr obj(const COSInterfacePtr& object) { return Arr(omCreateVCOSScalar(object)); }

Arr getProp(const COSInterfacePtr& object, const char* name) {
  Arr self = obj(object);
  return Arr(vxGetProperty(self.get(), 0, name));
}
void setProp(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  Arr self = obj(object);
  vxSetProperty(self.get(), 0, name, value);
}

}  // namespace sgtest
