// Saving values that hold graphics objects, and reading them back.
//
// Every graphics object in a saved value is saved with the tree below it:
// its class, its stored properties (not transient, not dependent) with their
// modes, the defaults stored on it, its children in their order, its user
// data and callbacks. Objects are written once, in an object table of the
// saved-value format, and every reference to a saved object (a child list,
// a context menu, an object in user data) is written as its index there, so
// shared references come back shared. An object that is not a graphics
// object and whose class saves a form of its own (its class info's
// customSave answers true) is saved as that form and handed it back on load
// (docs/architecture.md, "A class's own saved form"). Any other reference
// to an object outside the saved trees is not kept (see "Saving graphics
// objects").
//
// Reading builds every object or none: on any failure the objects made so
// far are deleted and the error goes on, an identifier of the reader
// ("VANTEL:vx:serialize:*") or of the loader ("VANTEL:sg:load:*").
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxSerialize.h"

namespace sgutils {

struct GraphicsLoadOptions {
  // Makes a function handle from its saved text (see vxReadOptions).
  std::function<vxArray*(const std::string& text)> makeFunctionHandle;
  // Makes an anonymous function with the variables it captured (see
  // vxReadOptions); without it they are dropped.
  std::function<vxArray*(const std::string& text, std::vector<vxNamedValue> captured)> makeCapturingFunctionHandle;
  // The parent for a loaded object that is the top of a saved tree (null
  // for none), asked after the trees are built: a figure goes under the
  // root, for example.
  std::function<COSInterfacePtr(const COSInterfacePtr& object)> parentOfTopLevel;
};

class SGUTILS_API GraphicsFile {
 public:
  using Values = std::span<const std::pair<std::string, const vxArray*>>;

  // The framed bytes of the named values and the objects they hold.
  static std::vector<std::uint8_t> serialize(Values values);
  // The named values of framed bytes, with their objects made anew.
  static std::vector<vxNamedValue> deserialize(std::span<const std::uint8_t> bytes,
                                               const GraphicsLoadOptions& options);

  // The same on files; a save is atomic.
  static void save(const std::string& path, Values values);
  static std::vector<vxNamedValue> load(const std::string& path, const GraphicsLoadOptions& options);

  // Whether a value holds an object array anywhere (in cells and structs
  // too), so that it needs this writer rather than the plain one.
  static bool holdsObjects(const vxArray* value);

  // The names of the fields an object's entry may carry besides its
  // properties: its children in order, oldest first, its stored defaults,
  // and the properties added to it at run time that are stored.
  static constexpr const char* kChildrenField = "SerializedChildren";
  static constexpr const char* kDefaultsField = "InternalDefaultPropMap";
  static constexpr const char* kDynamicPropertiesField = "DynamicProperties";
};

}  // namespace sgutils
