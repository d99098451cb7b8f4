// Built-in functions of the language, registered by name in one table. A
// built-in has one shape: the interpreter that calls it, the number of
// outputs asked for, the outputs it fills, and its inputs. Every built-in is
// also registered in the platform's function dispatcher under its name, so
// library code reaches it with inCallFcn; the language calls its own table
// directly and falls back to the dispatcher for functions that libraries
// export.
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

  // What `help NAME` prints: a line of usage ("y = f(x)", several forms
  // separated by "\n") and a one-sentence description.
  struct Help {
    std::string usage;
    std::string description;
  };

  // Registers F under the name here and in the platform's dispatcher, with
  // its help. Every built-in should have help (a test checks it); the form
  // without is kept for registrations that have none yet.
  template <BuiltinFn F>
  void add(std::string name, std::string usage, std::string description) {
    addWithTrampoline(std::move(name), F, &dispatched<F>, Help{std::move(usage), std::move(description)});
  }
  template <BuiltinFn F>
  void add(std::string name) {
    addWithTrampoline(std::move(name), F, &dispatched<F>, Help{});
  }
  // Null when no built-in has that name.
  BuiltinFn find(const std::string& name) const noexcept;
  // Null when no built-in has that name; empty texts when it has no help.
  const Help* help(const std::string& name) const noexcept;
  std::vector<std::string> names() const;

 private:
  BuiltinRegistry();
  using DispatchedFn = void (*)(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
  void addWithTrampoline(std::string name, BuiltinFn fn, DispatchedFn trampoline, Help help);
  // A built-in called through the dispatcher runs in the current interpreter.
  static void runDispatched(BuiltinFn fn, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
  template <BuiltinFn F>
  static void dispatched(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
    runDispatched(F, nlhs, plhs, nrhs, prhs);
  }

  struct Entry {
    BuiltinFn fn;
    Help help;
  };
  std::unordered_map<std::string, Entry> table_;
};

// One registration function per group of built-ins; BuiltinRegistry calls
// them all once.
void registerCoreBuiltins(BuiltinRegistry& r);
void registerMathBuiltins(BuiltinRegistry& r);
void registerTextBuiltins(BuiltinRegistry& r);
void registerErrorBuiltins(BuiltinRegistry& r);
void registerFunctionBuiltins(BuiltinRegistry& r);
void registerObjectBuiltins(BuiltinRegistry& r);
void registerWorkspaceBuiltins(BuiltinRegistry& r);
void registerDisplayBuiltins(BuiltinRegistry& r);
void registerSaveLoadBuiltins(BuiltinRegistry& r);

}  // namespace sgsh
