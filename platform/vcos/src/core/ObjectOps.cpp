// Binding objects to classes, data-block allocation, the generic value store
// and deletion. Deletion follows one order: ask isOkToDestroy, mark being
// destroyed, fire "ObjectBeingDestroyed", delete the children newest first
// (each taken out of the chain before it is deleted, so a re-entrant delete
// finds a consistent tree), unhook from the owner, free the blocks most
// derived first, mark destroyed.
#include "vcos/src/core/ObjectOps.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <exception>

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/BlockArenaScope.h"
#include "vcos/src/core/COSObject.h"
#include "vcos/SlotPool.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"

namespace vcos::internal {

InstanceExtras& ObjectOps::extras(COSInterface* o) {
  if (!o->extras_) o->extras_ = new InstanceExtras;
  return *o->extras_;
}

void ObjectOps::freeExtras(COSInterface* o) noexcept {
  InstanceExtras* x = std::exchange(o->extras_, nullptr);
  if (!x) return;
  // A block array whose blocks were never freed (the memory of an object
  // that never lost a strong reference); the blocks themselves stay.
  if (x->blocks) freeBlockArray(x->blocks, x->blockCount);
  o->state_ &= static_cast<unsigned char>(~COSInterface::kHeapBlocks);
  for (StoredValue& v : x->values) {
    try {
      COSDataTypePtr type = v.property->getDataType();
      if (type) type->destroyInternal(v.value);
    } catch (...) {
      assert(false && "a data type failed to free a stored value");
    }
  }
  // Listeners and dynamic properties may run code as they go; detach first.
  x->values.clear();
  delete x;
}

namespace {
// The room for blocks in the slot of `o`; empty for objects without one.
BlockArenaScope roomScope(COSInterface* o) noexcept {
  if (o->getKind() != COSKind::Instance) return BlockArenaScope(nullptr, nullptr);
  auto* instance = static_cast<COSObject*>(o);  // every instance is one
  return BlockArenaScope(instance->blockRoomBegin(), instance->blockRoomEnd());
}

constexpr std::size_t kPooledBlockArrays = 32;
SlotPool& blockArrayPool(std::size_t n) {
  // Never destroyed, like the instance pool: objects may outlive static teardown.
  static auto* pools = new std::array<SlotPool*, kPooledBlockArrays + 1>{};
  SlotPool*& pool = (*pools)[n];
  if (!pool) pool = new SlotPool(n * sizeof(void*), alignof(void*));
  return *pool;
}
}  // namespace

void** ObjectOps::newBlockArray(std::size_t n) {
  if (n > kPooledBlockArrays) return new void*[n]();
  auto** blocks = static_cast<void**>(blockArrayPool(n).allocate());
  std::memset(blocks, 0, n * sizeof(void*));
  return blocks;
}

void ObjectOps::freeBlockArray(void** blocks, std::size_t n) noexcept {
  if (n > kPooledBlockArrays)
    delete[] blocks;
  else
    blockArrayPool(n).release(blocks);
}

namespace {
// The innermost scope whose object's blocks are listed (BlockListScope).
ObjectOps::BlockListScope* innermostList = nullptr;

// The ancestry indices whose class info allocates a block, base first;
// whether a class info allocates is a quality of the class info.
const std::vector<std::uint32_t>& allocatingBlocks(ClassTables& t) {
  if (!t.allocatingBlocksKnown) {
    t.allocatingBlocks.clear();
    for (std::size_t i = t.ancestry.size(); i-- > 0;)
      if (t.ancestry[i]->getClassInfo()->willAllocateData()) t.allocatingBlocks.push_back(static_cast<std::uint32_t>(i));
    t.allocatingBlocksKnown = true;
  }
  return t.allocatingBlocks;
}

[[gnu::always_inline]] inline void freeBlock(COSInterface* o, COSClassInfo* info, void* block) noexcept {
  try {
    info->deallocateInstance(o, block);
  } catch (...) {
    assert(false && "deallocateInstance must not throw");
  }
}

[[gnu::always_inline]] inline void freeBlock(COSInterface* o, COSClass* of, void* block) noexcept {
  freeBlock(o, of->getClassInfo(), block);
}

// The steps of the class's fixed blocks, from the blocks its first instance
// got (`made`, by ancestry index): an entry is left out where its class info
// allows it and its block is null or one that an entry before it made.
void learnBlockSteps(ClassTables& t, void* const* made) {
  t.blockSteps.clear();
  for (std::size_t p = 0; p < t.fixedBlocks.size(); ++p) {
    const auto [index, offset] = t.fixedBlocks[p];
    COSClassInfo* info = t.ancestry[index]->getClassInfo();
    bool shared = !made[index];
    for (std::size_t q = 0; q < p && !shared; ++q) shared = made[t.fixedBlocks[q].first] == made[index];
    if (shared && info->isSharedAnswerSkippable()) continue;
    t.blockSteps.push_back({info, index, offset, static_cast<std::uint32_t>(p)});
  }
}
}  // namespace

unsigned char ObjectOps::fixedBits(const ClassTables& t) noexcept {
  return t.blockSteps.size() == t.fixedBlocks.size() ? COSInterface::kFixedBlocks
                                                      : COSInterface::kFixedBlocks | COSInterface::kEveryInfoAsked;
}

ObjectOps::BlockListScope::BlockListScope(COSInterface* o, void** list) noexcept
    : object_(o), list_(list), outer_(std::exchange(innermostList, this)) {
  o->state_ |= COSInterface::kListedBlocks;
}

ObjectOps::BlockListScope::~BlockListScope() {
  object_->state_ &= static_cast<unsigned char>(~COSInterface::kListedBlocks);
  innermostList = outer_;
}

void** ObjectOps::listedBlocks(const COSInterface* o) noexcept {
  BlockListScope* scope = innermostList;
  while (scope->object_ != o) scope = scope->outer_;  // the bit says it is there
  return scope->list_;
}

void ObjectOps::bindToClass(COSInterface* o, COSClass* cls) {
  o->class_ = cls;
  ClassTables& t = cls->tables();
  if (t.state == ClassTables::State::Initializing) {
    t.pendingInstances.push_back(o);
    return;
  }
  // No class makes a block: every look-up answers null without an array.
  if (allocatingBlocks(t).empty()) return;
  const std::size_t n = t.ancestry.size();
  InstanceExtras& x = extras(o);
  void** storage = newBlockArray(n);
  try {
    allocateBlocks(o, cls, storage);
  } catch (...) {
    freeBlockArray(storage, n);
    throw;
  }
  x.blocks = storage;
  x.blockCount = static_cast<std::uint32_t>(n);
  o->state_ |= COSInterface::kHeapBlocks;
}

void ObjectOps::allocateBlocks(COSInterface* o, COSClass* cls, void** storage, void* ownBlock, std::size_t* asked) {
  // Also when `o` has no room: blocks of an object made while another's
  // blocks are made must not be carved from the other's room.
  BlockArenaScope room = roomScope(o);
  ClassTables& t = cls->tables();
  const std::vector<COSClass*>& ancestry = t.ancestry;
  const std::size_t n = ancestry.size();
  const std::vector<std::uint32_t>& allocating = allocatingBlocks(t);
  BlockListScope listed(o, storage);
  for (std::uint32_t i : allocating) {
    if (i == 0 && ownBlock) continue;
    try {
      storage[i] = ancestry[i]->getClassInfo()->allocateInstance(o);
    } catch (...) {
      for (std::size_t j = i + 1; j < n; ++j)
        if (void* b = std::exchange(storage[j], nullptr)) freeBlock(o, ancestry[j], b);
      throw;
    }
  }
  // The class's own block given by the caller goes in last, as if made last.
  if (ownBlock) storage[0] = ownBlock;
  if (asked) *asked = room.asked();
}

void ObjectOps::freeListedBlocks(COSInterface* o, void** list) noexcept {
  BlockArenaScope room = roomScope(o);
  BlockListScope listed(o, list);
  const std::vector<COSClass*>& ancestry = o->class_->tables().ancestry;
  for (std::size_t i = 0; i < ancestry.size(); ++i)
    if (void* b = std::exchange(list[i], nullptr)) freeBlock(o, ancestry[i], b);
}

void ObjectOps::keepBlockArray(COSInterface* o, void** made, std::size_t n) {
  void** own = nullptr;
  try {
    InstanceExtras& x = extras(o);
    own = newBlockArray(n);
    x.blocks = own;
    x.blockCount = static_cast<std::uint32_t>(n);
  } catch (...) {
    freeListedBlocks(o, made);
    throw;
  }
  std::copy(made, made + n, own);
  o->state_ |= COSInterface::kHeapBlocks;
}

void ObjectOps::keepBlocks(COSInterface* o, void** made, std::byte* roomBegin, std::byte* roomEnd) {
  ClassTables& t = o->class_->tables();
  const std::size_t n = t.ancestry.size();
  auto* self = reinterpret_cast<std::byte*>(o);
  if (roomBegin && !t.blockOffsetsKnown && n <= kMaxFixedBlocks) {
    // Only the classes that allocate can have a block (allocateBlocks).
    std::less<const void*> before;  // blocks may lie anywhere: compared as addresses
    auto inRoom = [&](std::uint32_t i) { return !made[i] || (!before(made[i], roomBegin) && before(made[i], roomEnd)); };
    if (std::all_of(t.allocatingBlocks.begin(), t.allocatingBlocks.end(), inRoom)) {
      t.blockOffsets.assign(n, 0);
      for (std::uint32_t i : t.allocatingBlocks) {
        const std::int32_t offset = made[i] ? static_cast<std::int32_t>(static_cast<std::byte*>(made[i]) - self) : 0;
        t.blockOffsets[i] = offset;
        t.fixedBlocks.emplace_back(i, offset);
      }
      std::uint32_t keys = 1;
      t.blockSlot.forEach([&](COSID id, const BlockSlot&) { keys = std::max(keys, id.entry()->blockKey + 1); });
      t.offsetByKey.assign(keys, 0);
      t.indexByKey.assign(keys, 0);
      t.blockSlot.forEach([&](COSID id, const BlockSlot& s) {
        t.offsetByKey[id.entry()->blockKey] = t.blockOffsets[s.index];
        t.indexByKey[id.entry()->blockKey] = static_cast<std::uint8_t>(s.index);
      });
      t.blockSlot.forEachValue([&](BlockSlot& s) { s.offset = t.blockOffsets[s.index]; });
      learnBlockSteps(t, made);
      t.blockOffsetsKnown = true;
      o->state_ |= fixedBits(t);
      return;
    }
  }
  bool fixed = roomBegin && t.blockOffsetsKnown;
  if (fixed) {
    // Without a branch per block: any block off its place leaves a bit set.
    const auto base = reinterpret_cast<std::uintptr_t>(self);
    std::uintptr_t off = 0;
    for (const auto& [index, offset] : t.fixedBlocks)
      off |= reinterpret_cast<std::uintptr_t>(made[index]) ^ (offset ? base + static_cast<std::uintptr_t>(offset) : 0);
    fixed = off == 0;
  }
  if (fixed) {
    o->state_ |= fixedBits(t);
    return;
  }
  keepBlockArray(o, made, n);
}

[[gnu::always_inline]] inline void ObjectOps::freeFixedBlocks(COSInterface* o, std::size_t end) noexcept {
  // Each block counts as gone from the start of its release, as with a
  // block array whose entry is cleared first.
  const ClassTables::BlockStep* steps = o->class_->tables().blockSteps.data();
  auto* self = reinterpret_cast<std::byte*>(o);
  o->state_ = static_cast<unsigned char>((o->state_ & ~COSInterface::kFixedBlocks) | COSInterface::kFixedBlocksPartial);
  for (std::size_t k = end; k-- > 0;) {
    const ClassTables::BlockStep& step = steps[k];
    o->blocksGone_ = static_cast<unsigned char>(step.index + 1);
    if (step.offset) freeBlock(o, step.info, self + step.offset);
  }
  o->blocksGone_ = 0;
  o->state_ &= static_cast<unsigned char>(~COSInterface::kFixedBlocksPartial);
}

void ObjectOps::freeEveryFixedBlock(COSInterface* o) noexcept {
  const ClassTables& t = o->class_->tables();
  auto* self = reinterpret_cast<std::byte*>(o);
  o->state_ = static_cast<unsigned char>(
      (o->state_ & ~(COSInterface::kFixedBlocks | COSInterface::kEveryInfoAsked)) | COSInterface::kFixedBlocksPartial);
  for (std::size_t k = t.fixedBlocks.size(); k-- > 0;) {
    const auto [index, offset] = t.fixedBlocks[k];
    o->blocksGone_ = static_cast<unsigned char>(index + 1);
    if (offset) freeBlock(o, t.ancestry[index], self + offset);
  }
  o->blocksGone_ = 0;
  o->state_ &= static_cast<unsigned char>(~COSInterface::kFixedBlocksPartial);
}

void ObjectOps::makeFixedBlocks(COSInterface* o, std::size_t* asked) {
  auto* instance = static_cast<COSObject*>(o);  // only instances have a room
  BlockArenaScope room(instance->blockRoomBegin(), instance->blockRoomEnd());
  const ClassTables& t = o->class_->tables();
  auto* self = reinterpret_cast<std::byte*>(o);
  const ClassTables::BlockStep* steps = t.blockSteps.data();  // base first
  const std::size_t count = t.blockSteps.size();
  // While they are made, the blocks not made yet (this one and the more
  // derived ones, below blocksGone_) answer null, as during teardown.
  o->state_ |= COSInterface::kFixedBlocksPartial;
  std::size_t k = 0;
  void* block = nullptr;
  try {
    for (; k < count; ++k) {
      const ClassTables::BlockStep& step = steps[k];
      o->blocksGone_ = static_cast<unsigned char>(step.index + 1);
      block = step.info->allocateInstance(o);
      if (block != (step.offset ? self + step.offset : nullptr)) break;
    }
  } catch (...) {
    freeFixedBlocks(o, k);
    throw;
  }
  o->blocksGone_ = 0;
  o->state_ &= static_cast<unsigned char>(~COSInterface::kFixedBlocksPartial);
  if (k == count) {
    o->state_ |= COSInterface::kFixedBlocks;
    if (asked) *asked = room.asked();
    return;
  }
  // Step k's block lies off its place: the rest are listed as they come,
  // and the object keeps them in an array like any instance off the fixed
  // path. The infos that the steps left out before it are asked now (base
  // first), so that the list holds what every class info answered.
  const std::size_t n = t.ancestry.size();
  std::array<void*, kMaxFixedBlocks> list{};  // offsets are known only up to this length
  for (std::size_t j = 0; j < k; ++j)
    if (steps[j].offset) list[steps[j].index] = self + steps[j].offset;
  list[steps[k].index] = block;
  const std::size_t at = steps[k].position;
  try {
    BlockListScope listed(o, list.data());
    for (std::size_t p = 0, j = 0; p < t.fixedBlocks.size(); ++p) {
      if (p == at || (j < k && steps[j].position == p)) {
        j += p != at;
        continue;
      }
      const std::uint32_t index = t.fixedBlocks[p].first;
      list[index] = t.ancestry[index]->getClassInfo()->allocateInstance(o);
    }
  } catch (...) {
    freeListedBlocks(o, list.data());
    throw;
  }
  if (asked) *asked = room.asked();
  keepBlockArray(o, list.data(), n);
}

void ObjectOps::deallocateBlocks(COSInterface* o) noexcept {
  if (!(o->state_ & (COSInterface::kHeapBlocks | COSInterface::kFixedBlocks))) return;
  // Blocks in the room go with the slot; the allocator must not take them.
  if (o->state_ & COSInterface::kFixedBlocks) {
    auto* instance = static_cast<COSObject*>(o);  // only instances have a room
    BlockArenaScope room(instance->blockRoomBegin(), instance->blockRoomEnd());
    // Most derived first.
    if (o->state_ & COSInterface::kEveryInfoAsked)
      freeEveryFixedBlock(o);
    else
      freeFixedBlocks(o, o->class_->tables().blockSteps.size());
    return;
  }
  BlockArenaScope room = roomScope(o);
  InstanceExtras* x = o->extras_;
  void** blocks = x->blocks;
  const std::vector<COSClass*>& ancestry = o->class_->tables().ancestry;
  for (std::size_t i = 0; i < ancestry.size(); ++i)
    if (void* b = std::exchange(blocks[i], nullptr)) freeBlock(o, ancestry[i], b);
  x->blocks = nullptr;
  o->state_ &= static_cast<unsigned char>(~COSInterface::kHeapBlocks);
  freeBlockArray(blocks, std::exchange(x->blockCount, 0));
}

COSValue* ObjectOps::storedValue(COSInterface* o, const COSPropInfo* p) noexcept {
  if (!o->extras_) return nullptr;
  for (StoredValue& v : o->extras_->values)
    if (v.property == p) return &v.value;
  return nullptr;
}

void ObjectOps::storeValue(COSInterface* o, const COSPropInfo* p, COSValue v) {
  COSDataTypePtr type = p->getDataType();
  COSValue copy = type ? type->copyInternal(v) : v;
  if (COSValue* slot = storedValue(o, p)) {
    COSValue old = std::exchange(*slot, copy);
    if (type) type->destroyInternal(old);
    return;
  }
  try {
    extras(o).values.push_back({p, copy});
  } catch (...) {
    if (type) type->destroyInternal(copy);
    throw;
  }
}

bool ObjectOps::eraseStoredValue(COSInterface* o, const COSPropInfo* p) noexcept {
  if (!o->extras_) return false;
  auto& values = o->extras_->values;
  for (auto it = values.begin(); it != values.end(); ++it) {
    if (it->property != p) continue;
    COSValue v = it->value;
    values.erase(it);
    try {
      if (COSDataTypePtr type = p->getDataType()) type->destroyInternal(v);
    } catch (...) {
      assert(false && "a data type failed to free a stored value");
    }
    return true;
  }
  return false;
}

COSInterfacePtr ObjectOps::takeOutOfChain(COSInterface* child) noexcept {
  COSInterface* owner = child->owner_;
  if (!owner || (!child->newer_ && owner->newestChild_ != child)) return {};
  if (child->newer_)
    child->newer_->older_ = child->older_;
  else
    owner->newestChild_ = child->older_;
  if (child->older_)
    child->older_->newer_ = child->newer_;
  else
    owner->oldestChild_ = child->newer_;
  child->newer_ = child->older_ = nullptr;
  COSInterfacePtr ref(child);  // the caller's reference...
  child->releaseReference(0);  // ...replaces the chain's
  return ref;
}

COSInterfacePtr ObjectOps::unlinkChild(COSInterface* child) noexcept {
  COSInterface* owner = child->owner_;
  if (!owner) return {};
  // A child deleted with its owner left the chain before its deletion began.
  COSInterfacePtr ref = child->newer_ || owner->newestChild_ == child ? takeOutOfChain(child) : COSInterfacePtr();
  child->owner_ = nullptr;
  owner->releaseReference(COSWeakReference);
  return ref;
}

namespace {
const COSID& objectBeingDestroyedId() {
  static const COSID id("ObjectBeingDestroyed");
  return id;
}
}  // namespace

void ObjectOps::destroyQuietLeaf(COSInterface* o) noexcept {
  COSInterfacePtr holdMemory(o, COSWeakReference);
  o->state_ |= COSInterface::kBeingDestroyed;
  COSInterfacePtr chainReference = unlinkChild(o);
  deallocateBlocks(o);
  o->state_ |= COSInterface::kDestroyed;
  // A block's destructor may have made extras.
  if (o->extras_) freeExtras(o);
}

bool ObjectOps::destroy(COSInterface* o, const COSClient* client) {
  if (o->isBeingDestroyed() || o->isDestroyed()) return false;
  // Explicit deletion asks the classes; the last strong reference and a
  // parent's cascade do not (client == nullptr).
  if (client && o->class_) {
    for (COSClass* c : o->class_->tables().ancestry)
      if (!c->getClassInfo()->isOkToDestroy(client, o)) return false;
  }
  // An object without children, listeners of its own or other extras, whose
  // "ObjectBeingDestroyed" reaches no one (the leaves of nearly every tree):
  // the steps that remain, in their order, without the general frame.
  if (!o->newestChild_ && !o->extras_ && o->class_ && o->kind_ == COSKind::Instance &&
      sendsToNoOne(o->class_, objectBeingDestroyedId())) {
    destroyQuietLeaf(o);
    return true;
  }
  COSInterfacePtr holdMemory(o, COSWeakReference);
  o->state_ |= COSInterface::kBeingDestroyed;
  std::exception_ptr firstError;

  try {
    o->notifyEvent(COSGetPublicClient(), objectBeingDestroyedId(), nullptr);
  } catch (...) {
    firstError = std::current_exception();
  }

  // Each child leaves the chain before its deletion starts, but keeps its
  // owner link until its own unhook step, so its listeners still see it.
  while (COSInterface* child = o->newestChild_) {
    COSInterfacePtr ref = takeOutOfChain(child);
    try {
      destroy(child, nullptr);
    } catch (...) {
      if (!firstError) firstError = std::current_exception();
    }
  }

  COSInterfacePtr chainReference = unlinkChild(o);
  deallocateBlocks(o);
  o->state_ |= COSInterface::kDestroyed;
  freeExtras(o);
  chainReference.reset();
  if (firstError) std::rethrow_exception(firstError);
  return true;
}

}  // namespace vcos::internal

bool COSInterface::deleteObject(const COSClient* client) {
  checkValid();
  return vcos::internal::ObjectOps::destroy(this, client ? client : COSGetPublicClient());
}
