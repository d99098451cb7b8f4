// The function dispatcher: registered built-ins, the registry of shared
// libraries searched by exported name, the per-name cache, and the callers
// and text runners that the language installs for its function handles and
// callback texts.
#include "vcos/FunctionDispatcher.h"

#include <dlfcn.h>

#include <algorithm>
#include <cassert>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vx/vxData.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxQuery.h"

namespace vcos {

namespace {

using foundation::core::except::Error;

// Hashes std::string and std::string_view alike, so a look-up by view needs
// no temporary string.
struct NameHash {
  using is_transparent = void;
  size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>()(s); }
};

template <class T>
using NameMap = std::unordered_map<std::string, T, NameHash, std::equal_to<>>;

struct Library {
  void* handle;
  bool owned;  // opened by loadLibrary, closed on removal
};

}  // namespace

struct FunctionDispatcher::Impl {
  NameMap<BuiltinFcn> builtins;
  std::vector<Library> libraries;
  // Hits only; a miss is not remembered, since it ends in an error anyway.
  mutable NameMap<BuiltinFcn> cache;
  std::vector<std::pair<int, HandleCaller>> handleCallers;
  std::vector<std::pair<int, TextCaller>> textCallers;
  int nextCallerToken = 1;

  BuiltinFcn resolve(std::string_view name) const {
    if (auto it = builtins.find(name); it != builtins.end()) return it->second;
    if (libraries.empty()) return nullptr;
    const std::string symbol(name);  // dlsym needs a terminated string
    for (const Library& lib : libraries) {
      if (void* sym = dlsym(lib.handle, symbol.c_str())) return reinterpret_cast<BuiltinFcn>(sym);
    }
    return nullptr;
  }
};

FunctionDispatcher& FunctionDispatcher::instance() {
  static FunctionDispatcher dispatcher;
  return dispatcher;
}

FunctionDispatcher::FunctionDispatcher() : impl_(std::make_unique<Impl>()) {}

FunctionDispatcher::~FunctionDispatcher() {
  for (const Library& lib : impl_->libraries)
    if (lib.owned) dlclose(lib.handle);
}

void FunctionDispatcher::registerBuiltin(std::string_view name, BuiltinFcn fcn) {
  assert(fcn && "registering a null built-in");
  assert(!name.empty() && "registering a built-in without a name");
  impl_->builtins.insert_or_assign(std::string(name), fcn);
  impl_->cache.clear();
}

bool FunctionDispatcher::unregisterBuiltin(std::string_view name) {
  auto it = impl_->builtins.find(name);
  if (it == impl_->builtins.end()) return false;
  impl_->builtins.erase(it);
  impl_->cache.clear();
  return true;
}

void* FunctionDispatcher::loadLibrary(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) {
    const char* why = dlerror();
    throw Error("VANTEL:vcos:LibraryLoadFailed", path, why ? why : "");
  }
  // dlopen counts opens of the same file: keep one registry entry and one
  // open count of our own.
  auto& libs = impl_->libraries;
  if (std::any_of(libs.begin(), libs.end(), [&](const Library& l) { return l.handle == handle && l.owned; })) {
    dlclose(handle);
    return handle;
  }
  libs.push_back({handle, true});
  impl_->cache.clear();
  return handle;
}

void FunctionDispatcher::addLibrary(void* handle) {
  assert(handle && "adding a null library handle");
  auto& libs = impl_->libraries;
  if (std::any_of(libs.begin(), libs.end(), [&](const Library& l) { return l.handle == handle; })) return;
  libs.push_back({handle, false});
  impl_->cache.clear();
}

bool FunctionDispatcher::removeLibrary(void* handle) {
  auto& libs = impl_->libraries;
  auto it = std::find_if(libs.begin(), libs.end(), [&](const Library& l) { return l.handle == handle; });
  if (it == libs.end()) return false;
  const bool owned = it->owned;
  libs.erase(it);
  // Cached pointers may point into the library: drop them before closing.
  impl_->cache.clear();
  if (owned) dlclose(handle);
  return true;
}

FunctionDispatcher::BuiltinFcn FunctionDispatcher::find(std::string_view name) const {
  if (auto it = impl_->cache.find(name); it != impl_->cache.end()) return it->second;
  BuiltinFcn fcn = impl_->resolve(name);
  if (fcn) impl_->cache.emplace(std::string(name), fcn);
  return fcn;
}

void FunctionDispatcher::call(std::string_view name, int nlhs, vxArray* plhs[], int nrhs,
                              const vxArray* prhs[]) const {
  BuiltinFcn fcn = find(name);
  if (!fcn) throw Error("VANTEL:vcos:UndefinedFunction", name);
  fcn(nlhs, plhs, nrhs, prhs);
}

int FunctionDispatcher::addHandleCaller(HandleCaller caller) {
  assert(caller && "installing an empty function-handle caller");
  const int token = impl_->nextCallerToken++;
  impl_->handleCallers.emplace_back(token, std::move(caller));
  return token;
}

void FunctionDispatcher::removeHandleCaller(int token) {
  auto& callers = impl_->handleCallers;
  std::erase_if(callers, [token](const auto& entry) { return entry.first == token; });
}

void FunctionDispatcher::callFunctionHandle(const vxFunctionHandleData& handle, int nlhs, vxArray* plhs[], int nrhs,
                                            const vxArray* prhs[]) const {
  // Newest first. Each caller is copied before it runs, since it may install
  // or remove callers meanwhile (a small callable copies without allocation).
  const auto& callers = impl_->handleCallers;
  for (std::size_t i = callers.size(); i-- > 0;) {
    if (i >= callers.size()) continue;
    const HandleCaller caller = callers[i].second;
    if (caller(handle, nlhs, plhs, nrhs, prhs)) return;
  }
  throw Error("VANTEL:vcos:NoHandleCaller", handle.text());
}

void FunctionDispatcher::callFunctionHandle(const vxArray* handle, int nlhs, vxArray* plhs[], int nrhs,
                                            const vxArray* prhs[]) const {
  if (!handle || !vxIsFunctionHandle(handle) || !vxIsScalar(handle)) throw Error("VANTEL:vcos:NotAFunctionHandle");
  std::shared_ptr<const vxFunctionHandleData> data = vxGetFunctionHandle(handle);
  if (!data) throw Error("VANTEL:vcos:NotAFunctionHandle");
  callFunctionHandle(*data, nlhs, plhs, nrhs, prhs);
}

int FunctionDispatcher::addTextCaller(TextCaller caller) {
  assert(caller && "installing an empty callback-text runner");
  const int token = impl_->nextCallerToken++;
  impl_->textCallers.emplace_back(token, std::move(caller));
  return token;
}

void FunctionDispatcher::removeTextCaller(int token) {
  std::erase_if(impl_->textCallers, [token](const auto& entry) { return entry.first == token; });
}

void FunctionDispatcher::callText(std::string_view text, int nrhs, const vxArray* prhs[]) const {
  // Newest first, each copied before it runs, as for handle callers.
  const auto& callers = impl_->textCallers;
  for (std::size_t i = callers.size(); i-- > 0;) {
    if (i >= callers.size()) continue;
    const TextCaller caller = callers[i].second;
    if (caller(text, nrhs, prhs)) return;
  }
  call(text, 0, nullptr, nrhs, prhs);
}

}  // namespace vcos

void inCallFcn(const char* name, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  vcos::FunctionDispatcher::instance().call(name ? std::string_view(name) : std::string_view(), nlhs, plhs, nrhs,
                                            prhs);
}
