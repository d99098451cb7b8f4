#include "src/persistence/LoadedValue.h"

#include <string>

#include "foundation/core/except/IMsgIDException.h"
#include "foundation/log/Logger.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/GraphicsLoader.h"
#include "vcos/COSDataType.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"

using foundation::core::except::IMsgIDException;

namespace sgutils::persistence {

void setLoadedValue(const COSInterfacePtr& object, const COSPropInfo* property, const vxArray* value, std::string_view name) {
  foundation::log::Logger& lg = serializationLog();
  if (lg.isOn(kLoadingPropertyBit)) lg.write(kLoadingPropertyBit, std::string("    Loading property: ").append(name));
  const COSDataTypePtr type = property->getDataType();
  copy::OwnedValue converted;
  if (!copy::passesArrays(type)) {
    try {
      converted = copy::OwnedValue(type, copy::fromArray(type, value));
    } catch (const IMsgIDException&) {
      if (lg.isOn(kFailedConversionBit)) lg.write(kFailedConversionBit, "        Failed datatype conversion");
      return;
    }
  }
  try {
    vcos::omCopyPropertyWithNoPermissionCheck(object, property, converted.has() ? converted.get() : COSValue(value));
  } catch (const IMsgIDException&) {
    if (lg.isOn(kFailedSetBit)) lg.write(kFailedSetBit, std::string("        set.").append(name).append(" failed"));
  }
}

}  // namespace sgutils::persistence
