// Not installed; internal to the class-object system.
//
// The operations that need the private state of COSInterface: binding an
// object to its class and allocating its data blocks, deletion, the generic
// value store, and the raw tree links.
#pragma once

#include <cstddef>

#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/src/core/InstanceExtras.h"

namespace vcos::internal {

class ObjectOps {
 public:
  static InstanceExtras& extras(COSInterface* o);
  static InstanceExtras* extrasIfAny(const COSInterface* o) noexcept { return o->extras_; }
  static void freeExtras(COSInterface* o) noexcept;

  // Makes `meta` the class of `o` and allocates its blocks, or queues that
  // until the class's slot table exists.
  static void bindToClass(COSInterface* o, COSClass* cls);
  // Allocates one block per ancestry class, base first, in the room of `o`
  // where it has one; on failure frees those made and raises. `asked` gets
  // the bytes the blocks asked for (see vcos/BlockArena.h).
  static void allocateBlocks(COSInterface* o, COSClass* cls, void** storage, void* ownBlock = nullptr,
                             std::size_t* asked = nullptr);
  // Most derived first.
  static void deallocateBlocks(COSInterface* o) noexcept;
  // The array of block pointers of an ancestry too long for the inline ones:
  // zeroed, from a pool of arrays of that length (a heap array past 32).
  static void** newBlockArray(std::size_t n);
  static void freeBlockArray(void** blocks, std::size_t n) noexcept;

  // Full deletion; see COSInterface::deleteObject.
  static bool destroy(COSInterface* o, const COSClient* client);

  static void setState(COSInterface* o, unsigned char bits) noexcept { o->state_ |= bits; }
  static constexpr unsigned char beingDestroyedBit() noexcept { return COSInterface::kBeingDestroyed; }
  static constexpr unsigned char destroyedBit() noexcept { return COSInterface::kDestroyed; }
  static constexpr unsigned char heapBlocksBit() noexcept { return COSInterface::kHeapBlocks; }
  static void** blocks(COSInterface* o) noexcept { return o->blocks_; }
  static void setBlocks(COSInterface* o, void** b) noexcept { o->blocks_ = b; }
  static void setClass(COSInterface* o, COSClass* c) noexcept { o->class_ = c; }

  static void setMemberIdentity(COSPropInfo* p, COSID id, COSClass* definer) noexcept {
    p->id_ = id;
    if (!p->definingClass_) p->definingClass_ = definer;
  }

  static COSClass* newClass(COSID id, COSClassInfo* info, COSPackage* package) {
    return new COSClass(id, info, package);
  }
  static void setCustomMeta(COSClass* c, bool custom) noexcept { c->customMeta_ = custom; }

  // Generic value store of COSPropT.
  static COSValue* storedValue(COSInterface* o, const COSPropInfo* p) noexcept;
  static void storeValue(COSInterface* o, const COSPropInfo* p, COSValue v);
  // Drops a stored value; false when there was none.
  static bool eraseStoredValue(COSInterface* o, const COSPropInfo* p) noexcept;

  // Takes the child out of its owner's chain and clears its owner link;
  // returns the strong reference the chain held (null when it was out of the
  // chain already).
  static COSInterfacePtr unlinkChild(COSInterface* child) noexcept;
  // The same, keeping the owner link.
  static COSInterfacePtr takeOutOfChain(COSInterface* child) noexcept;
};

}  // namespace vcos::internal
