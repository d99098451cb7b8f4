// Deleting the children of an object, as clearing a figure or axes does:
// every child is deleted except the ones not saved (Serializable off),
// hidden ones unless `includeHidden`, exempt objects and the ancestors of
// exempt objects, and the owner itself. A failed delete writes "Error in
// delete method" to the output and raises nothing.
#pragma once

#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

struct vxArray;

namespace sgutils {

// Reads the owner's children and deletes them. With `includeHidden`, under
// ScopeShowHiddenHandlesOn, an axes gives them through its method
// "getAllchildChildren" and others through "Children"; without it every
// owner gives its visible "Children".
SGUTILS_API void clearChildren(const COSInterfacePtr& owner, const std::vector<COSInterfacePtr>& exempt,
                               bool includeHidden);
// The deleting step on a given array of children.
SGUTILS_API void deleteChildren(const vxArray* children, const COSInterfacePtr& owner,
                                const std::vector<COSInterfacePtr>& exempt, bool includeHidden);

}  // namespace sgutils
