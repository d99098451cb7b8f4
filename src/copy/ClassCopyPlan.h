// Not installed. What a copy does with the properties of one class, sorted
// once per class by the visitors and kept for the process, so that copying
// an object walks a short list and looks no name up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sgutils/copy/ParentConnector.h"
#include "src/copy/PropertyCopyVisitor.h"

class COSClass;
class COSPropInfo;

namespace sgutils::copy {

struct ClassCopyPlan {
  std::vector<PropertyCopyEntry> element;               // copyElement
  std::vector<PropertyCopyEntry> elementWithCallbacks;  // copyElement, callbacks asked for
  std::vector<PropertyCopyEntry> connect;               // connectCopyToTree
  // Whether the class keeps the Copyable's own copyElement and
  // connectCopyToTree (no override): the transaction then calls them
  // directly.
  bool defaultCopyElement = false;
  bool defaultConnect = false;
  // The class's "Parent" as the first object found it (null: looked up per
  // copy), and whether its type takes the parent's array as it is.
  COSPropInfo* parent = nullptr;
  bool parentTakesArray = false;
  // What hooks a copy under its parent's copy in place of a set of that
  // Parent where the set would be unobserved (null: the set).
  ParentConnector::Connect parentConnect = nullptr;
  // The class's "Children" (null: looked up per object), and whether its
  // values are arrays as they are (read and used without a copy).
  COSPropInfo* children = nullptr;
  bool childrenPassArrays = false;
  // No "Children" at all for an object of the class without properties of
  // its own (the class has none by any name a look-up accepts): such an
  // object is a leaf without a look-up.
  bool noChildren = false;
  // The classes whose blocks hold the values copied block to block, each
  // looked up once per object.
  static constexpr std::size_t kMaxBlocks = 16;
  std::vector<COSID> blockClasses;

  // The class the plan was made for.
  const COSClass* cls = nullptr;
  // Where the class's instances keep those blocks and the Copyable data
  // (vcos::blockSlotOf; -1: none), so that objects of the class find them
  // by index. Worked out again once the property route epoch has moved
  // (a class destroyed or changed moves it).
  mutable std::vector<int> blockSlots;
  mutable int copyableSlot = -1;
  mutable std::uint64_t slotEpoch = 0;
  mutable bool slotsKnown = false;
  void refreshSlots() const;
  // How far an instance's room reaches past the object's address, as far as
  // the plan's blocks and the Copyable data show it (the start of the last
  // one plus a cache line), learnt from an object whose blocks lie at the
  // class's fixed offsets; 0 while not known. Only read to fetch the room
  // into the cache ahead of its turn.
  mutable std::uint32_t roomSpan = 0;
  // Where those blocks lie from the object's address in an instance whose
  // blocks are at the class's fixed offsets (0: none), learnt with the room
  // from the first such object and forgotten with the slots.
  mutable std::vector<std::int32_t> blockOffsets;
  mutable std::int32_t copyableOffset = 0;
  mutable bool offsetsKnown = false;
  mutable bool layoutLearnt = false;
  void learnRoom(const COSInterface* object) const;

  // The plan of the object's class; `object` answers the child-property test.
  static const ClassCopyPlan& of(const COSInterface* object);
};

}  // namespace sgutils::copy
