// The output stream of the command line: a std::ostream that writes through
// the output sink, unbuffered, so that it interleaves correctly with utPrintf.
#pragma once

#include <ostream>

#include "foundation/PlatformExport.h"

namespace services::io {

FOUNDATION_API extern std::ostream uout;

}  // namespace services::io
