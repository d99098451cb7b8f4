// The typed pointer to a data type; built from a type name, a general
// pointer, or empty.
#pragma once

#include "vcos/COSSpecializedInterfacePtr.h"

class COSDataType;

struct VCOS_API COSDataTypePtrHelper {
  static COSDataType* getObject(const COSInterfacePtr& p) noexcept;
};

class VCOS_API COSDataTypePtr : public COSSpecializedInterfacePtr<COSDataType, COSDataTypePtrHelper> {
 public:
  using Base = COSSpecializedInterfacePtr<COSDataType, COSDataTypePtrHelper>;
  COSDataTypePtr() noexcept = default;
  COSDataTypePtr(std::nullptr_t) noexcept {}
  // Finds the type by name in the repository; raises
  // "VANTEL:vcos:UnknownType" if there is none.
  explicit COSDataTypePtr(const char* typeName);
  explicit COSDataTypePtr(COSID typeId);
  explicit COSDataTypePtr(const COSInterfacePtr& p) : Base(p) {}
  explicit COSDataTypePtr(COSDataType* type);

  // The interned name of the type; empty for an empty pointer.
  COSID getID() const noexcept;
};
