// Walks properties, methods, events, superclasses or children. Built on a
// COSInterface with a type and a direction, or empty. For the children types
// the start object is a child: type 3 walks its chain from it (direction 0
// toward older siblings, 1 toward newer ones); type 2 does the same and
// descends into each element's children (pre-order, children in the same
// direction). For the member types the start object is a class. nextElement
// past the end throws ENoElements.
#pragma once

#include <vector>

#include "vcos/COSInterfacePtr.h"
#include "vcos/ENoElements.h"

enum IteratorType : int {
  IteratorProperties = 0,
  IteratorMethods = 1,
  IteratorRecursiveChildren = 2,
  IteratorChildren = 3,
  IteratorEvents = 4,
  IteratorSuperclasses = 5,
};

enum IteratorDirection : int { IteratorForward = 0, IteratorBackward = 1 };

class VCOS_API COSIterator {
 public:
  COSIterator() = default;
  COSIterator(COSInterface* start, int type, int direction = IteratorForward);

  bool hasMoreElements() const noexcept;
  // A strong reference to the next element.
  COSInterfacePtr nextElement();

 private:
  void advanceTree();
  int type_ = IteratorChildren;
  int direction_ = IteratorForward;
  // Member walks: a snapshot of the list.
  std::vector<COSInterfacePtr> items_;
  std::size_t next_ = 0;
  // Tree walks: the next element, and the start's owner (the walk stops there).
  COSInterfacePtr current_;
  COSInterface* root_ = nullptr;
};
