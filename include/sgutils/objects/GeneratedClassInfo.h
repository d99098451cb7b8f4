// The base of the class infos of generated classes. It makes the data block:
// the block of the object's most derived generated class that contains this
// class's data, made once and shared by the slots of its generated
// ancestors, and freed with the last of them.
#pragma once

#include "sgutils/BaseObjectCOSInfo.h"
#include "sgutils/objects/GeneratedBlock.h"

namespace sgutils {

class SGUTILS_API GeneratedClassInfo : public BaseObjectCOSInfo {
 public:
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;

  virtual COSID ownClassID() const = 0;
  // A new block of this class.
  virtual GeneratedBlock* newBlock() const = 0;
  // Whether a block of this class holds the data of `classId` (the class
  // itself or one of its generated C++ ancestors).
  virtual bool blockContains(COSID classId) const = 0;
};

}  // namespace sgutils
