// "vantel.graphics.GraphicsDisplay": the command-line display of graphics
// objects. Derives from "vantel.mixin.CustomDisplay" and replaces its
// displayScalarObject, displayNonScalarObject and displayEmptyObject; adds
// the hooks getPropertyGroups and getDescriptiveLabelForDisplay, whose
// defaults ask the GraphicsDisplayData of the object's class.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSClassInfo.h"

namespace sgutils {

class SGUTILS_API GraphicsDisplayClassInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "GraphicsDisplay"; }
  bool isHidden() const override { return true; }
  void initializeClass(COSClass* cls, const COSClient* client) override;
  // No block of its own (the default allocateInstance): nothing to ask.
  bool isSharedAnswerSkippable() const override { return true; }
};

}  // namespace sgutils
