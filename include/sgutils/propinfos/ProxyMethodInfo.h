// A method that shows another class's method on the class it is added to.
// The wrapped method takes the real object and the proxy object as its first
// two inputs; the shown signature drops the first of them.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/propinfos/MethodDescriptor.h"
#include "sgutils/propinfos/ProxyPropInfo.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSMethodSignature.h"

namespace sgutils {

using WrappedMethodInfoPtr = COSSpecializedInterfacePtr<COSMethodInfo, COSMethodInfoPtrHelper>;

class SGUTILS_API ProxyMethodInfo : public COSMethodInfo {
 public:
  // Raises NullMethodInfoException for a null method or map, or a wrapped
  // signature with fewer than two inputs.
  ProxyMethodInfo(const MethodDescriptor& descriptor, WrappedMethodInfoPtr wrapped, COSID classId, InstanceMap map);
  ~ProxyMethodInfo() override;

  const char* getName() const override { return wrapped_->getName(); }
  const char* getDescription() const override { return wrapped_->getDescription(); }
  const char* getDetailedDescription() const override { return wrapped_->getDetailedDescription(); }
  MemberAccess getMemberAccess() const override { return ownAccess_ ? access_ : wrapped_->getMemberAccess(); }
  const ExtendedMemberAccess* getExtendedAccess() const override { return wrapped_->getExtendedAccess(); }
  const COSMethodSignature* getMethodSignature() const override { return signature_.get(); }
  bool isStatic() const override { return wrapped_->isStatic(); }
  bool isAbstract() const override { return wrapped_->isAbstract(); }
  bool isSealed() const override { return wrapped_->isSealed(); }
  bool isVisible() const override { return wrapped_->isVisible(); }
  bool isLocked() const override { return wrapped_->isLocked(); }
  bool isExplicit() const override { return wrapped_->isExplicit(); }

  // Maps input 0 to the real object and calls the wrapped method by name on
  // that object's class with the real object in front of all inputs.
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;

 private:
  WrappedMethodInfoPtr wrapped_;
  InstanceMap map_;
  COSID classId_;
  MemberAccess access_ = PublicAccess;
  bool ownAccess_ = false;
  COSMethodSignaturePtr signature_;
};

}  // namespace sgutils
