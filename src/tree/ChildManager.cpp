// The children of a container as the user sees them, walked afresh from the
// object tree on every read.
#include "sgutils/tree/ChildManager.h"
#include "sgutils/tree/ChildListing.h"

#include <algorithm>
#include <optional>

#include "sgutils/tree/DefaultChildStrategy.h"
#include "sgutils/tree/RootInstance.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgutils {

namespace {

// Puts a property back to the byte it held when the restorer was made (a
// mode, which a set of the property's public face would turn manual).
class ModeRestorer {
 public:
  ModeRestorer(COSInterface* object, const COSPropInfo* property) : object_(object), property_(property) {
    if (!object_ || !property_) return;
    COSValue value = object_->getPropertyValue(COSGetPublicClient(), property_);
    const auto* byte = value.asPointer<const unsigned char>();
    saved_ = byte ? *byte : 0;
    object_->releasePropertyValue(COSGetPublicClient(), property_, value);
  }
  virtual ~ModeRestorer() {
    if (!object_ || !property_) return;
    try {
      object_->setPropertyValue(COSGetPublicClient(), property_, COSValue(&saved_));
    } catch (...) {
      // The mode stays as the set left it; a load goes on.
    }
  }
  ModeRestorer(const ModeRestorer&) = delete;
  ModeRestorer& operator=(const ModeRestorer&) = delete;

 private:
  COSInterface* object_;
  const COSPropInfo* property_;
  unsigned char saved_ = 0;
};

void dropUnserializable(ChildManager& manager, ChildList& list) {
  std::erase_if(list, [&](const COSInterfacePtr& child) { return !manager.doIsChildSerializable(child); });
}

}  // namespace

ChildManager::ChildManager() : childStrategy(ChildStrategy::createDefaultChildStrategy()) {}
ChildManager::~ChildManager() = default;

bool ChildManager::validate() const { return true; }
void ChildManager::collectChildren(ChildList& out) { collectChildrenDefault(out); }
bool ChildManager::doIsChildSerializable(const COSInterfacePtr& child) { return ChildStrategy::isChildSerializable(child); }
void ChildManager::doPreProcessSetChildren() { inChildrenReordering = true; }
void ChildManager::doPostProcessSetChildren() { inChildrenReordering = false; }
void ChildManager::undoPreProcessSetChildren() { inChildrenReordering = false; }

bool ChildManager::isChildVisible(const COSInterfacePtr& child) { return ChildStrategy::isChildHandleVisible(child); }

COSInterfacePtr ChildManager::doGetChildren() {
  COSInterfacePtr owner = getOwnerObject();
  if (!owner || owner->isDestroyed()) return {};
  return COSInterfacePtr(owner->getNewestChild());
}

void ChildManager::collectChildrenWidenedByRoot(ChildList& out) {
  std::optional<ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard> showAll;
  if (isListingWidenedByRoot()) showAll.emplace();
  collectChildrenDefault(out);
}

void ChildManager::collectChildrenDefault(ChildList& out) {
  COSInterfacePtr head = doGetChildren();
  if (!head) return;
  // Three passes: the chain (the objects lie together in the class
  // system's pools); a tight loop that starts fetching the memory the test
  // reads (data blocks scattered on the heap), where the independent loads
  // overlap; then the test of each child, which finds that memory near.
  const std::size_t start = out.size();
  for (COSIterator it(head.get(), IteratorChildren, IteratorForward); it.hasMoreElements();)
    out.push_back(it.nextElement());
  const std::size_t end = out.size();
  for (std::size_t i = start; i < end; ++i) ChildStrategy::prefetchVisibility(out[i].get());
  std::size_t kept = start;
  for (std::size_t i = start; i < end; ++i) {
    if (ChildStrategy::isChildHandleVisible(out[i])) {
      if (kept != i) out[kept] = std::move(out[i]);
      ++kept;
    }
  }
  out.resize(kept);
}

vxArray* ChildManager::getChildList() {
  ChildList list;
  collectChildren(list);
  return ChildStrategy::createVxArrayFromCOSInterfaceVector(list);
}

