// VCOSMethodInvoker and the free call forms: the choice of a method by name,
// access and signature, and the call with typed inputs and outputs.
#include "sgutils/propinfos/VCOSMethodInvoker.h"

#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSIterator.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgutils {

namespace {

using foundation::core::except::Error;

bool accessSelects(int access, MemberAccess memberAccess) {
  switch (access) {
    case 0:
      return memberAccess == PublicAccess;
    case 1:
      return memberAccess == PublicAccess || memberAccess == ProtectedAccess;
    case 4:
      return true;
    default:
      return false;
  }
}

// The methods of that name that the access selects, most derived first.
template <class Accept>
COSMethodInfo* firstMethod(COSClass* cls, COSID id, int access, Accept accept) {
  if (!cls) return nullptr;
  COSIterator methods;
  cls->getMethods(methods);
  while (methods.hasMoreElements()) {
    COSInterfacePtr m = methods.nextElement();
    auto* method = static_cast<COSMethodInfo*>(m.get());
    if (method->getID() != id || !accessSelects(access, method->getMemberAccess())) continue;
    if (accept(method)) return method;
  }
  return nullptr;
}

// Whether a method of signature `candidate` takes calls shaped as `given`.
bool fits(const COSMethodSignature* candidate, const COSMethodSignature* given) {
  if (!given) return true;
  if (!candidate) return false;
  const int in = static_cast<int>(given->getInputs().size());
  const int out = static_cast<int>(given->getOutputs().size());
  if (in < candidate->minInputs()) return false;
  if (candidate->maxInputs() >= 0 && in > candidate->maxInputs()) return false;
  return candidate->maxOutputs() < 0 || out <= candidate->maxOutputs();
}

const COSID& anyId() {
  static const COSID id("any");
  return id;
}

// Arrays made for the inputs; destroyed whatever happens.
struct InputArrays {
  std::vector<const vxArray*> arrays;
  std::vector<vxArray*> owned;
  ~InputArrays() {
    for (vxArray* a : owned) vxDestroyArray(a);
  }
};

}  // namespace

VCOSMethodInvoker::VCOSMethodInvoker(COSClass* cls, COSID methodId, int outputs, int inputs, MemberAccess access)
    : methodId_(methodId), className_(cls ? cls->getName() : ""), classId_(cls ? cls->getID() : COSID()) {
  method_ = firstMethod(cls, methodId, access, [&](COSMethodInfo* m) {
    const COSMethodSignature* s = m->getMethodSignature();
    return s && static_cast<int>(s->getOutputs().size()) == outputs && static_cast<int>(s->getInputs().size()) == inputs;
  });
}

VCOSMethodInvoker::VCOSMethodInvoker(COSClass* cls, COSID methodId, const COSMethodSignature* signature)
    : VCOSMethodInvoker(cls, methodId, signature, 0) {}

VCOSMethodInvoker::VCOSMethodInvoker(COSClass* cls, COSID methodId, const COSMethodSignature* signature, int access)
    : methodId_(methodId), className_(cls ? cls->getName() : ""), classId_(cls ? cls->getID() : COSID()) {
  method_ = firstMethod(cls, methodId, access,
                        [&](COSMethodInfo* m) { return fits(m->getMethodSignature(), signature); });
}

void VCOSMethodInvoker::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                               const COSValue* prhs) const {
  invokeImpl(client, nlhs, plhs, nrhs, prhs, false);
}

void VCOSMethodInvoker::invokeStatic(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                                     const COSValue* prhs) const {
  invokeImpl(client, nlhs, plhs, nrhs, prhs, true);
}

void VCOSMethodInvoker::invokeImpl(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                                   const COSValue* prhs, bool isStaticCall) const {
  if (!method_) throw Error("VANTEL:sgutils:NoMethodFound", methodId_.str(), className_);
  if (isStaticCall && !method_->isStatic())
    throw Error("VANTEL:sgutils:MethodNotStatic", className_, methodId_.str());
  if (!isStaticCall && method_->isStatic()) throw Error("VANTEL:sgutils:MethodStatic", className_, methodId_.str());
  const COSMethodSignature* signature = method_->getMethodSignature();
  if (!signature) throw Error("VANTEL:sgutils:BadMethodSignatureNull");

  const auto& declared = signature->getInputs();
  if (nrhs > static_cast<int>(declared.size()) && !signature->hasVarArgIn())
    throw Error("VANTEL:sgutils:BadMethodSignatureInvalidNumberOfInputs");
  InputArrays inputs;
  inputs.arrays.reserve(static_cast<std::size_t>(nrhs));
  for (int i = 0; i < nrhs; ++i) {
    const COSDataTypePtr& type = i < static_cast<int>(declared.size()) ? declared[i].type : COSDataTypePtr();
    // An untyped input, or one whose type is an array type, is an array already.
    if (!type || type->isVANTELArrayType()) {
      inputs.arrays.push_back(prhs[i].asPointer<const vxArray>());
      continue;
    }
    COSTypeConversion* conversion = COSTypeRepository::getConversion(type.getID(), anyId());
    if (!conversion) throw Error("VANTEL:sgutils:MissingConversion");
    vxArray* a = conversion->convert(prhs[i]).asPointer<vxArray>();
    inputs.owned.push_back(a);
    vxSetArrayScope(a, 0);
    inputs.arrays.push_back(a);
  }

  const auto& outputs = signature->getOutputs();
  std::vector<vxArray*> results(std::max<std::size_t>(outputs.size(), 1), nullptr);
  omCallMethod(classId_, methodId_, client, nlhs, results.data(), nrhs, inputs.arrays.data(), isStaticCall);
  struct Results {
    std::vector<vxArray*>& r;
    ~Results() {
      for (vxArray* a : r)
        if (a) vxDestroyArray(a);
    }
  } cleanup{results};
  if (!results[0]) return;
  int walked = 0;
  for (std::size_t i = 0; i < outputs.size(); ++i, ++walked) {
    const COSDataTypePtr& type = outputs[i].type;
    vxArray* a = std::exchange(results[i], nullptr);
    if (!a) {
      plhs[i] = COSValue();
      continue;
    }
    if (!type || type->isVANTELArrayType()) {
      plhs[i] = COSValue(a);  // the caller owns it
      continue;
    }
    COSTypeConversion* conversion = COSTypeRepository::getConversion(anyId(), type.getID());
    if (!conversion) {
      vxDestroyArray(a);
      throw Error("VANTEL:sgutils:MissingConversion");
    }
    plhs[i] = conversion->convert(COSValue(a));
    vxDestroyArray(a);
  }
  nlhs = walked;
}

void callVCOSMethod(COSID methodId, int access, COSClass* cls, const COSClient* client, int& nlhs, COSValue* plhs,
                    int nrhs, const COSValue* prhs) {
  VCOSMethodInvoker(cls, methodId, nullptr, access).invoke(client, nlhs, plhs, nrhs, prhs);
}

void callVCOSMethod(COSID methodId, COSClass* cls, const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                    const COSValue* prhs) {
  callVCOSMethod(methodId, 0, cls, client, nlhs, plhs, nrhs, prhs);
}

void callStaticVCOSMethod(COSID methodId, COSClass* cls, const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                          const COSValue* prhs) {
  VCOSMethodInvoker(cls, methodId, nullptr, 0).invokeStatic(client, nlhs, plhs, nrhs, prhs);
}

}  // namespace sgutils
