// A route for findobj through the children of a class whose own list
// (COSClassInfo::usesCustomChildrenList) is its raw chain with some children
// left out: the search follows the chain in place and asks a test of each
// child, so no list is built. The library that owns such classes installs a
// lookup; for a parent it gives the test, or one without `listed` when the
// list has to be built (getChildrenOfInstance).
#pragma once

#include "foundation/PlatformExport.h"

class COSClass;
class COSClassInfo;
class COSInterface;

namespace vcos {

// `listed` for the children of one class as a function of two of their data
// blocks that reads them and nothing else, runs no code and takes no
// reference: the search finds the blocks by their index in the class's
// block table (-1: none, handed over as null) and makes no call per child
// but this one. Used for a live child of that class with no properties
// added at run time; `listed` serves the others, and a child the blocks
// cannot answer for (Ask).
struct FindobjBlockTest {
  enum Answer : signed char { No = 0, Yes = 1, Ask = -1 };
  const COSClass* cls = nullptr;  // the class it was made for
  int slots[2] = {-1, -1};
  // Null: the class has none.
  Answer (*listed)(const void* first, const void* second, unsigned flags) noexcept = nullptr;
};

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
  // The block test for children of `cls` (may be null: none for any class).
  FindobjBlockTest (*blockTest)(const COSClass* cls) noexcept = nullptr;
};

// Runs no code that could change the tree: the search may hold the children
// it walks by plain pointers while it asks.
using FindobjChildTestLookup = FindobjChildTest (*)(COSClassInfo* info, COSInterface* parent);

// Null: every own list is built.
VCOS_API void setFindobjChildTestLookup(FindobjChildTestLookup lookup) noexcept;

}  // namespace vcos
