// The namespace getters. Most packages are made through the data types
// library's register_namespace with two callbacks that answer no
// description; "vantel.ui.layout" and "sg2utils" have namespace infos of
// their own. Each getter caches its package per instance.
#include "sgutils/startup/Namespaces.h"

#include "sgutils/startup/PerInstance.h"
#include "src/startup/DatatypesBridge.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"

namespace {

const char* noDescription() { return "no_description"; }
const char* noDetails() { return "no details"; }

COSPackage* registered(const char* name) { return sgutils::bridge::registerNamespace(name, &noDescription, &noDetails); }

template <class Tag>
COSPackage* cached(const char* name) {
  return sgutils::PerInstance<Tag, COSPackage*>::get([name] { return registered(name); });
}

class UiLayoutNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "vantel.ui.layout"; }
  const char* getDescription() const override { return "Namespace for all the ui layout data"; }
  const char* getDetails() const override { return "no details"; }
};

class SGUtilsPI final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "sg2utils"; }
  const char* getDescription() const override { return "This is the SG Utils VCOS class namespace."; }
};

struct EventDataTag;
struct InternalTag;
struct MixinInternalTag;
struct LayoutTag;
struct MixinTag;
struct ThemeTag;
struct UiLayoutTag;
struct SgutilsTag;
struct GraphicsTag;

}  // namespace

COSPackage* graphics::eventdata::getNamespace() { return cached<EventDataTag>("vantel.graphics.eventdata"); }
COSPackage* graphics::internal::getNamespace() { return cached<InternalTag>("vantel.graphics.internal"); }
COSPackage* graphics::mixin::internal::getNamespace() {
  return cached<MixinInternalTag>("vantel.graphics.mixin.internal");
}
COSPackage* graphics::layout::getNamespace() { return cached<LayoutTag>("vantel.graphics.layout"); }
COSPackage* graphics::mixin::getNamespace() { return cached<MixinTag>("vantel.graphics.mixin"); }
COSPackage* graphics::theme::getNamespace() { return cached<ThemeTag>("vantel.graphics.theme"); }

COSPackage* ui::layout::getNamespace() {
  return sgutils::PerInstance<UiLayoutTag, COSPackage*>::get([] {
    if (COSPackage* p = COSPackage::getNamespace("vantel.ui.layout")) return p;
    return COSPackage::addNamespace(new UiLayoutNamespace);
  });
}

COSPackage* sgutils::getNamespace() {
  return PerInstance<SgutilsTag, COSPackage*>::get([] {
    if (COSPackage* p = COSPackage::getNamespace("sg2utils")) return p;
    COSPackage::addNamespace(new SGUtilsPI);
    return COSPackage::getNamespace("sg2utils");
  });
}

COSPackage* sgutils::getGraphicsNamespace() {
  return PerInstance<GraphicsTag, COSPackage*>::get([] {
    if (COSPackage* p = COSPackage::getNamespace("vantel.graphics")) return p;
    return registered("vantel.graphics");
  });
}

void sgutils::registerDatatype(COSDataType* type) {
  registered("vantel.graphics.primitive.datatype");
  bridge::registerDatatype(type);
}
