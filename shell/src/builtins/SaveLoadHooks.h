// Not installed. How save and load reach a writer and reader of values that
// hold objects: the graphics built-ins install them when the graphics
// library is there; without them such values raise the runtime's
// VANTEL:vx:serialize:UnsupportedClass.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <vx/vxSerialize.h>

namespace sgsh::builtins {

struct SaveLoadHooks {
  // Whether a value needs the object writer.
  std::function<bool(const vxArray*)> holdsObjects;
  std::function<void(const std::string& path, std::span<const std::pair<std::string, const vxArray*>> values)> save;
  std::function<std::vector<vxNamedValue>(const std::string& path, const vxReadOptions& options)> load;

  static SaveLoadHooks& instance();
};

// A function handle from its saved text, made the way str2func makes one.
vxArray* functionHandleFromText(const std::string& text);
// An anonymous function from its saved text and the variables it captured.
vxArray* functionHandleWithCaptures(const std::string& text, std::vector<vxNamedValue> captured);
// The reader's options of load and openfig: both of the above.
vxReadOptions handleReadOptions();

}  // namespace sgsh::builtins
