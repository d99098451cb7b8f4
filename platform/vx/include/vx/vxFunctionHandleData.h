// What a function-handle array holds. The array API stores it and compares it
// by identity; the language that makes handles derives from it and knows how
// to call one.
#pragma once

#include <string>

#include "foundation/PlatformExport.h"

class VX_API vxFunctionHandleData {
 public:
  virtual ~vxFunctionHandleData();
  // The handle as a person writes it: "@disp" or "@(s,e)disp(s)".
  virtual std::string text() const = 0;
};
