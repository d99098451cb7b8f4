// The data block of "vantel.graphics.internal.GraphicsPropertyHandler": a
// reference object that supports ambiguous property names and carries the
// default and factory value handlers. Its reference stays null until someone
// sets it (its class info does not store it at allocation).
#pragma once

#include "sgutils/lifecycle/SGReference.h"

class COSPropInfo;

class SGUTILS_API SGPropHandler : public SGReference {
 public:
  static COSClass* getClassInstance();
  // Hands a post-set on to the object's Graphics block, for property
  // handlers that are not graphics objects first.
  virtual void doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty);
};
