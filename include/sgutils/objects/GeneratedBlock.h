// The root of the data blocks of generated classes. An object whose class
// has several generated classes in one C++ line (Selectable, its parent
// GraphicsPickable, their base Mixin) holds one block of the most derived of
// them, shared by the slots of all; the block counts the slots it fills.
#pragma once

#include "sgutils/SGReference.h"
#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"

namespace sgutils {

class SGUTILS_API GeneratedBlock : public SGReference {
 public:
  ~GeneratedBlock() override;
  // The class whose C++ type this block is.
  virtual COSID blockClassID() const = 0;
  // Whether a block of this line holds the data of `classId`; none here.
  static bool containsClassData(COSID) noexcept { return false; }

 private:
  friend class GeneratedClassInfo;
  unsigned sharedSlots_ = 0;
};

}  // namespace sgutils
