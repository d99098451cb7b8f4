// The data block of "vantel.graphics.internal.GraphicsPropertyHandler": a
// reference object that supports ambiguous property names and carries the
// default and factory value handlers. Its reference stays null until someone
// sets it (its class info does not store it at allocation).
#pragma once

#include "sgutils/SGReference.h"

class SGUTILS_API SGPropHandler : public SGReference {
 public:
  static COSClass* getClassInstance();
};
