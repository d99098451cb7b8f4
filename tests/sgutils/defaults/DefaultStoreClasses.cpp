// The test classes of DefaultStoreClasses.h.
#include "DefaultStoreClasses.h"

#include <cstring>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/Registration.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "sgutils/objects/EdgeColorTriple.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/PropertyDefinition.h"
#include "vcos/COSClass.h"
#include "vcos/COSPackage.h"
#include "vcos/COSPropT.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"
#include "vcos/vcos.h"
#include "support/ParentPI.h"

namespace sgtest::defaults {

namespace {

using graphics::datatype::RGBAColor;

const COSID& graphicsId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

using sgtest::ParentPI;

template <const char* Name>
class NodeInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return std::strrchr(Name, '.') + 1; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    const COSID me = cls->getID();
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addSuperclass(graphics::mixin::Selectable::classID(), false, 0, 1);
    cls->addProperty(new ParentPI(me));
    const COSDataTypePtr dbl("double scalar");
    cls->addProperty(new COSPropT(me, COSID("Width"), dbl, COSValue::fromDouble(1.0)));
    cls->addProperty(new COSPropT(me, COSID("Tag"), COSDataTypePtr("asciiString")));
    cls->addProperty(new COSPropT(me, COSID("Locked"), dbl, COSValue::fromDouble(0.0), PublicAccess, ProtectedAccess));
    cls->addProperty(new COSPropT(me, COSID("NoDefault"), dbl, COSValue::fromDouble(0.0), PublicAccess, PublicAccess,
                                  COSPropDefaultFlags & ~unsigned(COSPropDefaultAllowed)));
    sgtest::addEdgeColorTriple<DefaultsHandle>(cls);
    cls->addMethod(new ObjectCtorMI<DefaultsHandle, sgutils::PublicConstructorAccess>(me, COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new DefaultsHandle; }
  void* allocateInstance(COSInterface* instance) override { return instance->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}
};

const char* noText() { return ""; }

template <const char* Name>
void add() {
  const std::string full(Name);
  const std::string package = full.substr(0, full.rfind('.'));
  graphics::datatype::register_namespace(package.c_str(), &noText, &noText)->addClass(new NodeInfo<Name>, 0, 2);
}

}  // namespace

void registerDefaultStoreClasses() {
  static const bool done = [] {
    VLInitialize_sgutils();
    add<kTop>();
    add<kMiddle>();
    add<kLeaf>();
    add<kOtherLeaf>();
    return true;
  }();
  (void)done;
}

COSInterfacePtr make(const char* className, const COSInterfacePtr& parent) {
  registerDefaultStoreClasses();
  Arr result(omConstructObjectWithClient(className, 0, nullptr, COSGetPublicClient()));
  COSInterfacePtr object = omGetArrayElement(result.get(), 0);
  if (parent) parent->hookChild(object.get());
  return object;
}

DefaultsHandle& handleOf(const COSInterfacePtr& object) {
  return *static_cast<DefaultsHandle*>(SGHandle::fromObject(object.get()));
}

graphics::mixin::Selectable& selectableOf(const COSInterfacePtr& object) {
  return *sgutils::blockOf<graphics::mixin::Selectable>(object.get(), graphics::mixin::Selectable::classID());
}

Arr text(const char* value) { return Arr(vxCreateString(value)); }
Arr number(double value) { return Arr(vxCreateDoubleScalar(value)); }
Arr rgb(double r, double g, double b) {
  Arr a(vxCreateDoubleMatrix(1, 3, vxREAL));
  double* p = vxGetPr(a.get());
  p[0] = r;
  p[1] = g;
  p[2] = b;
  return a;
}
double numberOf(const vxArray* value) { return value ? vxGetScalar(value) : -1.0; }
std::string textOf(const vxArray* value) { return value ? vxArrayToStdString(value) : std::string("<null>"); }

Arr getProp(const COSInterfacePtr& object, const char* name) {
  Arr self(omCreateVCOSScalar(object));
  return Arr(vxGetProperty(self.get(), 0, name));
}
void setProp(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  Arr self(omCreateVCOSScalar(object));
  vxSetProperty(self.get(), 0, name, value);
}

}  // namespace sgtest::defaults
