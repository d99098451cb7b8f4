// The class-info base through which the platform's findobj reaches the
// children of a graphics object: the children are what the object's public
// "Children" reports, so a search honours the same hiding as the user's
// view. While the process-wide find-all flag is on, the class reports no
// custom list and the search walks the raw tree.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSInternedBase.h"

class COSPropInfo;

namespace sgutils {

class SGUTILS_API DefaultFindobjClassInfo : public COSClassInfo {
 public:
  static void setFindAllObjects(bool on) noexcept;
  static bool getFindAllObjects() noexcept;

  bool usesCustomChildrenList() const override;
  // Appends the object's "Children" (newest first); none when the object
  // has no such property or is deleted meanwhile.
  void getChildrenOfInstance(COSInterface* instance, std::vector<COSInterfacePtr>& out) override;

 private:
  // The class's "Children", looked up once per class info.
  const COSPropInfo* childrenProperty(COSInterface* instance);
  const COSClass* resolvedFor_ = nullptr;
  const COSPropInfo* children_ = nullptr;
};

}  // namespace sgutils
