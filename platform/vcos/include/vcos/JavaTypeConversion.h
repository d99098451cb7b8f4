// Conversions at the foreign-object boundary, by target type id.
#pragma once

#include "vcos/COSInternedBase.h"

class COSTypeConversion;

class VCOS_API JavaTypeConversion {
 public:
  // Takes the conversion; replaces one already there.
  static void addConversion(COSID id, COSTypeConversion* conversion);
  static COSTypeConversion* getConversion(COSID id);
  static void removeConversion(COSID id);
};
