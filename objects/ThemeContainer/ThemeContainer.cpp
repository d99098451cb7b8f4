// The hand-written half of ThemeContainer: the conversion of a value given
// to Theme, the answer to the appearance settings, the application of a
// theme down the tree with its ThemeChanged event, and the saved form.
#include "sgutils/objects/ThemeContainer.gen.h"

#include <utility>

#include "foundation/core/except/Error.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/objects/KeptBlockSlots.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/themes/ThemeChangedEventData.h"
#include "sgutils/themes/ThemeSettings.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace graphics::mixin {

using foundation::core::except::Error;
using graphics::datatype::AutoManual;
using graphics::theme::GraphicsTheme;

namespace {

bool isLive(const COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

bool isText(const vxArray* value) {
  return vxIsChar(value) || (vxIsString(value) && vxGetNumberOfElements(value) == 1);
}

// The theme object a value names, or null for empty text or an empty value.
COSInterfacePtr themeIn(const vxArray* value) {
  if (!value) return {};
  if (isText(value)) {
    const std::string name = vxArrayToStdString(value);
    if (name.empty()) return {};
    matrix::unique_vxArray made(GraphicsTheme::builtinThemeFactory(name));
    if (!made) throw Error("VANTEL:graphics:themes:UIThemeManagerDarkOrLight");
    return omGetArrayElement(made.get(), 0);
  }
  if (omIsVCOS(value) && vxGetNumberOfElements(value) == 1) {
    COSInterfacePtr element = omGetLiveArrayElement(value, 0);
    if (element && GraphicsTheme::fromObject(element)) return element;
  }
  if (vxIsEmpty(value)) return {};
  throw Error("VANTEL:graphics:themes:InvalidThemeObject");
}

COSInterfacePtr builtinTheme(bool dark) {
  matrix::unique_vxArray made(GraphicsTheme::builtinThemeFactory(dark));
  return omGetArrayElement(made.get(), 0);
}

std::string textField(const vxArray* value, const char* name) {
  const vxArray* field = vxGetField(value, 0, name);
  return field && isText(field) ? vxArrayToStdString(field) : std::string();
}

}  // namespace

ThemeContainer* ThemeContainer::fromObject(const COSInterface* object) noexcept {
  if (!object) return nullptr;
  // Asked of every object made and of each ancestor up to its figure: the
  // block's index is kept per class.
  static sgutils::KeptBlockSlots<4> slots;
  void* block = slots.blockOf(object, classID());
  return block ? static_cast<ThemeContainer*>(static_cast<SGReference*>(block)) : nullptr;
}

COSValue ThemeContainer::getThemeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(isLive(theme_.get()) ? omCreateVCOSScalar(theme_)
                                       : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
}

void ThemeContainer::setThemeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  // An invalid value is refused before anything is stored, even with themes off.
  COSInterfacePtr theme = themeIn(value.asPointer<const vxArray>());
  if (!sgutils::themes::anyFigureThemesOn() && !alwaysUseDesktopTheme_) return;
  // A theme given from outside is the user's: preference changes pass it by.
  const AutoManual oldMode = getThemeMode();
  const auto setModeItself = [this](AutoManual mode) {
    const bool was = std::exchange(settingModeItself_, true);
    setThemeMode(mode, graphics::datatype::PrivateClient);
    settingModeItself_ = was;
  };
  setModeItself(AutoManual::Manual);
  try {
    changeTheme(std::move(theme));
  } catch (...) {
    // A change that could not be made leaves the mode as it was too.
    if (isLive(getCOSObject())) setModeItself(oldMode);
    throw;
  }
}

void ThemeContainer::respondToThemePreferences() {
  if (getThemeMode() == AutoManual::Manual) return;
  const sgutils::BaseColorSchemeType desktop = sgutils::themes::desktopThemeSetting();
  bool dark = desktop.isDark();
  if (!alwaysUseDesktopTheme_) {
    if (!sgutils::themes::automaticFigureThemesOn()) return;
    dark = sgutils::themes::computeAutoTheme(desktop).isDark();
  }
  // The built-in theme of that style is there already: nothing changes.
  if (GraphicsTheme* current = isLive(theme_.get()) ? GraphicsTheme::fromObject(theme_) : nullptr;
      current && current->getBaseColorStyle().isDark() == dark)
    return;
  changeTheme(builtinTheme(dark));
}

