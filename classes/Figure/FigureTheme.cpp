// The figure's Theme: a theme object, the text "light" or "dark" (any case),
// or empty for none. Setting it re-colours every themed property in the
// figure's tree whose mode is auto; new children take it when parented.
#include "sgclasses/Theming.h"

#include "foundation/core/except/Error.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
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

void Figure::setThemeImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  // An invalid value is refused before anything is stored.
  COSInterfacePtr theme = themeIn(value.asPointer<const vxArray>());
  if (theme.get() == theme_.get()) return;
  theme_ = std::move(theme);
  sgutils::themes::applyThemeToSubtree(COSInterfacePtr(object), sgutils::themes::ThemeInfo(theme_));
  // Once per change, after the tree has its new values; ThemeChangedFcn runs from it.
  static const COSID themeChanged("ThemeChanged");
  if (!object->isDestroyed() && !object->isBeingDestroyed())
    object->notifyEvent(COSGetPublicClient(), themeChanged, nullptr);
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

}  // namespace sgclasses
