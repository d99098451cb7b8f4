// The shared data blocks of generated classes (GeneratedClassInfo.h) and
// their post-set hook.
#include "sgutils/objects/GeneratedClassInfo.h"

#include <utility>

#include "foundation/graphicsstate/GraphicsState.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"

namespace sgutils {

GeneratedBlock::~GeneratedBlock() = default;

void GeneratedBlock::doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags) {
  // Null for an object outside "vantel.graphics.Graphics".
  if (SGHandle* handle = SGHandle::fromObject(object)) handle->doPostSet(object, property, flags);
}

void GeneratedBlock::doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  if (SGHandle* handle = SGHandle::fromObject(object)) handle->doPostSet(object, property, limitsDirty, objectDirty);
}

const GeneratedClassInfo::BlockPlan& GeneratedClassInfo::planFor(COSClass* cls) {
  if (lastPlan_ < plans_.size() && plans_[lastPlan_].cls == cls) return plans_[lastPlan_];
  for (std::size_t i = 0; i < plans_.size(); ++i)
    if (plans_[i].cls == cls) return plans_[lastPlan_ = i];
  const COSID me = ownClassID();
  const std::vector<COSClass*>& ancestry = cls->getAncestry();
  // The ancestry lists a derived class before its bases, so the first
  // generated class that holds this class's data is the most derived one.
  GeneratedClassInfo* owner = this;
  for (COSClass* c : ancestry) {
    auto* info = dynamic_cast<GeneratedClassInfo*>(c->getClassInfo());
    if (info && info->blockContains(me)) {
      owner = info;
      break;
    }
  }
  BlockPlan plan{cls, owner, owner->ownClassID(), {}, false};
  // Blocks are made base first, from the end of the ancestry: where every
  // sharer comes before this class in it, none has made the block yet.
  bool meSeen = false;
  plan.makesFirst = true;
  for (COSClass* c : ancestry) {
    if (c->getID() == me)
      meSeen = true;
    else if (owner->blockContains(c->getID())) {
      plan.sharers.push_back(c->getID());
      if (meSeen) plan.makesFirst = false;
    }
  }
  plan.makesFirst = plan.makesFirst && meSeen;
  plans_.push_back(std::move(plan));
  return plans_[lastPlan_ = plans_.size() - 1];
}

void* GeneratedClassInfo::allocateInstance(COSInterface* instance) {
  const BlockPlan& plan = planFor(instance->getClass());
  // Blocks are made base first: a generated ancestor may have made the
  // owner's block already.
  if (!plan.makesFirst)
    for (COSID id : plan.sharers) {
      void* slot = instance->getInstanceData(id);
      if (!slot) continue;
      auto* block = static_cast<GeneratedBlock*>(static_cast<SGReference*>(slot));
      if (block->blockClassID() != plan.ownerId) continue;
      ++block->sharedSlots_;
      return slot;
    }
  GeneratedBlock* block = plan.owner->newBlock();
  // A weak reference: the block never keeps its object alive.
  block->setCOSReference(COSInterfacePtr(instance, COSWeakReference));
  block->sharedSlots_ = 1;
  return static_cast<SGReference*>(block);
}

void GeneratedClassInfo::deallocateInstance(COSInterface*, void* data) {
  auto* block = static_cast<GeneratedBlock*>(static_cast<SGReference*>(data));
  if (--block->sharedSlots_ == 0) delete block;
}

void GeneratedClassInfo::sealGraphicsClass(COSClass* cls, std::span<const char* const> allowedSubclasses) {
  if (!GraphicsState::sgSealGraphicsClasses()) return;
  for (const char* name : allowedSubclasses) cls->addAllowedSubclass(COSID(name));
}

void GeneratedClassInfo::addProperty(COSClass* cls, COSPropInfo* property) {
  cls->addProperty(property);
  propertyNameAdded(property->getID());
}

void GeneratedClassInfo::notePropertiesAdded(const std::vector<COSInterfacePtr>& infos) {
  for (const COSInterfacePtr& info : infos)
    if (COSPropInfo* property = cosiToProp(info.get())) propertyNameAdded(property->getID());
}

void GeneratedClassInfo::propertyNameAdded(COSID name) { addedNames_.push_back(name); }

}  // namespace sgutils
