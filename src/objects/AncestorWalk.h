// Not installed. The nearest object of a class on the way up the owner
// links. A small local walk for the mixins that need one (the context menu's
// figure, the current axes); the object tree's own ancestor search is to
// take its place.
#pragma once

#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"

namespace sgutils::detail {

// `start` itself counts. Null when no object on the way is of the class.
inline COSInterface* nearestOfClass(COSInterface* start, COSID classId) noexcept {
  for (COSInterface* at = start; at; at = at->getOwnerObject())
    if (at->getClass() && at->getClass()->isSubclassOf(classId)) return at;
  return nullptr;
}

}  // namespace sgutils::detail
