// Themes on the object tree: a figure holds the theme of everything below
// it; an object that joins a tree takes the theme of its nearest themed
// figure.
#pragma once

#include "sgclasses/SgclassesExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgclasses {

// The theme object of the nearest figure at or above `object`; null when
// none is there or that figure has no theme.
SGCLASSES_API COSInterfacePtr themeFromAncestors(const COSInterface* object);

// The nearest figure at or above `object` (its theme container), or null.
SGCLASSES_API COSInterfacePtr themeContainerOf(const COSInterface* object);

// Applies that theme to `object` and everything below it; nothing happens
// without one. Called when an object gets a new parent.
SGCLASSES_API void applyThemeFromAncestors(COSInterface* object);

// Every figure of the root answers the appearance settings (figures in
// manual ThemeMode keep their theme). Called after a settings change.
SGCLASSES_API void figuresRespondToThemePreferences();

}  // namespace sgclasses
