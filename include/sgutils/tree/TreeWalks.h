// Walks up the object tree: the parent of an object, and its nearest or
// topmost ancestor of a class. A class test matches an object that is not
// null, not deleted, and is or derives from one of the non-null classes; an
// object matches its own class.
#pragma once

#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

class COSClass;

namespace sgutils {

// With `useTreeLink` the owner in the object tree; otherwise the object's
// "Parent" property read as the public client (an object array gives its
// first element, a double -1 or an empty value null, another double goes
// through the numeric handle conversion). Null without such a property or
// for a deleted object.
SGUTILS_API COSInterfacePtr getParent(const COSInterfacePtr& object, bool useTreeLink);

// The object itself or its nearest ancestor of one of the classes, or null.
SGUTILS_API COSInterfacePtr getAncestor(const COSInterfacePtr& object, const COSClass* cls, bool useTreeLink);
SGUTILS_API COSInterfacePtr getAncestor(const COSInterfacePtr& object, const std::vector<const COSClass*>& classes,
                                        bool useTreeLink);
// The topmost object of one of the classes on the way up from `object`
// (the object included), or null.
SGUTILS_API COSInterfacePtr getTopLevelAncestor(const COSInterfacePtr& object,
                                                const std::vector<const COSClass*>& classes, bool useTreeLink);

// Whether `object` is live and of one of the classes.
SGUTILS_API bool isOfAnyClass(const COSInterfacePtr& object, const std::vector<const COSClass*>& classes);

}  // namespace sgutils
