// A factory value that is the data type's own default, copied through the
// type.
#pragma once

#include "sgutils/propinfos/DefaultProvider.h"
#include "vcos/COSDataTypePtr.h"

namespace sgutils {

class SGUTILS_API DataTypeDefaultProvider : public DefaultProvider {
 public:
  explicit DataTypeDefaultProvider(COSDataTypePtr type) : type_(std::move(type)) {}
  ~DataTypeDefaultProvider() override;

 private:
  COSValue getDefault() override;
  COSDataTypePtr type_;
};

}  // namespace sgutils
