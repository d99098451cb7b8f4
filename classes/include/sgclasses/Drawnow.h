// Bringing what changed up to date.
#pragma once

#include "sgclasses/SgclassesExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgclasses {

// Takes the objects whose properties changed since the last call (what
// doPostSet marked dirty) and checks each: a line whose data lengths differ
// draws nothing and gives the warning "VANTEL:sgclasses:LineDataLengths"
// once, until its data is valid again. Each object's changed view properties
// go to the registered views (ViewUpdates.h) and are then forgotten.
// Returns the number of objects taken.
SGCLASSES_API std::size_t drawnow();

// Marks an object dirty (what doPostSet calls).
SGCLASSES_API void markDirty(COSInterface* object);

// Drops the marks of deleted objects, whose memory the marks still hold
// (markDirty does it before the queue grows; releaseRoot after the tree goes).
SGCLASSES_API void forgetDeletedDirtyObjects();

}  // namespace sgclasses
