// Not installed; internal to the class-object system.
//
// The operations that need the private state of COSInterface: binding an
// object to its class and allocating its data blocks, deletion, the generic
// value store, and the raw tree links.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/src/class/ClassTables.h"
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
  // After allocateBlocks made the blocks of instance `o` into `made` (an
  // array of the caller's): where they all lie at the offsets of the class's
  // layout (learnt here from the first instance that allows it), the object
  // keeps none of them; otherwise it gets a block array of its own. On
  // failure frees the blocks and raises.
  // Without a room (null `roomBegin`), the object gets the array.
  static void keepBlocks(COSInterface* o, void** made, std::byte* roomBegin, std::byte* roomEnd);
  // The block at ancestry index `index` of `o` (valid for its class), or
  // null.
  static void* blockAt(const COSInterface* o, std::size_t index) noexcept {
    if (o->blocks_) return o->blocks_[index];
    const unsigned char state = o->state_;
    if (!(state & (COSInterface::kFixedBlocks | COSInterface::kFixedBlocksGoing))) return nullptr;
    if ((state & COSInterface::kFixedBlocksGoing) && index < o->blocksGone_) return nullptr;
    const std::int32_t offset = o->class_->tables().blockOffsets[index];
    return offset ? const_cast<char*>(reinterpret_cast<const char*>(o)) + offset : nullptr;
  }
  static bool hasFixedBlocks(const COSInterface* o) noexcept {
    return (o->state_ & COSInterface::kFixedBlocks) != 0;
  }
  // The longest ancestry whose blocks may lie at fixed offsets (the index
  // freed last is kept in a byte; instances list their blocks on the stack
  // while they are made).
  static constexpr std::size_t kMaxFixedBlocks = 32;
  // The array of block pointers of an object that keeps one: zeroed, from a
  // pool of arrays of that length (a heap array past 32).
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
