// The shared data blocks of generated classes (GeneratedClassInfo.h) and
// their post-set hook.
#include "sgutils/objects/GeneratedClassInfo.h"

#include "foundation/graphicsstate/GraphicsState.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"

namespace sgutils {

GeneratedBlock::~GeneratedBlock() = default;

void GeneratedBlock::doPostSet(COSInterfacePtr object, COSPropInfo* property, DirtyFlags flags) {
  // Null for an object outside "vantel.graphics.Graphics".
  if (SGHandle* handle = toSGHandle(object)) handle->doPostSet(object, property, flags);
}

void GeneratedBlock::doPostSet(COSInterfacePtr object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  if (SGHandle* handle = toSGHandle(object)) handle->doPostSet(object, property, limitsDirty, objectDirty);
}

void* GeneratedClassInfo::allocateInstance(COSInterface* instance) {
  const COSID me = ownClassID();
  const std::vector<COSClass*>& ancestry = instance->getClass()->getAncestry();
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
  // Blocks are made base first: a generated ancestor may have made the
  // owner's block already.
  const COSID ownerId = owner->ownClassID();
  for (COSClass* c : ancestry) {
    if (c->getID() == me || !owner->blockContains(c->getID())) continue;
    void* slot = instance->getInstanceData(c->getID());
    if (!slot) continue;
    auto* block = static_cast<GeneratedBlock*>(static_cast<SGReference*>(slot));
    if (block->blockClassID() != ownerId) continue;
    ++block->sharedSlots_;
    return slot;
  }
  GeneratedBlock* block = owner->newBlock();
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
