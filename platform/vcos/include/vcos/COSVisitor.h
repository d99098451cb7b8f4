// A visitor over the properties of a class: COSClass::acceptPropertyVisitor
// hands it the properties that each class of the ancestry defines, the class
// itself first. A property overridden in a subclass arrives once for each
// class that defines it; visitors that want one visit per name keep track.
#pragma once

#include "foundation/PlatformExport.h"

class COSClass;
class COSPropInfo;

class VCOS_API COSVisitor {
 public:
  virtual ~COSVisitor();
  // False stops the walk.
  virtual bool visitProperty(COSClass* definingClass, COSPropInfo* property) = 0;
};
