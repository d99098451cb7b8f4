// The data types library calls of the frame (see DatatypesBridge.h).
#include "src/startup/DatatypesBridge.h"

#include <string>

#include "vcos/COSDataType.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"
#include "vcos/COSTypeRepository.h"

#if defined(SGUTILS_WITH_DATATYPES)
#include "sgdatatypes/CallbackListeners.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgdatatypes/Registration.h"
#endif

namespace sgutils::bridge {

#if defined(SGUTILS_WITH_DATATYPES)

COSPackage* registerNamespace(const char* name, DescriptionFn describe, DescriptionFn details) {
  return graphics::datatype::register_namespace(name, describe, details);
}
void registerDatatype(COSDataType* type) { graphics::datatype::register_datatype(type); }
void initializeDatatypes() { VLInitialize_sgdatatypes(); }
void terminateDatatypes() { VLTerminate_sgdatatypes(); }
COSInterfacePtr createCreateFcnListener() {
  return graphics::datatype::createClassListener("CreateFcn", /*passEventData=*/false, /*allowRecursion=*/false);
}
void destroyHandleNumber(double number) noexcept { graphics::datatype::vcos_destroy_handle(number); }

#else

namespace {
class CallbackNamespace final : public COSNamespaceInfo {
 public:
  CallbackNamespace(const char* name, DescriptionFn describe, DescriptionFn details)
      : name_(name), describe_(describe), details_(details) {}
  const char* getName() const override { return name_.c_str(); }
  const char* getDescription() const override { return describe_ ? describe_() : ""; }
  const char* getDetails() const override { return details_ ? details_() : ""; }

 private:
  std::string name_;
  DescriptionFn describe_;
  DescriptionFn details_;
};
}  // namespace

COSPackage* registerNamespace(const char* name, DescriptionFn describe, DescriptionFn details) {
  if (COSPackage* existing = COSPackage::getNamespace(name)) return existing;
  return COSPackage::addNamespace(new CallbackNamespace(name, describe, details));
}
void registerDatatype(COSDataType* type) {
  if (!COSTypeRepository::getType(COSID(type->getName()))) COSTypeRepository::addType(type);
}
void initializeDatatypes() {}
void terminateDatatypes() {}
COSInterfacePtr createCreateFcnListener() { return nullptr; }
void destroyHandleNumber(double) noexcept {}

#endif

}  // namespace sgutils::bridge
