// Bringing what changed up to date.
#pragma once

#include "sgclasses/SgclassesExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgclasses {

// Takes the objects whose properties changed since the last call (what
// doPostSet marked dirty) and checks each: a line whose data lengths differ
// draws nothing and gives the warning "VANTEL:sgclasses:LineDataLengths"
// once, until its data is valid again. Returns the number of objects taken.
SGCLASSES_API std::size_t drawnow();

// Marks an object dirty (what doPostSet calls).
SGCLASSES_API void markDirty(COSInterface* object);

}  // namespace sgclasses
