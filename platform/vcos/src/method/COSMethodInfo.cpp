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
bool COSMethodInfo::constructWithoutInputs(const COSClient*, const COSInterfacePtr&) const { return false; }

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
  // With the variable-input mark the last input stands for any number of
  // inputs, none included.
  const std::size_t fixed = hasVarArgIn() && !inputs_.empty() ? inputs_.size() - 1 : inputs_.size();
  for (std::size_t i = 0; i < fixed; ++i)
    if (!inputs_[i].optional) ++minIn_;
}

std::shared_ptr<COSMethodSignature> COSMethodSignature::createMethodSignature(COSID name, std::vector<Argument> inputs,
                                                                              std::vector<Argument> outputs,
                                                                              unsigned flags, MemberAccess access) {
  return std::make_shared<COSMethodSignature>(name, std::move(inputs), std::move(outputs), flags, access);
}

bool COSMethodSignature::accepts(int nrhs, const COSValue* prhs) const {
  if (nrhs < minIn_) return false;
  if (!hasVarArgIn() && nrhs > static_cast<int>(inputs_.size())) return false;
  // Inputs past the declared ones take the type of the variable input.
  for (int i = 0; i < nrhs && !inputs_.empty(); ++i) {
    const std::size_t k = std::min(static_cast<std::size_t>(i), inputs_.size() - 1);
    if (k != static_cast<std::size_t>(i) && !hasVarArgIn()) break;
    const COSDataTypePtr& type = inputs_[k].type;
    if (type && !type->checkValue(prhs[i], /*raise=*/false)) return false;
  }
  return true;
}
