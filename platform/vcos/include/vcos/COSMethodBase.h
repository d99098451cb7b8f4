// A method info that stores its name, description, signature and access.
// Derive and implement invoke.
#pragma once

#include <string>

#include "vcos/COSMethodInfo.h"
#include "vcos/COSMethodSignature.h"

class VCOS_API COSMethodBase : public COSMethodInfo {
 public:
  COSMethodBase(COSID classId, COSID methodId, MemberAccess access, const char* description,
                COSMethodSignaturePtr signature = nullptr);

  const char* getName() const override;
  const char* getDescription() const override;
  MemberAccess getMemberAccess() const override;
  const COSMethodSignature* getMethodSignature() const override;
  bool isStatic() const override;

  COSID getClassID() const noexcept { return classId_; }
  void setSignature(COSMethodSignaturePtr signature) { signature_ = std::move(signature); }

 private:
  COSID classId_;
  COSID methodId_;
  MemberAccess access_;
  std::string description_;
  COSMethodSignaturePtr signature_;
};
