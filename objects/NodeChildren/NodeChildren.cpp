// The hand-written half of NodeChildren: the raw children, and the hooking
// of a node with its events.
#include "sgutils/objects/NodeChildren.gen.h"

#include <vector>

#include "sgutils/tree/ChildData.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSIterator.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace graphics::mixin {

namespace {

// Sends `event` to `parent` when it has the NodeChildren mixin.
void notifyNode(const COSInterfacePtr& parent, const COSInterfacePtr& node, COSID event) {
  if (!parent || parent->isDestroyed() || !parent->getInstanceData(NodeChildren::classID())) return;
  COSInterfacePtr data(new sgutils::ChildData(parent, node, event));
  parent->notifyEvent(COSGetPublicClient(), event, static_cast<COSEventData*>(data.get()));
}

}  // namespace

vxArray* NodeChildren::nodeChildren(const COSInterfacePtr& object) {
  COSInterface* oldest = object ? object->getOldestChild() : nullptr;
  if (!oldest) return nullptr;
  std::vector<COSInterfacePtr> list;
  for (COSIterator it(oldest, IteratorChildren, IteratorBackward); it.hasMoreElements();) list.push_back(it.nextElement());
  vxArray* array = omCreateVCOSMatrix(list.size(), 1, "vantel.mixin.Heterogeneous");
  // Oldest first in the walk, newest first in the array.
  for (std::size_t i = 0; i < list.size(); ++i) omSetArrayElement(array, list.size() - 1 - i, list[i]);
  omSetClassOfHeterogeneousArray(array);
  return array;
}

COSValue NodeChildren::getNodeChildrenImpl(COSPropInfo*, const COSClient*, COSInterface* object) {
  return COSValue(nodeChildren(COSInterfacePtr(object)));
}

// The tree is changed through Parent or addNode, never here.
void NodeChildren::setNodeChildrenImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue) {}

void NodeChildren::hookNode(const COSInterfacePtr& parent, const COSInterfacePtr& node) {
  if (!parent || !node || node->getOwnerObject() == parent.get()) return;
  if (node->getOwnerObject()) unhookNode(node);
  parent->hookChild(node.get());
  notifyNode(parent, node, nodeChildAddedEventID());
}

void NodeChildren::unhookNode(const COSInterfacePtr& node) {
  if (!node) return;
  COSInterfacePtr parent;
  node->getOwner(parent);
  if (!parent) return;
  node->unhookFromOwner();
  notifyNode(parent, node, nodeChildRemovedEventID());
}

}  // namespace graphics::mixin
