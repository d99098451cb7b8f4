// The hand-written half of Legacy: EraseMode, which only warns and hands
// on to SG1Erase.
#include "sgutils/objects/Legacy.gen.h"

#include "foundation/i18n/Message.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vx/vxError.h"

namespace graphics::internal {

namespace {

void warnEraseModeIgnored(const COSPropInfo* property) {
  vxWarningMsgId(i18n::Message("VANTEL:sg:EraseModeIgnored", property->getName()));
}

}  // namespace

COSValue Legacy::getEraseModeImpl(COSPropInfo* property, const COSClient*, COSInterface*) {
  warnEraseModeIgnored(property);
  // The caller releases what a get gives; the enumeration's copy is free.
  const auto mode = getSG1Erase();
  return property->getDataType()->copy(COSValue(&mode));
}

void Legacy::setEraseModeImpl(COSPropInfo* property, const COSClient*, COSInterface*, COSValue value) {
  warnEraseModeIgnored(property);
  const auto mode = value.isEmpty() ? graphics::datatype::EraseMode::Normal
                                    : *value.asPointer<const graphics::datatype::EraseMode>();
  setSG1Erase(mode, graphics::datatype::PublicClient);
}

}  // namespace graphics::internal
