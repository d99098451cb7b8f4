// The proxies of wrapped properties and methods, and the look-ups by
// description.
#include <algorithm>

#include "foundation/core/except/IMsgIDException.h"
#include "sgutils/propinfos/NullMethodInfoException.h"
#include "sgutils/propinfos/NullPropInfoException.h"
#include "sgutils/propinfos/PropInfoLookup.h"
#include "sgutils/propinfos/VCOSMethodInvoker.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSIterator.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgutils {

MemberAccess accessOfMode(unsigned char mode, MemberAccess wrapped) noexcept {
  switch (mode) {
    case 1:
      return PrivateAccess;
    case 2:
      return ProtectedAccess;
    case 3:
      return PublicAccess;
    default:
      return wrapped;
  }
}

ProxyPropInfo::ProxyPropInfo(WrappedPropInfoPtr wrapped, InstanceMap map) : wrapped_(std::move(wrapped)), map_(map) {
  if (!wrapped_ || !map_) throw NullPropInfoException();
}

ProxyPropInfo::~ProxyPropInfo() = default;

COSInterfacePtr ProxyPropInfo::mapped(COSInterface* object) const { return map_(COSInterfacePtr(object)); }

COSValue ProxyPropInfo::getValue(COSInterface* object) const { return wrapped_->getValue(mapped(object).get()); }
void ProxyPropInfo::setValue(COSInterface* object, COSValue value) { wrapped_->setValue(mapped(object).get(), value); }
void ProxyPropInfo::releaseValue(COSInterface* object, COSValue value) const {
  wrapped_->releaseValue(mapped(object).get(), value);
}
void ProxyPropInfo::getInterfaces(const COSClient* client, COSInterface* instance,
                                  std::vector<COSInterfacePtr>& out) const {
  wrapped_->getInterfaces(client, mapped(instance).get(), out);
}
void ProxyPropInfo::getVLArrays(const COSClient* client, COSInterface* instance, std::vector<vxArray*>& out) const {
  wrapped_->getVLArrays(client, mapped(instance).get(), out);
}

namespace {

// A proxy that applies a descriptor: a new name, an initial value, new access.
class GeneralProxyPropInfo final : public ProxyPropInfo {
 public:
  GeneralProxyPropInfo(const PropertyDescriptor& d, WrappedPropInfoPtr wrapped, InstanceMap map)
      : ProxyPropInfo(std::move(wrapped), map), descriptor_(d) {
    if (!descriptor_.isValid()) throw NullPropInfoException();
    type_ = getWrapped()->getDataType();
    if (!descriptor_.hasInitialValue()) return;
    if (!type_) throw NullPropInfoException();
    static const COSID ascii("asciiString");
    COSTypeConversion* conversion = COSTypeRepository::getConversion(ascii, type_.getID());
    if (!conversion) throw NullPropInfoException();
    const std::string text = descriptor_.getInitialValue();
    initial_ = conversion->convert(COSValue(&text));
  }
  ~GeneralProxyPropInfo() override {
    if (!initial_.isEmpty() && type_) type_->destroy(initial_);
  }

  const char* getName() const override {
    return descriptor_.hasAlias() ? descriptor_.getAlias() : getWrapped()->getName();
  }
  COSValue getFactoryDefault() const override {
    return descriptor_.hasInitialValue() ? initial_ : getWrapped()->getFactoryDefault();
  }
  MemberAccess getMemberGetAccess() const override {
    return accessOfMode(descriptor_.getGetAccess(), getWrapped()->getMemberGetAccess());
  }
  MemberAccess getMemberSetAccess() const override {
    return accessOfMode(descriptor_.getSetAccess(), getWrapped()->getMemberSetAccess());
  }
  bool isInitAllowed() const override { return descriptor_.hasInitialValue(); }

 private:
  PropertyDescriptor descriptor_;
  COSDataTypePtr type_;
  COSValue initial_;
};

}  // namespace

COSPropInfo* createPropInfo(const PropertyDescriptor& d, WrappedPropInfoPtr wrapped, InstanceMap map) {
  if (!d.isValid()) return nullptr;
  if (d.isDefault()) return new ProxyPropInfo(std::move(wrapped), map);
  return new GeneralProxyPropInfo(d, std::move(wrapped), map);
}

ProxyMethodInfo::ProxyMethodInfo(const MethodDescriptor& d, WrappedMethodInfoPtr wrapped, COSID classId,
                                 InstanceMap map)
    : wrapped_(std::move(wrapped)), map_(map), classId_(classId) {
  if (!wrapped_ || !map_) throw NullMethodInfoException();
  const COSMethodSignature* sig = wrapped_->getMethodSignature();
  if (!sig || sig->getInputs().size() < 2) throw NullMethodInfoException();
  std::vector<COSMethodSignature::Argument> inputs(sig->getInputs().begin() + 1, sig->getInputs().end());
  unsigned flags = (sig->hasVarArgIn() ? COSMethodSignature::VarArgIn : 0u) |
                   (sig->hasVarArgOut() ? COSMethodSignature::VarArgOut : 0u) |
                   (sig->isStatic() ? COSMethodSignature::Static : 0u);
  signature_ = COSMethodSignature::createMethodSignature(sig->getName(), std::move(inputs), sig->getOutputs(), flags,
                                                         sig->getAccess());
  if (d.getAccess() >= 1 && d.getAccess() <= 3) {
    access_ = accessOfMode(d.getAccess(), PublicAccess);
    ownAccess_ = true;
  }
}

ProxyMethodInfo::~ProxyMethodInfo() = default;

void ProxyMethodInfo::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  const auto* first = nrhs >= 1 ? prhs[0].asPointer<const vxArray>() : nullptr;
  if (!first || !omIsVCOS(first) || vxIsEmpty(first)) throw NullMethodInfoException();
  COSInterfacePtr real = map_(omGetArrayElement(first, 0));
  if (!real || !real->getClass()) throw NullMethodInfoException();
  VCOSMethodInvoker invoker(real->getClass(), wrapped_->getID(), nullptr);
  matrix::unique_vxArray wrappedObject(omCreateVCOSScalar(real));
  std::vector<COSValue> inputs;
  inputs.reserve(static_cast<std::size_t>(nrhs) + 1);
  inputs.emplace_back(wrappedObject.get());
  inputs.insert(inputs.end(), prhs, prhs + nrhs);
  invoker.invoke(COSGetPublicClient(), nlhs, plhs, static_cast<int>(inputs.size()), inputs.data());
}

COSMethodInfo* createMethodInfo(const MethodDescriptor& d, WrappedMethodInfoPtr wrapped, COSID classId,
                                InstanceMap map) {
  if (!d.isValid()) return nullptr;
  return new ProxyMethodInfo(d, std::move(wrapped), classId, map);
}

COSPropInfo* getAmbiguousMatchingPropInfo(COSClass* cls, const char* name) {
  if (!cls) return nullptr;
  const COSID id(name ? name : "");
  if (COSPropInfo* exact = cls->findPropertyExact(id)) return exact;
  // The partial look-up raises for an ambiguous name, which counts as none.
  try {
    return cls->findProperty(id);
  } catch (const foundation::core::except::IMsgIDException& e) {
    if (e.identifier() == "VANTEL:vcos:AmbiguousPropertyName") return nullptr;
    throw;
  }
}

bool isMethodOverridden(const COSClass& base, COSClass& derived, const std::string& name) {
  COSMethodInfo* m = derived.findMethod(COSID(name));
  return m && m->getDefiningClass() && m->getDefiningClass()->getID() != base.getID();
}

}  // namespace sgutils
