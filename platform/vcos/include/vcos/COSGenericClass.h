// A class info whose qualities are data that can be changed after it is
// made, for classes described at run time and for meta classes that adjust a
// class while finishing it (constructed on load, sealed, ...).
#pragma once

#include <string>

#include "vcos/COSClassInfo.h"

class VCOS_API COSGenericClass : public COSClassInfo {
 public:
  explicit COSGenericClass(std::string name, std::string description = "");

  const char* getName() const override;
  const char* getDescription() const override;
  bool isAbstract() const override;
  bool isSealed() const override;
  bool isHidden() const override;
  bool isConstructedOnLoad() const override;
  bool isPropertyTruncationAllowed() const override;

  void setAbstract(bool v) noexcept { abstract_ = v; }
  void setSealed(bool v) noexcept { sealed_ = v; }
  void setHidden(bool v) noexcept { hidden_ = v; }
  void setConstructedOnLoad(bool v) noexcept { constructedOnLoad_ = v; }
  void setPropertyTruncationAllowed(bool v) noexcept { truncation_ = v; }

 private:
  std::string name_;
  std::string description_;
  bool abstract_ = false;
  bool sealed_ = false;
  bool hidden_ = false;
  bool constructedOnLoad_ = false;
  bool truncation_ = false;
};
