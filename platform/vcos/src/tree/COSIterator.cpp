// Walks over members (a snapshot taken at construction) and over the tree
// (live links, one step ahead, so the element just handed out may be
// unhooked or deleted by the caller).
#include "vcos/COSIterator.h"

#include <algorithm>

#include "vcos/src/class/ClassTables.h"
#include "vcos/COSCasts.h"

const char* ENoElements::what() const noexcept { return "No more elements."; }

COSIterator::COSIterator(COSInterface* start, int type, int direction) : type_(type), direction_(direction) {
  if (!start) return;
  if (type == IteratorChildren || type == IteratorRecursiveChildren) {
    current_ = start;
    root_ = start->getOwnerObject();
    return;
  }
  COSClass* cls = cosiToClass(start);
  if (!cls) cls = start->getClass();
  if (!cls) return;
  vcos::internal::ClassTables& t = cls->tables();
  switch (type) {
    case IteratorProperties:
      for (auto& s : t.properties) items_.emplace_back(s.property);
      break;
    case IteratorMethods:
      for (auto& g : t.methods) items_.emplace_back(g.candidates.front());
      break;
    case IteratorEvents:
      for (COSEventInfo* e : t.events) items_.emplace_back(e);
      break;
    case IteratorSuperclasses:
      for (COSClass* s : t.superclasses) items_.emplace_back(s);
      break;
    default:
      break;
  }
  if (direction == IteratorBackward) std::reverse(items_.begin(), items_.end());
}

bool COSIterator::hasMoreElements() const noexcept {
  if (type_ == IteratorChildren || type_ == IteratorRecursiveChildren) return !current_.isNull();
  return next_ < items_.size();
}

COSInterfacePtr COSIterator::nextElement() {
  if (type_ == IteratorChildren || type_ == IteratorRecursiveChildren) {
    if (current_.isNull()) throw ENoElements();
    COSInterfacePtr result = current_;
    advanceTree();
    return result;
  }
  if (next_ >= items_.size()) throw ENoElements();
  return items_[next_++];
}

void COSIterator::advanceTree() {
  const bool forward = direction_ == IteratorForward;
  COSInterface* o = current_.get();
  auto sibling = [forward](COSInterface* x) { return forward ? x->getOlderSibling() : x->getNewerSibling(); };
  if (type_ == IteratorRecursiveChildren) {
    if (COSInterface* first = forward ? o->getNewestChild() : o->getOldestChild()) {
      current_ = first;
      return;
    }
    // Climb until a sibling is found, stopping at the walk's own level.
    while (o && o->getOwnerObject() != root_) {
      if (COSInterface* s = sibling(o)) {
        current_ = s;
        return;
      }
      o = o->getOwnerObject();
    }
  }
  COSInterface* s = o ? sibling(o) : nullptr;
  current_ = s;
}
