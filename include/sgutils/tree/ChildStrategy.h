// The rules for a list of children: what counts as a list, which children
// are visible, which may be saved, and what a legal reorder is. A strategy
// applies a new list (processNewListOfChildren); it holds no state, so one
// instance may serve any number of managers.
//
// Visibility: a child is visible when it is live, carries no dynamic
// "FormbenchFigure" property, has a "HandleVisibility", is not Internal, and
// either the internal switch (ShowHiddenHandlesInternal) is on, or its
// visibility is "on" (0), or it is "callback" (1) and a callback runs (the
// root's CallbackObject is set, or there is no root).
#pragma once

#include <memory>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/Mprotected_vxArray.h"

class COSClass;
struct vxArray;

namespace sgutils {

class ChildManager;

using ChildList = std::vector<COSInterfacePtr>;

class SGUTILS_API ChildStrategy {
 public:
  virtual ~ChildStrategy();
  // Applies `newList` (the user's order) against `oldList` (the children the
  // manager judges against).
  virtual void processNewListOfChildren(ChildManager* manager, const ChildList& newList,
                                        const ChildList& oldList) = 0;

  static std::shared_ptr<ChildStrategy> createDefaultChildStrategy();

  // An object array for a user's value: an empty value gives an empty
  // placeholder array, an object array a shared copy, numbers their objects
  // through the numeric handles. Anything else, or a number that is no
  // handle, raises "VANTEL:sg:BadChildren".
  static Mprotected_vxArray convertToCOSArray(const vxArray* array);
  // A new column of the objects (class narrowed to what they share), or an
  // empty placeholder array for an empty list.
  static vxArray* createVxArrayFromCOSInterfaceVector(const ChildList& list);
  // The elements of an object array; null or empty gives none; a non-object
  // array raises "VANTEL:sg:BadChildren".
  static ChildList pushVxArrayEntriesIntoVector(const vxArray* array);
  static bool isChildHandleVisible(const COSInterfacePtr& child);
  // The same for a child the caller holds (a walk's current child), without
  // taking a reference of its own.
  static bool isChildHandleVisible(COSInterface* child);
  // Starts fetching the memory that isChildHandleVisible reads for `child`,
  // for a walk that tests a few children ahead.
  static void prefetchVisibility(const COSInterface* child) noexcept;
  // isChildHandleVisible(child), having started to fetch what the test of
  // `ahead` (a child a few places on, or null) reads: the answers kept for
  // the class are looked up once when both are of one class.
  static bool isChildHandleVisibleFetching(COSInterface* child, const COSInterface* ahead);
  // The visibility test as plain reads of two data blocks, for a walk that
  // finds them by index once per class: the indexes in the blocks of `cls`
  // (false: the test of that class is not made of plain reads), then the
  // answer for a live child without run-time properties from those blocks
  // (null where it has none): 1 visible, 0 not, -1 only
  // isChildHandleVisible can tell (a child shown during callbacks).
  // `showHidden`: hidden handles count as visible. Neither runs any code.
  static bool visibilityBlockSlots(const COSClass* cls, int& internalSlot, int& handleVisibilitySlot) noexcept;
  static int visibilityOfBlocks(const void* internalBlock, const void* handleVisibilityBlock, bool showHidden) noexcept;
  // A direct read of the "HandleVisibility" that the class `definingClass`
  // keeps in a member of its block (0 on, 1 callback, 2 off), answering what
  // the property's getValue answers, so the visibility test of a walk does
  // not go through the generic property path. It is handed the object's
  // block of `definingClass` (found by an index kept per class). Installed
  // once at start-up by the library that defines the property; null removes it.
  using HandleVisibilityReader = unsigned char (*)(const void* block) noexcept;
  static void setHandleVisibilityReader(COSID definingClass, HandleVisibilityReader reader) noexcept;
  // Whether the child's "Serializable" is on (false without the property).
  static bool isChildSerializable(const COSInterfacePtr& child);

 protected:
  // A user-interface component ("vantel.ui.control.Component").
  static bool isChildGBTObject(const COSInterfacePtr& child);
  // Not null and not a component.
  static bool isChildNotGBTObject(const COSInterfacePtr& child);
  // Every visible old child is in `newList` and every member of `newList`
  // is in `oldList` (a rule of sets: hidden children may be left out,
  // duplicates are not detected).
  static bool isValidPermutation(const ChildList& newList, const ChildList& oldList);
  // Components lead the list: none stands behind an ordinary object.
  static bool isScreenPermittedPermutation(const ChildList& newList);
};

}  // namespace sgutils
