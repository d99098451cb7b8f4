#include "sgutils/view/ViewPropertiesManager.h"

#include <string_view>

#include "foundation/core/except/Error.h"
#include "sgutils/view/LegacyRuntimeViewStrategy.h"
#include "sgutils/view/RuntimeViewStrategy.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vx/vx.h"

namespace graphics::mixin {

using foundation::core::except::Error;

namespace {

// The class name after its package.
std::string_view plainName(const COSInterface* object) {
  std::string_view name = object->getClass()->getName();
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? name : name.substr(dot + 1);
}

}  // namespace

bool ViewPropertiesManager::isCustomComponent(const COSInterface* self) {
  static const COSID container("lyt.Container");
  static const COSID componentContainer("vantel.ui.componentcontainer.ComponentContainer");
  const COSClass* cls = self->getClass();
  return cls->isSubclassOf(container) || cls->isSubclassOf(componentContainer);
}

bool ViewPropertiesManager::isVantelComponent(const COSInterface* self) {
  static const COSID model("appforgeservices.internal.interfaces.model.AbstractModel");
  return self->getClass()->isSubclassOf(model);
}

bool ViewPropertiesManager::isAppBuildingFigure(const COSInterfacePtr& object) {
  if (!object || plainName(object.get()) != "Figure") return false;
  static const COSID name("HasAppBuildingDefaults");
  // A figure class without the property is no app-building figure.
  const COSPropInfo* property = object->findPropertyInfo(name);
  if (!property) return false;
  const COSClient* client = COSGetPublicClient();
  COSValue value = object->getPropertyValue(client, property);
  const bool found = value.asPointer<const void>() != nullptr;
  object->releasePropertyValue(client, property, value);
  return found;
}

bool ViewPropertiesManager::isInAppBuildingFigure(COSInterface* self) {
  COSInterface* node = self;
  while (plainName(node) != "Figure" && node->getOwnerObject()) node = node->getOwnerObject();
  return isAppBuildingFigure(COSInterfacePtr(node));
}

void ViewPropertiesManager::setStrategy(COSInterface* self) {
  if (strategy_) return;
  const std::string name(plainName(self));
  const bool custom = isCustomComponent(self);
  if (!custom)
    strategy_ = isVantelComponent(self) ? sgutils::RuntimeViewStrategy::getInstance(name)
                                        : sgutils::LegacyRuntimeViewStrategy::getInstance(name);
  cacheReady_ = !custom;
}

void ViewPropertiesManager::markViewPropertyDirty(COSInterface* self, std::string_view name) {
  setStrategy(self);
  if (strategy_) strategy_->markDirty(name);
}

void ViewPropertiesManager::markViewPropertiesDirty(COSInterface* self, const vxArray* names) {
  setStrategy(self);
  if (!names || !vxIsCell(names)) throw Error("VANTEL:sgutils:NotCellArray");
  const std::size_t n = vxGetNumberOfElements(names);
  for (std::size_t i = 0; i < n; ++i) {
    const vxArray* entry = vxGetCell(names, i);
    const std::string name = entry ? vxArrayToStdString(entry) : std::string();
    if (strategy_) strategy_->markDirty(name);
  }
}

std::vector<std::string> ViewPropertiesManager::getDirtyPropertyStrings() const {
  return strategy_ ? strategy_->getDirtyProperties() : std::vector<std::string>();
}

vxArray* ViewPropertiesManager::getDirtyProperties() const {
  if (!strategy_) return nullptr;
  const std::vector<std::string> names = strategy_->getDirtyProperties();
  vxArray* out = vxCreateStringArray(1, names.size());
  for (std::size_t i = 0; i < names.size(); ++i)
    vxSetStringElement(out, i, std::u16string(names[i].begin(), names[i].end()));
  return out;
}

}  // namespace graphics::mixin
