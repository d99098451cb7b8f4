// The figure's Theme: a theme object, the text "light" or "dark" (any case),
// or empty for none. Setting it re-colours every themed property in the
// figure's tree whose mode is auto; new children take it when parented.
#include "sgclasses/Theming.h"

#include <utility>
#include <vector>

#include "sgclasses/Objects.h"

#include "foundation/core/except/Error.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/themes/ThemeChangedEventData.h"
#include "sgutils/themes/ThemeSettings.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgclasses {

using foundation::core::except::Error;
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

}  // namespace

COSValue Figure::getThemeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(isLive(theme_.get()) ? omCreateVCOSScalar(theme_)
                                       : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
}

void Figure::setThemeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  // An invalid value is refused before anything is stored, even with themes off.
  COSInterfacePtr theme = themeIn(value.asPointer<const vxArray>());
  if (!sgutils::themes::anyFigureThemesOn() && !alwaysUseDesktopTheme_) return;
  // A theme given from outside is the user's: preference changes pass it by.
  setThemeMode(graphics::datatype::AutoManual::Manual, graphics::datatype::PrivateClient);
  changeTheme(std::move(theme));
}

void Figure::respondToThemePreferences() {
  if (getThemeMode() == graphics::datatype::AutoManual::Manual) return;
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
  matrix::unique_vxArray made(GraphicsTheme::builtinThemeFactory(dark));
  changeTheme(omGetArrayElement(made.get(), 0));
}

void Figure::alwaysUseDesktopTheme(bool flag) {
  alwaysUseDesktopTheme_ = flag;
  // Off: the theme stays until the preferences next change.
  if (!flag) return;
  {
    // The theme of the desktop follows here, whatever the mode's own answer would be.
    const bool was = std::exchange(settingModeItself_, true);
    setThemeMode(graphics::datatype::AutoManual::Auto, graphics::datatype::PrivateClient);
    settingModeItself_ = was;
  }
  matrix::unique_vxArray made(GraphicsTheme::builtinThemeFactory(sgutils::themes::desktopThemeSetting().isDark()));
  changeTheme(omGetArrayElement(made.get(), 0));
}

void Figure::doPostSet(COSInterfacePtr object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  GraphicsContainer::doPostSet(object, property, limitsDirty, objectDirty);
  static const COSID themeMode("ThemeMode");
  // Only a change reaches here: manual back to auto.
  if (property && !settingModeItself_ && property->getID() == themeMode &&
      getThemeMode() == graphics::datatype::AutoManual::Auto)
    respondToThemePreferences();
}

void Figure::changeTheme(COSInterfacePtr theme) {
  COSInterface* object = getCOSObject();
  if (theme.get() == theme_.get() || !isLive(object)) return;
  COSInterfacePtr previous = std::exchange(theme_, std::move(theme));
  sgutils::themes::applyThemeToSubtree(COSInterfacePtr(object), sgutils::themes::ThemeInfo(theme_));
  // Once per change, after the tree has its new values, with the new and the
  // previous theme; ThemeChangedFcn runs from it.
  graphics::eventdata::fireThemeChangedEvent(COSInterfacePtr(object),
                                             graphics::eventdata::ThemeChangedDataImpl(theme_, previous));
}

COSInterfacePtr themeContainerOf(const COSInterface* object) {
  for (const COSInterface* up = object; up; up = up->getOwnerObject())
    if (sgutils::blockOf<Figure>(up, Figure::classID())) return COSInterfacePtr(const_cast<COSInterface*>(up));
  return {};
}

COSInterfacePtr themeFromAncestors(const COSInterface* object) {
  for (const COSInterface* up = object; up; up = up->getOwnerObject()) {
    if (const Figure* figure = sgutils::blockOf<Figure>(up, Figure::classID()))
      return isLive(figure->themeObject().get()) ? figure->themeObject() : COSInterfacePtr();
  }
  return {};
}

void applyThemeFromAncestors(COSInterface* object) {
  if (!isLive(object)) return;
  COSInterfacePtr theme = themeFromAncestors(object);
  if (theme) sgutils::themes::applyThemeToSubtree(COSInterfacePtr(object), sgutils::themes::ThemeInfo(theme));
}

void figuresRespondToThemePreferences() {
  COSInterfacePtr top = root();
  std::vector<COSInterfacePtr> figures;
  for (COSInterface* c = top->getOldestChild(); c; c = c->getNewerSibling())
    if (isLive(c) && sgutils::blockOf<Figure>(c, Figure::classID())) figures.emplace_back(c);
  // A callback run by one figure's change may delete another.
  for (const COSInterfacePtr& f : figures)
    if (isLive(f.get())) sgutils::blockOf<Figure>(f.get(), Figure::classID())->respondToThemePreferences();
}

}  // namespace sgclasses
