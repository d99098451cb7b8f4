// Not installed; internal to sgshell.
// Argument checks and conversions shared by the built-in functions.
#pragma once

#include <span>
#include <string>
#include <vector>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "sgsh/BuiltinRegistry.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Value.h"

namespace sgsh::builtins {

using foundation::core::except::Error;
using Args = std::span<const Value>;
using Out = std::vector<Value>;

// Raises VANTEL:sgsh:NotEnoughInputs / TooManyInputs for the named function.
void checkArgs(const char* fn, Args in, std::size_t min, std::size_t max);
// A real scalar argument; raises VANTEL:sgsh:NotScalar.
double scalarArg(const char* fn, const Value& v);
// Text (char row or string scalar); raises VANTEL:sgsh:NotText.
std::string textArg(const char* fn, const Value& v);
// Dimensions given as zeros(n), zeros(m, n, ...) or zeros([m n]).
ops::Dims dimsArgs(const char* fn, Args in);
// True for a cell whose elements are all text.
bool isCellOfText(const vxArray* a);
// sprintf's engine: the format applied to the arguments, recycled while
// arguments remain.
std::string formatText(const std::string& format, Args args);

}  // namespace sgsh::builtins
