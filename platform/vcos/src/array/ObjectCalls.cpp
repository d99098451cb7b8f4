// Constructing, calling and wrapping through arrays: the bridge between the
// array API's calling convention and the class system's COSValue words (in
// these calls every word is a vxArray*).
#include "vcos/ObjectCalls.h"

#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vx/matrix.h"

using foundation::core::except::Error;

namespace {

COSClass* requireClass(COSID classId) {
  COSClass* cls = classId ? COSClass::getClass(classId) : nullptr;
  if (!cls) throw Error("VANTEL:vcos:UnknownClass", classId.str());
  return cls;
}

// The words of a call: arrays in and out as COSValues, on the stack for the
// usual short argument lists.
class Words {
 public:
  explicit Words(std::size_t n) : heap_(n > kInline ? n : 0) {}
  COSValue* data() noexcept { return heap_.empty() ? inline_ : heap_.data(); }

 private:
  static constexpr std::size_t kInline = 8;
  COSValue inline_[kInline];
  std::vector<COSValue> heap_;
};

Words inputWords(int nrhs, const vxArray* const prhs[]) {
  Words w(static_cast<std::size_t>(nrhs > 0 ? nrhs : 0));
  for (int i = 0; i < nrhs; ++i) w.data()[i] = COSValue(prhs[i]);
  return w;
}

}  // namespace

vxArray* omConstructObjectWithClient(COSID classId, int nrhs, const vxArray* const prhs[], const COSClient* client) {
  COSClass* cls = requireClass(classId);
  Words in = inputWords(nrhs, prhs);
  COSInterfacePtr object = cls->createInstance(client ? client : COSGetPublicClient(), nrhs, in.data());
  return omCreateVCOSScalar(object);
}

vxArray* omConstructObjectWithClient(const char* className, int nrhs, const vxArray* const prhs[],
                                     const COSClient* client) {
  return omConstructObjectWithClient(COSID(className), nrhs, prhs, client);
}

bool omCallMethod(COSID classId, COSID methodId, const COSClient* client, int nlhs, vxArray* plhs[], int nrhs,
                  const vxArray* const prhs[], bool dispatchOnObject) {
  COSClass* cls = nullptr;
  if (dispatchOnObject && nrhs > 0 && omIsVCOS(prhs[0])) cls = vcos::array::classOf(prhs[0]);
  if (!cls) cls = requireClass(classId);
  Words in = inputWords(nrhs, prhs);
  // invoke may raise an output count of 0 to 1: there is always one word.
  Words out(static_cast<std::size_t>(nlhs > 1 ? nlhs : 1));
  int n = nlhs;
  const bool called =
      vcos::internal::callMethod(cls, methodId, client ? client : COSGetPublicClient(), n, out.data(), nrhs, in.data());
  if (!called) return false;
  const int produced = n > nlhs ? n : nlhs;
  for (int i = 0; i < produced; ++i) {
    vxArray* a = out.data()[i].asPointer<vxArray>();
    if (plhs)
      plhs[i] = a;  // the caller made room for max(nlhs, 1)
    else if (a)
      matrix::destroyArray(a);
  }
  return true;
}

bool omCallMethod(const char* className, const char* methodName, const COSClient* client, int nlhs,
                  vxArray* plhs[], int nrhs, const vxArray* const prhs[], bool dispatchOnObject) {
  return omCallMethod(COSID(className), COSID(methodName), client, nlhs, plhs, nrhs, prhs, dispatchOnObject);
}

bool omCallMethod(COSID classId, const char* methodName, const COSClient* client, int nlhs, vxArray* plhs[], int nrhs,
                  const vxArray* const prhs[], bool dispatchOnObject) {
  return omCallMethod(classId, COSID(methodName), client, nlhs, plhs, nrhs, prhs, dispatchOnObject);
}

bool omCallLoadobjMethod(const COSInterfacePtr& object, const vxArray* value, const COSDataTypePtr& /*type*/) {
  if (!object) throw Error("VANTEL:vcos:NullObject");
  object->checkValid();
  COSClass* cls = object->getClass();
  if (!cls || !cls->findMethod(vcos::builtin::names().loadobj)) return false;
  // An object array is its own first argument; any other saved form comes
  // with the object after it, made only then. The class is the object's,
  // so the method is called on it without a look-up by id.
  matrix::unique_vxArray self;
  COSValue in[2] = {COSValue(value), COSValue()};
  int nrhs = 1;
  if (!omIsVCOS(value)) {
    self.reset(omCreateVCOSScalar(object));
    in[1] = COSValue(static_cast<const vxArray*>(self.get()));
    nrhs = 2;
  }
  COSValue out[1];
  int n = 1;
  const bool called =
      vcos::internal::callMethod(cls, vcos::builtin::names().loadobj, COSGetPublicClient(), n, out, nrhs, in);
  if (auto* a = called ? out[0].asPointer<vxArray>() : nullptr) matrix::destroyArray(a);
  return called;
}

COSInterfacePtr omWrapData(void* data, COSClass* cls) {
  assert(cls && "wrapping data without a class");
  return cls->wrapInstanceData(data);
}

COSInterfacePtr omWrapData(void* data, const char* className) { return omWrapData(data, requireClass(COSID(className))); }

bool omGetVcosUsingUSM() noexcept { return false; }
