// Mixed into a class info to say that the class's meta class is a custom one.
// The class system asks getMetaClassClassID once, when it builds the class.
#pragma once

#include "vcos/COSInternedBase.h"

class VCOS_API COSUseCustomMetaData {
 public:
  virtual ~COSUseCustomMetaData();
  // The full name of the meta class (a class whose info is a
  // COSCustomMetaClass deriving from "meta.class").
  virtual COSID getMetaClassClassID() const = 0;
};
