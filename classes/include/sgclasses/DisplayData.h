// What the command-line display shows of each concrete class: the
// properties of its scalar display and the label in its header.
#pragma once

#include "sgclasses/SgclassesExport.h"

namespace sgclasses {

// Registers the display data of the concrete classes (part of
// registerClasses; calling it again puts back what others replaced).
SGCLASSES_API void registerDisplayData();

}  // namespace sgclasses
