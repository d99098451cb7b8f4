// Tells the display code the name of the variable it is showing. The
// language opens a scope around the display of a named value; inside it
// ioGetArrayName(array, position) answers that name for that array. Scopes
// nest and belong to the thread that opens them; the innermost one that
// matches answers.
#pragma once

#include <string>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

namespace services::io {

class FOUNDATION_API ArrayNameScope {
 public:
  // `position` is the array's place among the inputs of the display call,
  // counted from 1.
  ArrayNameScope(const vxArray* array, std::string name, int position = 1);
  ~ArrayNameScope();
  ArrayNameScope(const ArrayNameScope&) = delete;
  ArrayNameScope& operator=(const ArrayNameScope&) = delete;
};

}  // namespace services::io
