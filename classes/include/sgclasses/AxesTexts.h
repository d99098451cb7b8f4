// The texts an axes holds for itself: its title and its labels.
#pragma once

#include <array>

#include "sgclasses/SgclassesExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgclasses {

// Title, XLabel and YLabel of `axes` as they are, each null when there is
// none (or when `axes` is no axes). Unlike a read of XLabel or YLabel, which
// makes the label on first use, this makes nothing.
SGCLASSES_API std::array<COSInterfacePtr, 3> axesOwnTexts(COSInterface* axes);

}  // namespace sgclasses
