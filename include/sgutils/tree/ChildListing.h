// How a container's Children chooses its children, told to walks that visit
// the tree in place instead of building the list: findobj then follows the
// raw chain, newest first, and tests each child exactly as the Children read
// would, building no list.
#pragma once

#include "sgutils/SgutilsExport.h"

class COSInterface;

namespace sgutils {

enum class ChildListing : unsigned char {
  Built,                 // only the list itself knows: build it
  None,                  // no Children: the object has no children for a search
  Visible,               // the children visible now (collectChildrenDefault)
  VisibleWidenedByRoot,  // the same, hidden ones too while the root's ShowHiddenHandles is on
};

// The listing of an instance's Children; the same for every instance of a
// class.
using ChildListingLookup = ChildListing (*)(COSInterface* instance);

// Installs the lookup of the library that owns the containers and routes
// findobj through it; null takes the route away (every list is built).
SGUTILS_API void setChildListingLookup(ChildListingLookup lookup) noexcept;

// Whether lists widened by the root take hidden children now: a root exists
// and its ShowHiddenHandles is on.
SGUTILS_API bool isListingWidenedByRoot();

}  // namespace sgutils
