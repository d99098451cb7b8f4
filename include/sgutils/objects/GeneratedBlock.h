// The root of the data blocks of generated classes. An object whose class
// has several generated classes in one C++ line (Selectable, its parent
// GraphicsPickable, their base Mixin) holds one block of the most derived of
// them, shared by the slots of all; the block counts the slots it fills.
// Both doPostSet forms, the hook that runs after a generated property was
// set, hand the call on to the object's Graphics block, where a concrete
// class marks itself dirty. The object comes as a plain pointer: the caller
// of a set holds it for the length of the call.
#pragma once

#include "sgutils/metadata/DirtyFlags.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"

class COSPropInfo;

namespace sgutils {

class SGUTILS_API GeneratedBlock : public SGReference {
 public:
  ~GeneratedBlock() override;
  virtual void doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags);
  virtual void doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty);
  // The class whose C++ type this block is.
  virtual COSID blockClassID() const = 0;
  // Whether a block of this line holds the data of `classId`; none here.
  static bool containsClassData(COSID) noexcept { return false; }
  // No hook of its own: what SGReference's hooks do, the runners do.
  unsigned stageHooksThatAct() const noexcept override { return 0; }

 private:
  friend class GeneratedClassInfo;
  unsigned sharedSlots_ = 0;
};

}  // namespace sgutils
