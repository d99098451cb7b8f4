// The strategy every ChildManager starts with. A reorder checks the list
// (an illegal set raises "VANTEL:sg:BadChildrenPermutation"; a component
// behind an ordinary object only warns,
// "VANTEL:sg:default_child_strategy:IllegalPermutation", and moves
// nothing), then unhooks each listed child from the owner and hooks them on
// again from the last to the first, so the first listed becomes the newest.
// Children left out of the list stay where they are, behind the listed
// ones. Each step is virtual so a subclass replaces single steps.
#pragma once

#include "sgutils/tree/ChildStrategy.h"

namespace sgutils {

class SGUTILS_API DefaultChildStrategy : public ChildStrategy {
 public:
  ~DefaultChildStrategy() override;
  void processNewListOfChildren(ChildManager* manager, const ChildList& newList, const ChildList& oldList) override;

  // Whether the root's ShowHiddenHandles is on (for the libraries above).
  static bool isShowHiddenHandlesOn();

 protected:
  virtual void unhookChildrenFromTree(const ChildManager* manager, const ChildList& list);
  // Sets the child's "Parent" to an empty placeholder array.
  virtual void processChildUnhooking(const ChildManager* manager, const COSInterfacePtr& child);
  // Sets the child's "Parent" to the manager's owner.
  virtual void processChildRehooking(const ChildManager* manager, const COSInterfacePtr& child);
  // False stops the reorder before anything moves; the manager's validate().
  virtual bool preValidate(const ChildManager* manager);
  virtual void postProcess(const ChildManager* manager);
  virtual void rehookChildrenToParent(const ChildManager* manager, const ChildList& list);

 private:
  // Splits the list before its first non-component.
  static void partitionSGObjects(const ChildList& list, ChildList& components, ChildList& others);
};

}  // namespace sgutils
