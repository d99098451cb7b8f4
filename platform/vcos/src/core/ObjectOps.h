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

  // Makes `cls` the class of `o` and allocates its blocks into a block
  // array in its side table (none where no class of the ancestry makes a
  // block), or queues that until the class's slot table exists.
  static void bindToClass(COSInterface* o, COSClass* cls);
  // Allocates one block per ancestry class, base first, in the room of `o`
  // where it has one, listing them in `storage` (where look-ups find them
  // meanwhile); on failure frees those made and raises. `asked` gets the
  // bytes the blocks asked for (see vcos/BlockArena.h).
  static void allocateBlocks(COSInterface* o, COSClass* cls, void** storage, void* ownBlock = nullptr,
                             std::size_t* asked = nullptr);
  // Most derived first.
  static void deallocateBlocks(COSInterface* o) noexcept;
  // After allocateBlocks made the blocks of instance `o` into `made` (an
  // array of the caller's): where they all lie at the offsets of the class's
  // layout (learnt here from the first instance that allows it), the object
  // keeps none of them; otherwise it gets a block array of its own in its
  // side table. On failure frees the blocks and raises.
  // Without a room (null `roomBegin`), the object gets the array.
  static void keepBlocks(COSInterface* o, void** made, std::byte* roomBegin, std::byte* roomEnd);
  // Whether instances of `cls` made with its room take makeFixedBlocks.
  static bool madeAtOffsets(const COSClass* cls) noexcept { return cls->tables().blockOffsetsKnown; }
  // Makes the blocks of instance `o` (made with its class's room; the
  // class's offsets are known) base first, by the class's block steps, each
  // checked against its place as it comes: no list of them is kept. A block off its place (a class
  // info that made it apart) gives the object a block array, as
  // keepBlocks does. On failure frees those made and raises.
  static void makeFixedBlocks(COSInterface* o, std::size_t* asked);
  // The block at ancestry index `index` of `o` (valid for its class), or
  // null.
  static void* blockAt(const COSInterface* o, std::size_t index) noexcept {
    const unsigned char state = o->state_;
    if (state & (COSInterface::kFixedBlocks | COSInterface::kFixedBlocksPartial)) {
      if ((state & COSInterface::kFixedBlocksPartial) && index < o->blocksGone_) return nullptr;
      const std::int32_t offset = o->class_->tables().blockOffsets[index];
      return offset ? const_cast<char*>(reinterpret_cast<const char*>(o)) + offset : nullptr;
    }
    if (state & COSInterface::kHeapBlocks) return o->extras_->blocks[index];
    if (state & COSInterface::kListedBlocks) return listedBlocks(o)[index];
    return nullptr;
  }
  static bool hasFixedBlocks(const COSInterface* o) noexcept {
    return (o->state_ & COSInterface::kFixedBlocks) != 0;
  }
  // The longest ancestry whose blocks may lie at fixed offsets (the index
  // being made or freed is kept in a byte; instances list their blocks on
  // the stack while the first ones are made).
  static constexpr std::size_t kMaxFixedBlocks = 32;
  // The array of block pointers of an object that keeps one: zeroed, from a
  // pool of arrays of that length (a heap array past 32).
  static void** newBlockArray(std::size_t n);
  static void freeBlockArray(void** blocks, std::size_t n) noexcept;

  // While the blocks of an object are made into (or freed from) a list of
  // the caller's, its look-ups find them there. One per object at a time;
  // the scopes of objects made while another's blocks are made nest.
  class BlockListScope {
   public:
    BlockListScope(COSInterface* o, void** list) noexcept;
    ~BlockListScope();
    BlockListScope(const BlockListScope&) = delete;
    BlockListScope& operator=(const BlockListScope&) = delete;

   private:
    friend class ObjectOps;
    COSInterface* object_;
    void** list_;
    BlockListScope* outer_;
  };

  // Full deletion; see COSInterface::deleteObject.
  static bool destroy(COSInterface* o, const COSClient* client);
  // The deletion of an object that has no children and no extras and whose
  // "ObjectBeingDestroyed" reaches no one: unhook, blocks, destroyed.
  static void destroyQuietLeaf(COSInterface* o) noexcept;

  static void setState(COSInterface* o, unsigned char bits) noexcept { o->state_ |= bits; }
  static constexpr unsigned char beingDestroyedBit() noexcept { return COSInterface::kBeingDestroyed; }
  static constexpr unsigned char destroyedBit() noexcept { return COSInterface::kDestroyed; }
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

 private:
  // The list of the innermost BlockListScope of `o`.
  static void** listedBlocks(const COSInterface* o) noexcept;
  // Frees the blocks listed in `list` most derived first, each entry cleared
  // before its release.
  static void freeListedBlocks(COSInterface* o, void** list) noexcept;
  // Frees the fixed blocks of `o` made so far, most derived first: those of
  // the class's blockSteps before position `end`.
  static void freeFixedBlocks(COSInterface* o, std::size_t end) noexcept;
  // Frees the fixed blocks of `o` (kEveryInfoAsked) by every class info
  // that made one, most derived first.
  static void freeEveryFixedBlock(COSInterface* o) noexcept;
  // The state of an instance of the class of `t` whose blocks every class
  // info made at the fixed offsets: freed by every class info too where the
  // class's block steps leave some out.
  static unsigned char fixedBits(const ClassTables& t) noexcept;
  // Gives `o` a block array in its side table listing `made`.
  static void keepBlockArray(COSInterface* o, void** made, std::size_t n);
};

}  // namespace vcos::internal
