// All data types by name, and the conversions between them. The basic types
// exist from the start; class-typed names ("<class>", "<class> scalar",
// "<class> vector", "<class> matrix") are made on first request for any
// class that exists.
#pragma once

#include "vcos/COSDataTypePtr.h"

class COSDataType;
class COSTypeConversion;

class VCOS_API COSTypeRepository {
 public:
  // Null when there is no such type.
  static COSDataTypePtr getType(COSID id);
  // Registers a type (the repository holds a reference). Raises
  // "VANTEL:vcos:ExistingName" when the name is taken.
  static void addType(COSDataType* type);
  // Null when there is no conversion.
  static COSTypeConversion* getConversion(COSID from, COSID to);
  // Takes the conversion; replaces one already there.
  static void addConversion(COSID from, COSID to, COSTypeConversion* conversion);
  static void removeConversion(COSID from, COSID to);
  // The conversion between `type` and arrays ("any"): to arrays when
  // `toArray`, else from them. A type that is not array-valued, holds
  // objects and has no conversion of its own uses the plain handle one
  // ("handle scalar"). Null when there is none.
  static COSTypeConversion* getArrayConversion(const COSDataType& type, bool toArray);
};
