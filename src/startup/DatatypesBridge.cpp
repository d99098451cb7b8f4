// The data types library calls of the frame (see DatatypesBridge.h).
#include "src/startup/DatatypesBridge.h"

#include "sgdatatypes/CallbackListeners.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgdatatypes/Registration.h"

namespace sgutils::bridge {

COSPackage* registerNamespace(const char* name, DescriptionFn describe, DescriptionFn details) {
  return graphics::datatype::register_namespace(name, describe, details);
}
void registerDatatype(COSDataType* type) { graphics::datatype::register_datatype(type); }
void initializeDatatypes() { VLInitialize_sgdatatypes(); }
void terminateDatatypes() { VLTerminate_sgdatatypes(); }
COSInterfacePtr createCreateFcnListener() {
  return graphics::datatype::createClassListener("CreateFcn", /*passEventData=*/false, /*allowRecursion=*/false);
}
COSInterfacePtr createButtonDownFcnListener() {
  return graphics::datatype::createClassListener("ButtonDownFcn", /*passEventData=*/true, /*allowRecursion=*/true,
                                                 graphics::datatype::Interruption::Honour);
}
void destroyHandleNumber(double number) noexcept { graphics::datatype::vcos_destroy_handle(number); }
void destroyHandleNumberOf(COSInterface* object) noexcept {
  graphics::datatype::HandleNumberTable::removeObject(object);
}

}  // namespace sgutils::bridge
