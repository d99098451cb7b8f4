// A property made at run time, for dynamic properties (addprop) and for
// classes described by data alone. Its qualities can be changed after it is
// made.
#pragma once

#include "vcos/COSPropT.h"

class VCOS_API COSGenericProp : public COSPropT {
 public:
  using COSPropT::COSPropT;

  // A public, visible, resettable property of type `typeId` defined by
  // `classId`. Raises "VANTEL:vcos:UnknownType" for an unknown type.
  static COSGenericProp* createNewDynamicProp(const COSString& name, COSID classId, COSID typeId);

  void setResetAllowed(bool allowed) noexcept;
  void setTransient(bool transient) noexcept;
  void setVisible(bool visible) noexcept;
  void setAccess(MemberAccess getAccess, MemberAccess setAccess) noexcept;
  MemberAccess getMemberGetAccess() const override;
  MemberAccess getMemberSetAccess() const override;

 private:
  MemberAccess overrideGet_ = PublicAccess;
  MemberAccess overrideSet_ = PublicAccess;
  bool accessOverridden_ = false;
};
