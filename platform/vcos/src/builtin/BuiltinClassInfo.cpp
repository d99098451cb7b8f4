// The class info of the built-in classes and the array-convention method.
#include "vcos/src/builtin/BuiltinClassInfo.h"

#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vx/matrix.h"

namespace vcos::builtin {

void ClassInfo::initializeClass(COSClass* cls, const COSClient* /*client*/) {
  cls_ = cls;
  for (const char* super : row_.superclasses)
    if (super) cls->addSuperclass(COSID(super));
  if (row_.addMembers) row_.addMembers(cls);
}

void* ClassInfo::allocateInstance(COSInterface* instance) {
  if (!row_.newBlock) return nullptr;
  void* block = row_.newBlock(instance);
  if (cls_) cls_->notifyInstanceAllocated(instance);
  return block;
}

void ClassInfo::deallocateInstance(COSInterface* instance, void* data) {
  if (data && row_.deleteBlock) row_.deleteBlock(instance, data);
}

namespace {

COSMethodSignaturePtr signatureOf(COSID name, const Method::Row& row) {
  std::vector<COSMethodSignature::Argument> inputs;
  for (int i = 0; i < row.minInputs; ++i) inputs.push_back({COSID(i == 0 && !row.isStatic ? "object" : "input"), COSDataTypePtr(), false});
  const int optional = row.maxInputs < 0 ? 0 : row.maxInputs - row.minInputs;
  for (int i = 0; i < optional; ++i) inputs.push_back({COSID("input"), COSDataTypePtr(), /*optional=*/true});
  // The variable input: the last one stands for any number, none included.
  if (row.maxInputs < 0) inputs.push_back({COSID("varargin"), COSDataTypePtr(), /*optional=*/true});
  std::vector<COSMethodSignature::Argument> outputs;
  for (int i = 0; i < (row.maxOutputs < 0 ? 0 : row.maxOutputs); ++i) outputs.push_back({COSID("output"), COSDataTypePtr(), false});
  unsigned flags = COSMethodSignature::None;
  if (row.maxInputs < 0) flags |= COSMethodSignature::VarArgIn;
  if (row.maxOutputs < 0) flags |= COSMethodSignature::VarArgOut;
  if (row.isStatic) flags |= COSMethodSignature::Static;
  return COSMethodSignature::createMethodSignature(name, std::move(inputs), std::move(outputs), flags);
}

// Words and arrays of one call, on the stack for short argument lists.
template <class T>
class Slots {
 public:
  explicit Slots(int n) : heap_(n > kInline ? static_cast<std::size_t>(n) : 0) {}
  T* data() noexcept { return heap_.empty() ? inline_ : heap_.data(); }

 private:
  static constexpr int kInline = 8;
  T inline_[kInline] = {};
  std::vector<T> heap_;
};

}  // namespace

Method::Method(COSID classId, const Row& row)
    : COSMethodBase(classId, COSID(row.name), PublicAccess, row.description, signatureOf(COSID(row.name), row)),
      body_(row.body) {}

void Method::add(COSClass* cls, const Row& row) { cls->addMethod(new Method(cls->getID(), row)); }

void Method::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  Slots<const vxArray*> in(nrhs);
  for (int i = 0; i < nrhs; ++i) in.data()[i] = prhs[i].asPointer<const vxArray>();
  const int room = nlhs > 1 ? nlhs : 1;
  Slots<vxArray*> out(room);
  // What the caller put in the outputs (a constructor's new object) is seen.
  for (int i = 0; i < nlhs; ++i) out.data()[i] = plhs[i].asPointer<vxArray>();
  body_(client, nlhs, out.data(), nrhs, in.data());
  for (int i = 0; i < room; ++i) {
    if (i < nlhs)
      plhs[i] = COSValue(out.data()[i]);
    else if (out.data()[i])
      matrix::destroyArray(out.data()[i]);  // an output nobody asked for
  }
}

}  // namespace vcos::builtin
