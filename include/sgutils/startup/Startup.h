// The two plain entry points of the library. The environment calls
// VLInitialize_sgutils once per interpreter instance (more calls are
// harmless); it registers the features, the namespaces and a class info for
// each class of the library. VLTerminate_sgutils shuts down the data types
// library if this instance started it, and nothing else: classes stay.
#pragma once

#include "sgutils/SgutilsExport.h"

extern "C" {
SGUTILS_API void VLInitialize_sgutils();
SGUTILS_API void VLTerminate_sgutils();
}

namespace sgutils {
// The per-instance init flag: 0 before the class registration of this
// instance has run, 1 after.
SGUTILS_API unsigned char initFlag();
}  // namespace sgutils
