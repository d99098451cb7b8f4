// The base of the class infos of generated classes. It makes the data block:
// the block of the object's most derived generated class that contains this
// class's data, made once and shared by the slots of its generated
// ancestors, and freed with the last of them. Which block that is depends on
// the object's class only, so it is worked out once per class. It also holds the steps that
// every generated initializeClass takes: the sealing to a closed list of
// subclasses, and the note of each property name the class adds.
#pragma once

#include <span>
#include <vector>

#include "sgutils/classinfo/BaseObjectCOSInfo.h"
#include "sgutils/objects/GeneratedBlock.h"

namespace sgutils {

class SGUTILS_API GeneratedClassInfo : public BaseObjectCOSInfo {
 public:
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
  // A block shared with another generated slot only counts that slot.
  bool isSharedAnswerSkippable() const override { return true; }

  virtual COSID ownClassID() const = 0;
  // A new block of this class.
  virtual GeneratedBlock* newBlock() const = 0;
  // Whether a block of this class holds the data of `classId` (the class
  // itself or one of its generated C++ ancestors).
  virtual bool blockContains(COSID classId) const = 0;

  // The names of the properties this class added, in the order they were
  // added (for a triple: X, XMode, X_I).
  const std::vector<COSID>& addedPropertyNames() const noexcept { return addedNames_; }

 protected:
  // While graphics classes are sealed (GraphicsState), only the listed
  // classes may derive from `cls`. The switch is read once, here.
  static void sealGraphicsClass(COSClass* cls, std::span<const char* const> allowedSubclasses);
  // Adds the property to the class and notes its name.
  void addProperty(COSClass* cls, COSPropInfo* property);
  // Notes the names of infos that a property definition added.
  void notePropertiesAdded(const std::vector<COSInterfacePtr>& infos);
  // Called for each property name the class adds, right after the add.
  virtual void propertyNameAdded(COSID name);

 private:
  // What allocateInstance needs to know about the objects of one class, found
  // on the first object of that class: the generated class whose block holds
  // this class's data, and the classes of the ancestry whose slots may
  // already hold that block.
  struct BlockPlan {
    COSClass* cls;
    GeneratedClassInfo* owner;
    COSID ownerId;
    std::vector<COSID> sharers;
    // No sharer's slot is made before this one's: the block is made here.
    bool makesFirst;
  };
  const BlockPlan& planFor(COSClass* cls);

  std::vector<COSID> addedNames_;
  std::vector<BlockPlan> plans_;
  std::size_t lastPlan_ = 0;
};

}  // namespace sgutils
