// Default values reached by name on an object, as get and set of a graphics
// object see them, and the joints of the default store with the object
// frame (FrameHooks.h): constructor input named like a default, the words
// "default", "remove" and "factory" given as a value, and the defaults
// applied to a new or reset object.
//
//   get(h, "default")           the whole store (null without one)
//   get(h, "defaultLine")       all defaults of the classes whose short name
//                               begins with "line", as one struct
//   get(h, "defaultLineColor")  the value, inherited up the tree, else the
//                               factory value (null only for a type that
//                               cannot leave as an array)
//   get(root, "factory")        every factory value (the root only)
//   get(h, "factoryLineColor")  the factory value; "factoryLine" all of the class
//   set(h, "defaultLineColor")  the possible values of the property
//   set(h, "defaultLineColor", "remove" or "default")   removes the default
//   set(h, "defaultLineColor", value)                   stores it
//
// Each get and each set with a value sends a usage record. A factory name
// cannot be set ("VANTEL:sgutils:CannotSetFactoryValue").
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"

namespace sgutils {

class SGUTILS_API DefaultNameAccess {
 public:
  // `name` is a default name (DefaultPropString::isDefaultProp).
  static matrix::unique_vxArray get(const COSInterfacePtr& object, const std::string& name);
  // `name` is a factory name (DefaultPropString::isFactoryProp). Raises
  // "VANTEL:sgutils:OnlyRootHasFactoryDefaults" for "factory" alone on any
  // object but the root, "VANTEL:sg:InvalidProperty" for an empty name or
  // one that gives no value.
  static matrix::unique_vxArray getFactory(const COSInterfacePtr& object, const std::string& name);
  // Without a value (null) the possible values come back; otherwise null.
  static matrix::unique_vxArray set(const COSInterfacePtr& object, const std::string& name, const vxArray* value);
  // Sets the frame's hooks that the default store implements. Once per process.
  static void installFrameHooks();
};

}  // namespace sgutils
