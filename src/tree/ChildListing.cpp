// The in-place route of findobj through containers whose Children is the
// raw chain less the children that are not visible.
#include "sgutils/tree/ChildListing.h"

#include "sgutils/tree/ChildStrategy.h"
#include "sgutils/tree/DefaultChildStrategy.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "sgutils/tree/RootInstance.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"
#include "vcos/FindobjChildTest.h"

namespace sgutils {

namespace {

ChildListingLookup listingLookup = nullptr;

constexpr unsigned kWidened = 1;

bool listed(COSInterface* child, unsigned flags) {
  if (flags & kWidened) {
    ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard showAll;
    return ChildStrategy::isChildHandleVisible(child);
  }
  return ChildStrategy::isChildHandleVisible(child);
}

bool listedFetching(COSInterface* child, const COSInterface* ahead, unsigned flags) {
  if (flags & kWidened) {
    ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard showAll;
    return ChildStrategy::isChildHandleVisibleFetching(child, ahead);
  }
  return ChildStrategy::isChildHandleVisibleFetching(child, ahead);
}

vcos::FindobjBlockTest::Answer listedByBlocks(const void* internal, const void* visibility, unsigned flags) noexcept {
  return static_cast<vcos::FindobjBlockTest::Answer>(
      ChildStrategy::visibilityOfBlocks(internal, visibility, (flags & kWidened) != 0));
}

vcos::FindobjBlockTest blockTest(const COSClass* cls) noexcept {
  vcos::FindobjBlockTest test;
  test.cls = cls;
  if (ChildStrategy::visibilityBlockSlots(cls, test.slots[0], test.slots[1])) test.listed = &listedByBlocks;
  return test;
}

bool unlisted(COSInterface*, unsigned) { return false; }

void prefetch(const COSInterface* child) noexcept { ChildStrategy::prefetchVisibility(child); }

// Only the classes whose own list is their Children (the find-all switch
// off) take the route.
vcos::FindobjChildTest childTest(COSClassInfo* info, COSInterface* parent) {
  if (!listingLookup || !dynamic_cast<DefaultFindobjClassInfo*>(info)) return {};
  // A listing is one per class; the root's switch is read once per search
  // (a condition that changes it meanwhile is not seen).
  switch (listingLookup(parent)) {
    case ChildListing::Visible:
      return {&listed, &prefetch, &listedFetching, 0, true, &blockTest};
    case ChildListing::VisibleWidenedByRoot:
      return {&listed, &prefetch, &listedFetching, isListingWidenedByRoot() ? kWidened : 0, true, &blockTest};
    case ChildListing::None:
      return {&unlisted, nullptr, nullptr, 0, true};
    case ChildListing::Built:
      break;
  }
  return {};
}

}  // namespace

void setChildListingLookup(ChildListingLookup lookup) noexcept {
  listingLookup = lookup;
  vcos::setFindobjChildTestLookup(lookup ? &childTest : nullptr);
}

bool isListingWidenedByRoot() {
  return RootInstance::getRootInstance(NullTolerance::Tolerate) && DefaultChildStrategy::isShowHiddenHandlesOn();
}

}  // namespace sgutils
