// The base that gives a graphics container its Children. The children are
// not stored here: they live in the platform's object tree (hooked under
// their owner by their Parent), and each read walks the tree afresh, newest
// first. The manager keeps the strategy that applies a new list, shared
// between copies, and the flag of a running reorder.
//
// A container derives from this class (or holds a subclass), supplies
// getOwnerObject, and routes its Children property through getChildList
// (read) and setChildList (set). Hooks around a reorder, a wider or narrower
// notion of a child, and exclusions from saving are virtual.
#pragma once

#include <memory>

#include "sgutils/tree/ChildStrategy.h"
#include "vcos/COSIterator.h"

namespace sgutils {

class SGUTILS_API ChildManager {
 public:
  ChildManager();
  ChildManager(const ChildManager&) = default;
  ChildManager& operator=(const ChildManager&) = default;
  virtual ~ChildManager();

  // The object whose children are managed (may be null).
  virtual COSInterfacePtr getOwnerObject() const = 0;
  virtual bool validate() const;
  // Appends the children that count to `out` (newest first).
  virtual void collectChildren(ChildList& out);
  virtual bool doIsChildSerializable(const COSInterfacePtr& child);
  virtual void doPreProcessSetChildren();
  virtual void doPostProcessSetChildren();
  virtual void undoPreProcessSetChildren();

  // Every child that is not hidden by design (HandleVisibility ignored;
  // Internal and deleted children left out).
  ChildList getAllChildren();
  // Raw walks of the tree, hidden and Internal children included.
  COSIterator getFIFOChildList() const;
  COSIterator getLIFOChildList() const;
  COSIterator getRecursiveLIFOChildList() const;
  bool isInChildrenReordering() const noexcept { return inChildrenReordering; }
  static bool isChildVisible(const COSInterfacePtr& child);

 protected:
  // The children visible now, as a new column (an empty placeholder array
  // for none).
  vxArray* getChildList();
  // Applies a user's order; raises "VANTEL:sg:BadChildren" for a value that
  // is no list of graphics objects and "VANTEL:sg:BadChildrenPermutation"
  // for one that is no permutation of the children; the order is then left
  // as it was.
  void setChildList(const vxArray* array);
  // The list a new list is judged against (getAllChildren here).
  virtual ChildList getChildrenForSet();
  // The newest child of the owner, or null (no owner, or a deleted one).
  virtual COSInterfacePtr doGetChildren();
  void collectChildrenDefault(ChildList& out);
  // The default list, widened to the hidden children while a root exists
  // and its ShowHiddenHandles is on: the usual Children of a container.
  void collectChildrenWidenedByRoot(ChildList& out);

  // The children to save; marks each "TopLevelSerializedObject" false.
  vxArray* getSerializableChildList();
  vxArray* getSerializableFromAllChildren(ChildList list);
  vxArray* getDeserializedChildList();
  // Hooks loaded children under the owner, the first element ending newest;
  // a child's ParentMode is left as it was.
  void restoreSerializedChildren(const vxArray* array);

  void processNewChildList(ChildList newList, ChildList oldList);
  void preProcessSetChildren(bool starting);
  const std::shared_ptr<ChildStrategy>& getChildStrategy() const noexcept { return childStrategy; }
  void setChildStrategy(std::shared_ptr<ChildStrategy> strategy) { childStrategy = std::move(strategy); }

 private:
  std::shared_ptr<ChildStrategy> childStrategy;
  bool inChildrenReordering = false;
};

}  // namespace sgutils
