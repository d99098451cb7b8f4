// Carrying theme values from a theme object to the properties of graphics
// objects. A class takes part through its row in the built-in mapping table;
// each row names a property and the theme attribute it follows. A property
// whose mode is manual keeps its value: the theme skips it unless told to
// override manual values.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"

namespace sgutils::themes {

// One counted reference to a theme object.
class SGUTILS_API ThemeInfo {
 public:
  ThemeInfo() = default;
  explicit ThemeInfo(COSInterfacePtr theme) : theme_(std::move(theme)) {}

  // A theme is there and is not being deleted.
  bool isValid() const noexcept;
  const COSInterfacePtr& getThemeCosi() const noexcept { return theme_; }
  // The theme's value for an attribute; an empty char array when it has none.
  matrix::unique_vxArray getThemeAttributeValue(const std::string& attribute) const;

 private:
  COSInterfacePtr theme_;
};

// Sets every themed property of one object to the theme's value, in byte
// order of the property names, then calls the class method
// "applyThemeValues" of a class that overrides it. Nothing to do (no map, no
// valid theme) is success; false when the object was deleted meanwhile or
// the class method said false.
SGUTILS_API bool applyThemeValues(const COSInterfacePtr& object, const ThemeInfo& theme,
                                  bool overrideManualValues);

// The last gate before a themed value is set: skips a null or empty-text
// value, a property that cannot be set publicly, a property in manual mode
// (unless overridden) and an unchanged value. Writes the internal face
// `<name>_I` where it is publicly settable, so the mode stays as it is.
// True when a set ran.
SGUTILS_API bool setPVPair(const COSInterfacePtr& object, const std::string& property, const vxArray* value,
                           bool overrideManualValues);

// applyThemeValues on `node` and every object below it, parents before
// their children, oldest child first. With `allOrNothing`, a walk that
// raises sets every value it changed back (newest first) before the error
// passes on, so no object is left half-themed.
SGUTILS_API void applyThemeToSubtree(const COSInterfacePtr& node, const ThemeInfo& theme, bool allOrNothing = false);

// How many property sets a walk of `theme` over `node` and its subtree would
// make now: 0 when every themed value there is the theme's. Sets nothing.
SGUTILS_API std::size_t countUnthemedValues(const COSInterfacePtr& node, const ThemeInfo& theme);

// Finds the theme that governs an object: the one of its nearest theme
// container. The container classes live above this library, so they
// install the look-up at start-up; without one no object has a theme.
using GoverningThemeLookup = COSInterfacePtr (*)(const COSInterface* object);
SGUTILS_API void setGoverningThemeLookup(GoverningThemeLookup lookup) noexcept;
// The theme object that governs `object`, or null.
SGUTILS_API COSInterfacePtr getGoverningTheme(const COSInterface* object);

// A themed property whose value an object may work out itself rather than
// take from the theme (a plotted line's Color follows its axes' themed
// colour order). The function gives the value, or null when the object does
// not work it out now, and the theme's attribute value applies. Registered
// once per class (subclasses included) and property at start-up; a custom
// mapping of the property on an object wins over it.
using DerivedThemeValue = matrix::unique_vxArray (*)(const COSInterface* object);
SGUTILS_API void registerDerivedThemeValue(COSID classId, COSID property, DerivedThemeValue derived);

// Sets one property of an object to its themed value: the governing theme's
// value of the attribute that the object's combined map gives the property,
// through setPVPair (a manual property keeps its value). Without a governing
// theme, the built-in light theme when `assumeLightTheme`, else nothing.
SGUTILS_API void setPropertyToThemedValue(const COSInterfacePtr& object, const std::string& property,
                                          bool assumeLightTheme);

// Gives a reset object its theme again: the theme of its nearest theme
// container, applied to it and its subtree. Without a container, or with one
// that holds no theme, the built-in light theme when `restoreLightIfNoTheme`,
// else nothing. The frame calls it after a reset (its themeOnReset hook).
SGUTILS_API void restoreThemeOnReset(const COSInterfacePtr& object, bool restoreLightIfNoTheme);

}  // namespace sgutils::themes
