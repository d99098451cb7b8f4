// Defaults of the method description, the stored-field method base, and
// method signatures.
#include "vcos/COSMethodInfo.h"

#include <new>

#include "vcos/COSDataType.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSMethodSignature.h"

void* COSMethodInfo::operator new(std::size_t size) { return ::operator new(size); }
void COSMethodInfo::operator delete(void* p) noexcept { ::operator delete(p); }

COSMethodInfo::~COSMethodInfo() = default;
const char* COSMethodInfo::getDescription() const { return ""; }
bool COSMethodInfo::isLookupScope() const { return false; }
const char* COSMethodInfo::getDetailedDescription() const { return ""; }
MemberAccess COSMethodInfo::getMemberAccess() const { return PublicAccess; }
const ExtendedMemberAccess* COSMethodInfo::getExtendedAccess() const { return nullptr; }
const COSMethodSignature* COSMethodInfo::getMethodSignature() const { return nullptr; }
bool COSMethodInfo::isFirstArgDispatch() const { return true; }
bool COSMethodInfo::isStatic() const { return false; }
bool COSMethodInfo::isAbstract() const { return false; }
bool COSMethodInfo::isSealed() const { return false; }
bool COSMethodInfo::isVisible() const { return true; }
bool COSMethodInfo::isDestructible() const { return true; }
bool COSMethodInfo::isLocked() const { return false; }
bool COSMethodInfo::isExplicit() const { return false; }
bool COSMethodInfo::doesMethodOverrideAllSignatures() const { return false; }

COSMethodBase::COSMethodBase(COSID classId, COSID methodId, MemberAccess access, const char* description,
                             COSMethodSignaturePtr signature)
    : classId_(classId),
      methodId_(methodId),
      access_(access),
      description_(description ? description : ""),
      signature_(std::move(signature)) {}

const char* COSMethodBase::getName() const { return methodId_.c_str(); }
const char* COSMethodBase::getDescription() const { return description_.c_str(); }
MemberAccess COSMethodBase::getMemberAccess() const { return access_; }
const COSMethodSignature* COSMethodBase::getMethodSignature() const { return signature_.get(); }
bool COSMethodBase::isStatic() const { return signature_ && signature_->isStatic(); }

COSMethodSignature::COSMethodSignature(COSID name, std::vector<Argument> inputs, std::vector<Argument> outputs,
                                       unsigned flags, MemberAccess access)
    : name_(name), inputs_(std::move(inputs)), outputs_(std::move(outputs)), flags_(flags), access_(access) {
  for (const Argument& a : inputs_)
    if (!a.optional) ++minIn_;
}

std::shared_ptr<COSMethodSignature> COSMethodSignature::createMethodSignature(COSID name, std::vector<Argument> inputs,
                                                                              std::vector<Argument> outputs,
                                                                              unsigned flags, MemberAccess access) {
  return std::make_shared<COSMethodSignature>(name, std::move(inputs), std::move(outputs), flags, access);
}

bool COSMethodSignature::accepts(int nrhs, const COSValue* prhs) const {
  if (nrhs < minIn_) return false;
  if (!hasVarArgIn() && nrhs > static_cast<int>(inputs_.size())) return false;
  const int typed = std::min(nrhs, static_cast<int>(inputs_.size()));
  for (int i = 0; i < typed; ++i) {
    const COSDataTypePtr& type = inputs_[static_cast<std::size_t>(i)].type;
    if (type && !type->checkValue(prhs[i], /*raise=*/false)) return false;
  }
  return true;
}