ChildList ChildManager::getAllChildren() {
  ChildList list;
  ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard showAll;
  collectChildren(list);
  return list;
}

ChildList ChildManager::getChildrenForSet() { return getAllChildren(); }

void ChildManager::setChildList(const vxArray* array) {
  Mprotected_vxArray objects = ChildStrategy::convertToCOSArray(array);
  ChildList newList = ChildStrategy::pushVxArrayEntriesIntoVector(objects.get());
  ChildList oldList = getChildrenForSet();
  processNewChildList(std::move(newList), std::move(oldList));
}

void ChildManager::processNewChildList(ChildList newList, ChildList oldList) {
  if (newList == oldList) return;  // same objects in the same order: nothing to do
  try {
    doPreProcessSetChildren();
    // Held, so that replacing the strategy during the call cannot free it.
    const std::shared_ptr<ChildStrategy> strategy = childStrategy;
    strategy->processNewListOfChildren(this, newList, oldList);
    doPostProcessSetChildren();
  } catch (...) {
    preProcessSetChildren(false);
    throw;
  }
}

void ChildManager::preProcessSetChildren(bool starting) {
  if (starting)
    doPreProcessSetChildren();
  else
    undoPreProcessSetChildren();
}

vxArray* ChildManager::getSerializableChildList() { return getSerializableFromAllChildren(getAllChildren()); }

vxArray* ChildManager::getSerializableFromAllChildren(ChildList list) {
  dropUnserializable(*this, list);
  static const COSID topLevel("TopLevelSerializedObject");
  static const COSID coreProperties("vantel.graphics.mixin.GraphicsCoreProperties");
  // Every child saved beneath a parent is marked as not being the top of
  // what was saved.
  if (COSClass* core = COSClass::getClass(coreProperties))
    if (COSPropInfo* property = core->findPropertyExact(topLevel))
      for (const COSInterfacePtr& child : list)
        if (child->getClass() && child->getClass()->findPropertyExact(topLevel))
          property->setValue(child.get(), COSValue::fromBool(false));
  return ChildStrategy::createVxArrayFromCOSInterfaceVector(list);
}

vxArray* ChildManager::getDeserializedChildList() {
  ChildList list = getAllChildren();
  dropUnserializable(*this, list);
  return ChildStrategy::createVxArrayFromCOSInterfaceVector(list);
}

void ChildManager::restoreSerializedChildren(const vxArray* array) {
  if (!array) return;
  const ChildList list = ChildStrategy::pushVxArrayEntriesIntoVector(array);
  const Mprotected_vxArray owner(omCreateVCOSScalar(getOwnerObject()), true);
  static const COSID parentInternal("Parent_I"), parentMode("ParentMode"), parent("Parent");
  // Last to first, so that the first element ends up newest.
  for (auto it = list.rbegin(); it != list.rend(); ++it) {
    const COSInterfacePtr& child = *it;
    if (!child || child->isDestroyed()) continue;
    if (const COSPropInfo* internal = child->findPropertyInfo(parentInternal)) {
      child->setPropertyValue(COSGetPublicClient(), internal, COSValue(owner.get()));
      continue;
    }
    ModeRestorer keepMode(child.get(), child->findPropertyInfo(parentMode));
    if (const COSPropInfo* visible = child->findPropertyInfo(parent))
      child->setPropertyValue(COSGetPublicClient(), visible, COSValue(owner.get()));
  }
}

COSIterator ChildManager::getLIFOChildList() const {
  return COSIterator(getOwnerObject()->getNewestChild(), IteratorChildren, IteratorForward);
}
COSIterator ChildManager::getFIFOChildList() const {
  return COSIterator(getOwnerObject()->getOldestChild(), IteratorChildren, IteratorBackward);
}
COSIterator ChildManager::getRecursiveLIFOChildList() const {
  return COSIterator(getOwnerObject()->getNewestChild(), IteratorRecursiveChildren, IteratorForward);
}

}  // namespace sgutils
