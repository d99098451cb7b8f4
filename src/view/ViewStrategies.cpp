// The base strategy and its two kinds.
#include "sgutils/view/LegacyRuntimeViewStrategy.h"
#include "sgutils/view/RuntimeViewStrategy.h"

namespace sgutils {

ViewPropertiesStrategy::~ViewPropertiesStrategy() = default;
void ViewPropertiesStrategy::markDirty(COSID name) { tracker_.appendDirtyProperty(name); }
void ViewPropertiesStrategy::markClean() { tracker_.clearDirtyProperties(); }
std::vector<std::string> ViewPropertiesStrategy::getDirtyProperties() const { return tracker_.getDirtyProperties(); }
bool ViewPropertiesStrategy::hasDirtyProperties() const { return tracker_.hasDirtyProperties(); }

namespace {

// The name every strategy but a context menu's starts with, interned once.
COSID contextMenuName() {
  static const COSID id("ContextMenu");
  return id;
}

}  // namespace

// Some classes start with names marked, so that the first update sends them.
RuntimeViewStrategy::RuntimeViewStrategy(std::string className) : className_(std::move(className)) {
  if (className_ == "PasswordField") {
    tracker_.appendDirtyProperty("ChannelID");
  } else if (className_ == "DatePicker") {
    for (const char* name : {"ViewLanguage", "Value", "DisplayFormat"}) tracker_.appendDirtyProperty(name);
  }
  if (className_ != "ContextMenu") tracker_.appendDirtyProperty(contextMenuName());
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
  if (className_ != "ContextMenu") tracker_.appendDirtyProperty(contextMenuName());
}

std::unique_ptr<ViewPropertiesStrategy> LegacyRuntimeViewStrategy::getInstance(const std::string& className) {
  return std::make_unique<LegacyRuntimeViewStrategy>(className);
}

// One final "_I" goes: the internal face and the visible name are one name
// to this view. The visible name's id is interned at the first mark of an
// internal name and kept for the next mark of the same one.
void LegacyRuntimeViewStrategy::markDirty(COSID name) {
  std::string_view text = name.str();
  if (text.ends_with("_I")) {
    thread_local COSID lastInternal;
    thread_local COSID lastVisible;
    if (name != lastInternal) {
      text.remove_suffix(2);
      lastVisible = COSID(text);
      lastInternal = name;
    }
    name = lastVisible;
  }
  ViewPropertiesStrategy::markDirty(name);
}

}  // namespace sgutils
