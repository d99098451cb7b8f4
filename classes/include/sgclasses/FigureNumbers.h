// Figures by their Number: figure(n) selects figure n, or makes it.
#pragma once

#include <span>

#include "sgclasses/SgclassesExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace sgclasses {

// The live figure of the root whose Number is `number`, else null.
SGCLASSES_API COSInterfacePtr findFigure(double number);

// Figure `number` (a positive integer), made with that number and the pairs
// when no figure holds it, else given the pairs; either way it becomes the
// current figure.
SGCLASSES_API COSInterfacePtr figureNumbered(double number, std::span<const vxArray* const> pairs = {});

}  // namespace sgclasses
