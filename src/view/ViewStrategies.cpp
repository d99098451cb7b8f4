// The base strategy and its two kinds.
#include "sgutils/view/LegacyRuntimeViewStrategy.h"
#include "sgutils/view/RuntimeViewStrategy.h"

namespace sgutils {

ViewPropertiesStrategy::~ViewPropertiesStrategy() = default;
void ViewPropertiesStrategy::markDirty(std::string_view name) { tracker_.appendDirtyProperty(name); }
void ViewPropertiesStrategy::markClean() { tracker_.clearDirtyProperties(); }
std::vector<std::string> ViewPropertiesStrategy::getDirtyProperties() const { return tracker_.getDirtyProperties(); }
bool ViewPropertiesStrategy::hasDirtyProperties() const { return tracker_.hasDirtyProperties(); }

// Some classes start with names marked, so that the first update sends them.
RuntimeViewStrategy::RuntimeViewStrategy(std::string className) : className_(std::move(className)) {
  if (className_ == "PasswordField") {
    tracker_.appendDirtyProperty("ChannelID");
  } else if (className_ == "DatePicker") {
    for (const char* name : {"ViewLanguage", "Value", "DisplayFormat"}) tracker_.appendDirtyProperty(name);
  }
  if (className_ != "ContextMenu") tracker_.appendDirtyProperty("ContextMenu");
}

std::unique_ptr<ViewPropertiesStrategy> RuntimeViewStrategy::getInstance(std::string className) {
  return std::make_unique<RuntimeViewStrategy>(std::move(className));
}

LegacyRuntimeViewStrategy::LegacyRuntimeViewStrategy(std::string className) : className_(std::move(className)) {
  if (className_ == "Menu") {
    tracker_.appendDirtyProperty("Position");
  } else if (className_ == "ContextMenu") {
    tracker_.appendDirtyProperty("ObjectID");
  } else if (className_ == "Figure") {
    for (const char* name : {"Uuid", "Visible", "Icon"}) tracker_.appendDirtyProperty(name);
  }
  if (className_ != "ContextMenu") tracker_.appendDirtyProperty("ContextMenu");
}

std::unique_ptr<ViewPropertiesStrategy> LegacyRuntimeViewStrategy::getInstance(const std::string& className) {
  return std::make_unique<LegacyRuntimeViewStrategy>(className);
}

// One final "_I" goes: the internal face and the visible name are one name
// to this view.
void LegacyRuntimeViewStrategy::markDirty(std::string_view name) {
  if (name.ends_with("_I")) name.remove_suffix(2);
  ViewPropertiesStrategy::markDirty(name);
}

}  // namespace sgutils
