// Graphics classes for the default store's tests, registered under full
// names that the class-name maps know, so that default names reach them:
//   "vantel.graphics.illustration.Legend"  "legend"          (a tree's top)
//   "vantel.graphics.shape.Ellipse"        "ellipseshape"    (a middle node)
//   "vantel.graphics.shape.Line"           "lineshape"       (a leaf)
//   "vantel.graphics.shape.Rectangle"      "rectangleshape"  (another leaf)
// Each is Selectable (the triple Selected) and has a colour triple
// EdgeColor, a "Parent" that hooks it into the object tree, a resettable
// double "Width", a text "Tag", a "Locked" double that only the class may
// set, and a "NoDefault" double that allows no default.
#pragma once

#include "sgdatatypes/RGBAColor.h"
#include "sgutils/objects/Selectable.gen.h"
#include "sgutils/sgutils.h"
#include "vx/vx.h"

namespace sgtest::defaults {

inline constexpr const char kTop[] = "vantel.graphics.illustration.Legend";
inline constexpr const char kMiddle[] = "vantel.graphics.shape.Ellipse";
inline constexpr const char kLeaf[] = "vantel.graphics.shape.Line";
inline constexpr const char kOtherLeaf[] = "vantel.graphics.shape.Rectangle";

class DefaultsHandle : public SGHandle {
 public:
  graphics::datatype::RGBAColor edgeColor;
  unsigned char edgeColorMode = 0;
};

// Starts the library and registers the classes (once).
void registerDefaultStoreClasses();
// A new object of that class, hooked below `parent` when one is given (no
// defaults are applied: that is the caller's step).
COSInterfacePtr make(const char* className, const COSInterfacePtr& parent = nullptr);
DefaultsHandle& handleOf(const COSInterfacePtr& object);
graphics::mixin::Selectable& selectableOf(const COSInterfacePtr& object);

using Arr = matrix::unique_vxArray;
Arr text(const char* value);
Arr number(double value);
Arr rgb(double r, double g, double b);
double numberOf(const vxArray* value);
std::string textOf(const vxArray* value);

// Through the client path as the public client, with the language's conversions.
Arr getProp(const COSInterfacePtr& object, const char* name);
void setProp(const COSInterfacePtr& object, const char* name, const vxArray* value);

}  // namespace sgtest::defaults
