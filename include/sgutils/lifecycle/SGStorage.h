// The data block of "vantel.graphics.internal.StorageObject": a plain,
// non-handle object with hooks for the save path. Its stage hooks only let
// go of the object they are given.
#pragma once

#include "sgutils/lifecycle/SGReference.h"

class SGUTILS_API SGStorage : public SGReference {
 public:
  void Setup(COSInterfacePtr object) override;
  void SetupFailed(COSInterfacePtr object) override;
  void CreationComplete(COSInterfacePtr object) override;
  void ApplyingDefaults(COSInterfacePtr object) override;
  void DefaultsApplied(COSInterfacePtr object, bool fromReset) override;
  // Called by the class info's customSave as the object is saved.
  virtual void doCustomSave();
  static COSClass* getClassInstance();
};
