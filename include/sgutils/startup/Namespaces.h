// The getters of the library's class namespaces. Each returns the package,
// made on first use, and caches it per interpreter instance (PerInstance.h).
// "vantel.graphics" itself has no getter: start-up registers it first.
#pragma once

#include "sgutils/SgutilsExport.h"

class COSDataType;
class COSPackage;

namespace graphics::eventdata {
SGUTILS_API COSPackage* getNamespace();  // "vantel.graphics.eventdata"
}
namespace graphics::internal {
SGUTILS_API COSPackage* getNamespace();  // "vantel.graphics.internal"
}
namespace graphics::mixin::internal {
SGUTILS_API COSPackage* getNamespace();  // "vantel.graphics.mixin.internal"
}
namespace graphics::layout {
SGUTILS_API COSPackage* getNamespace();  // "vantel.graphics.layout"
}
namespace graphics::mixin {
SGUTILS_API COSPackage* getNamespace();  // "vantel.graphics.mixin"
}
namespace graphics::theme {
SGUTILS_API COSPackage* getNamespace();  // "vantel.graphics.theme"
}
namespace ui::layout {
SGUTILS_API COSPackage* getNamespace();  // "vantel.ui.layout"
}
namespace sgutils {
SGUTILS_API COSPackage* getNamespace();  // "sg2utils"
// The package "vantel.graphics", registered on first use.
SGUTILS_API COSPackage* getGraphicsNamespace();
// Registers a data type (taken) under "vantel.graphics.primitive.datatype".
SGUTILS_API void registerDatatype(COSDataType* type);
}  // namespace sgutils
