// The pools that instances and data blocks come from keep the empty slabs
// of recent deletions, up to 64 MiB in all, so that objects made again reuse
// pages that are there already. This gives those back to the system, as
// malloc_trim does for the heap (after a mass deletion that will not be
// followed by as many new objects).
#pragma once

#include "foundation/PlatformExport.h"

namespace vcos {

VCOS_API void releaseKeptSlabs() noexcept;

}  // namespace vcos
