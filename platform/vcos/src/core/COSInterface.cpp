// Out-of-line parts of the counted base of every class-system object: data
// block look-up, owner, the destroyed-shell error, casts and the public client.
#include "vcos/COSInterface.h"

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClient.h"

using vcos::internal::ObjectOps;

COSInterface::~COSInterface() {
  assert(strong_ == 0 && "object freed while still strongly referenced");
  ObjectOps::freeExtras(this);
}

// Classes and member objects free their meta data blocks when the last owner
// lets go; instances override this with full deletion.
void COSInterface::lastStrongReferenceReleased() {
  if (state_ & (kHeapBlocks | kFixedBlocks)) ObjectOps::deallocateBlocks(this);
}

void COSInterface::raiseInvalidHandle() { throw foundation::core::except::Error(vcos::msg::InvalidHandle); }

void* COSInterface::getInstanceData(COSID classId) const noexcept {
  if (state_ & kFixedBlocks) {
    const std::vector<std::int32_t>& offsets = class_->tables().offsetByKey;
    const std::uint32_t key = classId.entry() ? classId.entry()->blockKey : 0;
    const std::int32_t offset = key < offsets.size() ? offsets[key] : 0;
    return offset ? const_cast<char*>(reinterpret_cast<const char*>(this)) + offset : nullptr;
  }
  return listedInstanceData(classId);
}

void* COSInterface::listedInstanceData(COSID classId) const noexcept {
  if (state_ & kFixedBlocksPartial) {
    // Being made or freed at the fixed offsets: the block at its offset,
    // unless it is not made yet or gone (an index below blocksGone_).
    const vcos::internal::ClassTables& t = class_->tables();
    const std::uint32_t key = classId.entry() ? classId.entry()->blockKey : 0;
    if (key >= t.offsetByKey.size()) return nullptr;
    const std::int32_t offset = t.offsetByKey[key];
    if (!offset || t.indexByKey[key] < blocksGone_) return nullptr;
    return const_cast<char*>(reinterpret_cast<const char*>(this)) + offset;
  }
  if (!(state_ & (kHeapBlocks | kListedBlocks))) return nullptr;
  const vcos::internal::BlockSlot* slot = class_->tables().blockSlot.find(classId);
  return slot ? ObjectOps::blockAt(this, slot->index) : nullptr;
}

void COSInterface::getOwner(COSInterfacePtr& out) const {
  checkValid();
  out = owner_;
}

const COSClient* COSGetPublicClient() noexcept {
  static const COSClient client;
  return &client;
}

COSClass* cosiToClass(COSInterface* o) noexcept {
  return o && o->getKind() == COSKind::Class ? static_cast<COSClass*>(o) : nullptr;
}
COSPropInfo* cosiToProp(COSInterface* o) noexcept {
  return o && o->getKind() == COSKind::Property ? static_cast<COSPropInfo*>(o) : nullptr;
}
COSMethodInfo* cosiToMethod(COSInterface* o) noexcept {
  return o && o->getKind() == COSKind::Method ? static_cast<COSMethodInfo*>(o) : nullptr;
}
COSEventInfo* cosiToEvent(COSInterface* o) noexcept {
  return o && o->getKind() == COSKind::Event ? static_cast<COSEventInfo*>(o) : nullptr;
}
COSClass* cosiClassOfMember(COSInterface* o) noexcept {
  if (auto* p = cosiToProp(o)) return p->getDefiningClass();
  if (auto* m = cosiToMethod(o)) return m->getDefiningClass();
  if (auto* e = cosiToEvent(o)) return e->getDefiningClass();
  return nullptr;
}
