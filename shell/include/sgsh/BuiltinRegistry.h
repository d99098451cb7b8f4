// Built-in functions of the language, registered by name in one table. A
// built-in has one shape: the interpreter that calls it, the number of
// outputs asked for, the outputs it fills, and its inputs.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sgsh/Value.h"

namespace sgsh {

class Interpreter;

using BuiltinFn = void (*)(Interpreter& interp, int nargout, std::vector<Value>& out, std::span<const Value> in);

class BuiltinRegistry {
 public:
  // The table every interpreter shares.
  static BuiltinRegistry& instance();

  void add(std::string name, BuiltinFn fn);
  // Null when no built-in has that name.
  BuiltinFn find(const std::string& name) const noexcept;
  std::vector<std::string> names() const;

 private:
  BuiltinRegistry();
  std::unordered_map<std::string, BuiltinFn> table_;
};

// One registration function per group of built-ins; BuiltinRegistry calls
// them all once.
void registerCoreBuiltins(BuiltinRegistry& r);
void registerMathBuiltins(BuiltinRegistry& r);
void registerTextBuiltins(BuiltinRegistry& r);
void registerErrorBuiltins(BuiltinRegistry& r);
void registerFunctionBuiltins(BuiltinRegistry& r);

}  // namespace sgsh
