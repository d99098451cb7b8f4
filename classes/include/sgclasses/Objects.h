// Making graphics objects and finding the current ones.
#pragma once

#include <span>

#include "sgclasses/SgclassesExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace sgclasses {

// The root of the object tree, made on first use.
SGCLASSES_API COSInterfacePtr root();

// A new object of `className` hooked below `parent` (taking its ancestors'
// defaults), then given the name-value pairs in order.
SGCLASSES_API COSInterfacePtr create(const char* className, const COSInterfacePtr& parent,
                                     std::span<const vxArray* const> pairs = {});

// The current figure and axes; with `make` true a missing one is made (a
// figure under the root, an axes in the current figure), else null.
SGCLASSES_API COSInterfacePtr currentFigure(bool make);
SGCLASSES_API COSInterfacePtr currentAxes(bool make);
// Makes `object` (a figure or axes) the current one of its parent.
SGCLASSES_API void makeCurrent(const COSInterfacePtr& object);

}  // namespace sgclasses
