// The table of built-in functions and the shared argument helpers.
#include "sgsh/BuiltinRegistry.h"

#include <algorithm>
#include <cmath>

#include <vcos/FunctionDispatcher.h>

#include "builtins/BuiltinSupport.h"
#include "sgsh/FunctionHandle.h"

namespace sgsh {

BuiltinRegistry::BuiltinRegistry() {
  // The language runs the function handles it made, wherever they are called.
  vcos::FunctionDispatcher::instance().addHandleCaller(
      [](const vxFunctionHandleData& data, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
        const auto* h = dynamic_cast<const FunctionHandle*>(&data);
        if (!h) return false;
        Interpreter& in = Interpreter::current();
        std::vector<Value> args;
        for (int i = 0; i < nrhs; ++i) args.push_back(Value::copyOf(prhs[i]));
        std::vector<Value> out = in.callHandleData(*h, args, nlhs);
        for (int i = 0; plhs && i < nlhs && i < static_cast<int>(out.size()); ++i) plhs[i] = out[i].release();
        return true;
      });
  registerCoreBuiltins(*this);
  registerMathBuiltins(*this);
  registerTextBuiltins(*this);
  registerErrorBuiltins(*this);
  registerFunctionBuiltins(*this);
  registerObjectBuiltins(*this);
  registerWorkspaceBuiltins(*this);
  registerDisplayBuiltins(*this);
  registerSaveLoadBuiltins(*this);
}

BuiltinRegistry& BuiltinRegistry::instance() {
  static BuiltinRegistry registry;
  return registry;
}

void BuiltinRegistry::addWithTrampoline(std::string name, BuiltinFn fn, DispatchedFn trampoline, Help help) {
  assert(fn && "a built-in needs a function");
  vcos::FunctionDispatcher::instance().registerBuiltin(name, trampoline);
  table_[std::move(name)] = Entry{fn, std::move(help)};
}

void BuiltinRegistry::runDispatched(BuiltinFn fn, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  std::vector<Value> args;
  args.reserve(static_cast<std::size_t>(nrhs));
  for (int i = 0; i < nrhs; ++i) args.push_back(Value::copyOf(prhs[i]));
  std::vector<Value> out;
  fn(Interpreter::current(), nlhs, out, args);
  for (int i = 0; plhs && i < std::max(nlhs, 1) && i < static_cast<int>(out.size()); ++i) plhs[i] = out[i].release();
}

BuiltinFn BuiltinRegistry::find(const std::string& name) const noexcept {
  auto it = table_.find(name);
  return it == table_.end() ? nullptr : it->second.fn;
}

const BuiltinRegistry::Help* BuiltinRegistry::help(const std::string& name) const noexcept {
  auto it = table_.find(name);
  return it == table_.end() ? nullptr : &it->second.help;
}

std::vector<std::string> BuiltinRegistry::names() const {
  std::vector<std::string> n;
  for (const auto& [name, entry] : table_) n.push_back(name);
  std::sort(n.begin(), n.end());
  return n;
}

namespace builtins {

void checkArgs(const char* fn, Args in, std::size_t min, std::size_t max) {
  if (in.size() < min) throw Error("VANTEL:sgsh:NotEnoughInputs", fn);
  if (in.size() > max) throw Error("VANTEL:sgsh:TooManyInputs", fn);
}

double scalarArg(const char* fn, const Value& v) {
  if (!ops::isNumberLike(v.get()) || vxGetNumberOfElements(v.get()) != 1)
    throw Error("VANTEL:sgsh:NotScalar", fn);
  return ops::realAt(v.get(), 0);
}

std::string textArg(const char* fn, const Value& v) { return ops::textOf(v.get(), fn); }

ops::Dims dimsArgs(const char* fn, Args in) {
  ops::Dims d;
  if (in.empty()) return {1, 1};
  if (in.size() == 1 && vxGetNumberOfElements(in[0].get()) != 1) {
    for (vxSize i = 0; i < vxGetNumberOfElements(in[0].get()); ++i)
      d.push_back(ops::sizeFrom(ops::realAt(in[0].get(), i), fn));
    return d;
  }
  for (const Value& v : in) {
    const double x = scalarArg(fn, v);
    d.push_back(ops::sizeFrom(x, fn));
  }
  if (d.size() == 1) d.push_back(d[0]);
  ops::checkedCount(d, fn);
  return d;
}

bool isCellOfText(const vxArray* a) {
  if (!vxIsCell(a)) return false;
  for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) {
    const vxArray* el = vxGetCell(a, i);
    if (!el || !ops::isText(el)) return false;
  }
  return true;
}

}  // namespace builtins
}  // namespace sgsh