void ThemeContainer::alwaysUseDesktopTheme(bool flag) {
  alwaysUseDesktopTheme_ = flag;
  // Off: the theme stays until the preferences next change.
  if (!flag) return;
  {
    // The theme of the desktop follows here, whatever the mode's own answer would be.
    const bool was = std::exchange(settingModeItself_, true);
    setThemeMode(AutoManual::Auto, graphics::datatype::PrivateClient);
    settingModeItself_ = was;
  }
  changeTheme(builtinTheme(sgutils::themes::desktopThemeSetting().isDark()));
}

void ThemeContainer::doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  Mixin::doPostSet(object, property, limitsDirty, objectDirty);
  static const COSID themeMode("ThemeMode");
  // Only a change reaches here: manual back to auto.
  if (property && !settingModeItself_ && property->getID() == themeMode && getThemeMode() == AutoManual::Auto)
    respondToThemePreferences();
}

void ThemeContainer::changeTheme(COSInterfacePtr theme) {
  COSInterface* object = getCOSObject();
  if (theme.get() == theme_.get() || !isLive(object)) return;
  COSInterfacePtr previous = std::exchange(theme_, std::move(theme));
  // All or nothing: a walk that raises takes its values back, and the
  // container keeps the theme it had.
  if (isLive(theme_.get())) {
    try {
      sgutils::themes::applyThemeToSubtree(COSInterfacePtr(object), sgutils::themes::ThemeInfo(theme_), true);
    } catch (...) {
      theme_ = std::move(previous);
      throw;
    }
  }
  // Once per change, after the tree has its new values, with the new and the
  // previous theme; ThemeChangedFcn runs from it.
  graphics::eventdata::fireThemeChangedEvent(COSInterfacePtr(object),
                                             graphics::eventdata::ThemeChangedDataImpl(theme_, previous));
}

void ThemeContainer::startApplyingTheme(const COSInterfacePtr& object) const {
  if (!sgutils::themes::anyFigureThemesOn() && !alwaysUseDesktopTheme_) return;
  startApplyingTheme(object, theme_);
}

void ThemeContainer::startApplyingTheme(const COSInterfacePtr& object, const COSInterfacePtr& theme) {
  if (!isLive(theme.get()) || !isLive(object.get())) return;
  sgutils::themes::applyThemeToSubtree(object, sgutils::themes::ThemeInfo(theme));
}

matrix::unique_vxArray ThemeContainer::serializableTheme() const {
  const char* fields[] = {"ThemeMode"};
  matrix::unique_vxArray saved(vxCreateStructMatrix(1, 1, 1, fields));
  vxSetField(saved.get(), 0, "ThemeMode", vxCreateString(getThemeMode() == AutoManual::Manual ? "manual" : "auto"));
  if (const GraphicsTheme* theme = isLive(theme_.get()) ? GraphicsTheme::fromObject(theme_) : nullptr) {
    const int field = vxAddField(saved.get(), "LightOrDark");
    vxSetFieldByNumber(saved.get(), 0, field,
                       vxCreateString(const_cast<GraphicsTheme*>(theme)->getBaseColorStyle().isDark() ? "dark"
                                                                                                       : "light"));
  }
  return saved;
}

void ThemeContainer::restoreSerializableTheme(const vxArray* value) {
  if (!value || !vxIsStruct(value) || vxGetNumberOfElements(value) < 1 || vxGetNumberOfFields(value) < 1) return;
  const std::string mode = textField(value, "ThemeMode");
  if (mode != "manual") return;
  const std::string style = textField(value, "LightOrDark");
  if (style.empty()) return;
  // A saved manual theme is the built-in theme of its style.
  changeTheme(builtinTheme(style == "dark"));
  const bool was = std::exchange(settingModeItself_, true);
  setThemeMode(AutoManual::Manual, graphics::datatype::PrivateClient);
  settingModeItself_ = was;
}

COSValue ThemeContainer::getSerializableThemeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(serializableTheme().release());
}

void ThemeContainer::setSerializableThemeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  restoreSerializableTheme(value.asPointer<const vxArray>());
}

}  // namespace graphics::mixin
