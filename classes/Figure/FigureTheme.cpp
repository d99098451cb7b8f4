// The figure as the theme container of its tree: finding the nearest one
// above an object, giving a new child its theme, and asking every figure
// after a change of the appearance settings. The theme itself is held by the
// ThemeContainer mixin.
#include "sgclasses/Theming.h"

#include <vector>

#include "sgclasses/Objects.h"

#include "sgutils/objects/ThemeContainer.gen.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSInterface.h"

namespace sgclasses {

using graphics::mixin::ThemeContainer;

namespace {

bool isLive(const COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

}  // namespace

COSInterfacePtr themeContainerOf(const COSInterface* object) {
  for (const COSInterface* up = object; up; up = up->getOwnerObject())
    if (ThemeContainer::fromObject(up)) return COSInterfacePtr(const_cast<COSInterface*>(up));
  return {};
}

COSInterfacePtr themeFromAncestors(const COSInterface* object) {
  for (const COSInterface* up = object; up; up = up->getOwnerObject()) {
    if (const ThemeContainer* container = ThemeContainer::fromObject(up))
      return isLive(container->getThemeCOSI().get()) ? container->getThemeCOSI() : COSInterfacePtr();
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
    if (isLive(c) && ThemeContainer::fromObject(c)) figures.emplace_back(c);
  // A callback run by one figure's change may delete another.
  for (const COSInterfacePtr& f : figures)
    if (isLive(f.get())) ThemeContainer::fromObject(f.get())->respondToThemePreferences();
}

}  // namespace sgclasses
