// Not installed; internal to the array runtime.
//
// The errors that misuse of the array API raises, all "VANTEL:vx:<Key>".
#pragma once

#include "vx/vxTypes.h"

namespace vx::impl {

[[noreturn]] void raiseWrongClass(const vxArray& a, const char* expected);
[[noreturn]] void raiseIndexOutOfRange(vxSize index, vxSize numel);
[[noreturn]] void raiseFieldNumberOutOfRange(int number, int count);
[[noreturn]] void raiseInvalidFieldName(const char* name);
[[noreturn]] void raiseEmptyScalar();
[[noreturn]] void raiseNotText(const vxArray& a);
[[noreturn]] void raiseIntegerOutOfRange(double value);
[[noreturn]] void raiseReshapeChangesCount(const vxArray& a, vxSize to);
[[noreturn]] void raiseSizeTooLarge();
[[noreturn]] void raiseNotNumericClass(vxClassID id);

}  // namespace vx::impl
