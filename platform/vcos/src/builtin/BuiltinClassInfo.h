// Not installed; internal to the built-in classes of the class-object system.
//
// The built-in classes are described by rows of one table: package, short
// name, superclasses, whether abstract, the data block of their instances,
// and a function that adds the members. One class info type serves all rows.
#pragma once

#include <array>

#include "vcos/COSClassInfo.h"

namespace vcos::builtin {

struct ClassRow {
  const char* package;  // "" for a class without a package ("handle")
  const char* name;     // short name
  std::array<const char*, 2> superclasses;  // full names; null ends the list
  bool abstract;
  // Data block of the instances: made and freed by these, or none.
  void* (*newBlock)(COSInterface* instance);
  void (*deleteBlock)(COSInterface* instance, void* block);
  // Adds properties, methods and events (may be null).
  void (*addMembers)(COSClass* cls);
};

template <class Block>
void* newBlock(COSInterface* instance) {
  return new Block(instance);
}
template <class Block>
void deleteBlock(COSInterface* instance, void* block) {
  static_cast<Block*>(block)->teardown(instance);
  delete static_cast<Block*>(block);
}

class ClassInfo final : public COSClassInfo {
 public:
  explicit ClassInfo(const ClassRow& row) noexcept : row_(row) {}

  const char* getName() const override { return row_.name; }
  void initializeClass(COSClass* cls, const COSClient* client) override;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
  bool willAllocateData() const override { return row_.newBlock != nullptr; }
  bool isAbstract() const override { return row_.abstract; }
  bool classIsAbstract() const override { return row_.abstract; }
  bool isHandleClass() const override { return true; }

 private:
  const ClassRow& row_;
  COSClass* cls_ = nullptr;
};

}  // namespace vcos::builtin
