// Not installed; internal to sgutils.
// The four properties of "vantel.graphics.Graphics", kept in the SGHandle
// block: Internal, ApplicationData, SerializableApplicationData and
// DefaultPropMap_Internal.
#pragma once

class COSClass;

namespace sgutils {
void addGraphicsProperties(COSClass* cls);
}
