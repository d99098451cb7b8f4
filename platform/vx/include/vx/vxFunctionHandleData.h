// What a function-handle array holds. The array API stores it and compares it
// by identity; the language that makes handles derives from it and knows how
// to call one.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "foundation/PlatformExport.h"

struct vxArray;

class VX_API vxFunctionHandleData {
 public:
  virtual ~vxFunctionHandleData();
  // The handle as a person writes it: "@disp" or "@(s,e)disp(s)".
  virtual std::string text() const = 0;
  // The variables an anonymous function captured when it was made, by name
  // (borrowed; valid while the handle lives). None by default.
  virtual std::vector<std::pair<std::string, const vxArray*>> capturedValues() const;
};
