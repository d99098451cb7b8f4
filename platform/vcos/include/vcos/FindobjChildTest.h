// A route for findobj through the children of a class whose own list
// (COSClassInfo::usesCustomChildrenList) is its raw chain with some children
// left out: the search follows the chain in place and asks a test of each
// child, so no list is built. The library that owns such classes installs a
// lookup; for a parent it gives the test, or one without `listed` when the
// list has to be built (getChildrenOfInstance).
#pragma once

#include "foundation/PlatformExport.h"

class COSClassInfo;
class COSInterface;

namespace vcos {

struct FindobjChildTest {
  // Whether `child`, a child of the parent the test was given for, is listed.
  bool (*listed)(COSInterface* child, unsigned flags) = nullptr;
  // Starts fetching what `listed` reads (may be null).
  void (*prefetch)(const COSInterface* child) noexcept = nullptr;
  // `listed` of `child` and `prefetch` of `ahead` (may be null) in one call,
  // sharing what they learn of a class when both are of one (may be null:
  // the two are called apart).
  bool (*listedFetching)(COSInterface* child, const COSInterface* ahead, unsigned flags) = nullptr;
  unsigned flags = 0;  // handed to `listed`, fixed for one walk of the children
  // The answer holds for every object of the parent's class during one
  // search, so the search asks once per run of objects of one class.
  bool sameForClass = false;
};

using FindobjChildTestLookup = FindobjChildTest (*)(COSClassInfo* info, COSInterface* parent);

// Null: every own list is built.
VCOS_API void setFindobjChildTestLookup(FindobjChildTestLookup lookup) noexcept;

}  // namespace vcos
