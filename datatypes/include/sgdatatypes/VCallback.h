// What a callback property holds, and how it runs. A callback is empty, a C++
// function, or a value of the command language: a function handle, a text to
// evaluate, or a cell whose first element is a function handle (or a
// function's name) and whose other elements are extra arguments. Running it
// hands the source object and the event data to what it holds: a C++
// function is called directly; language values go to the runner that the
// command language registers with setRunner.
#pragma once

#include <functional>
#include <memory>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/matrix.h"

class COSEventData;
class COSInterface;

namespace graphics::datatype {

class SGDATATYPES_API VCallback {
 public:
  using Function = std::function<void(COSInterface* source, COSEventData* data)>;
  // Runs a language value: the value the callback holds (borrowed), then the
  // source and the event data (either may be null).
  using Runner = std::function<void(const vxArray* callback, COSInterface* source, COSEventData* data)>;

  enum class Kind : unsigned char { Empty, Function, FunctionHandle, Text, CellWithArguments };

  VCallback() = default;
  explicit VCallback(Function fn);
  VCallback(const VCallback& other);
  VCallback(VCallback&&) noexcept = default;
  VCallback& operator=(const VCallback& other);
  VCallback& operator=(VCallback&&) noexcept = default;
  ~VCallback();

  // Raises "VANTEL:datatypes:InvalidCallback" for anything but an empty
  // array, a function handle, a text or a well-formed cell.
  static VCallback fromArray(const vxArray* value);
  // An empty callback reads as a 0-by-0 double; a C++ function as a
  // function handle that converts back to the same function.
  vxArray* toArray() const;

  Kind kind() const noexcept { return kind_; }
  bool isEmpty() const noexcept { return kind_ == Kind::Empty; }
  // The language value held, or null for an empty or C++ callback.
  const vxArray* value() const noexcept { return value_.get(); }

  // Does nothing for an empty callback. Raises
  // "VANTEL:datatypes:NoCallbackRunner" when a language value is to run and
  // no runner is registered. Exceptions of the callback pass through.
  void execute(COSInterface* source, COSEventData* data) const;

  // Installs the runner of language values; an empty runner removes it.
  // Returns the previous runner.
  static Runner setRunner(Runner runner);

  // Same kind and same content: language values compare as arrays (function
  // handles by identity), C++ functions by the identity of the stored function.
  friend SGDATATYPES_API bool operator==(const VCallback& a, const VCallback& b) noexcept;

 private:
  Kind kind_ = Kind::Empty;
  matrix::unique_vxArray value_;
  std::shared_ptr<const Function> fn_;
};

}  // namespace graphics::datatype
