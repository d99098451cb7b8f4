// The one place where functions called by name are found: the built-ins that
// the language and the libraries register, and the built-in functions that
// loaded shared libraries export under their own names with C linkage. Every
// call by name (inCallFcn) and every call of a function handle goes through it.
//
// Look-up order for a name: registered built-ins first, then the registered
// libraries in the order they were added. Only libraries in the registry are
// searched, never the whole process, so a name can never land on an unrelated
// C symbol of the same spelling. Results are cached per name; registering or
// removing anything empties the cache. All calls come on the interpreter's
// thread, as for the rest of the class-object system, so there is no lock.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

class vxFunctionHandleData;

namespace vcos {

class VCOS_API FunctionDispatcher {
 public:
  // The shape of every built-in function: output count, outputs, input count,
  // inputs. Outputs belong to the caller; inputs are borrowed.
  using BuiltinFcn = void (*)(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);

  // Runs a function handle that the installing language made. Answers false
  // for a handle it does not know, so that the next caller can try.
  using HandleCaller = std::function<bool(const vxFunctionHandleData& handle, int nlhs, vxArray* plhs[], int nrhs,
                                          const vxArray* prhs[])>;

  // Runs a callback given as text with the callback's inputs; the installing
  // language decides what the text means (one of its functions, or code).
  // Answers false for text it does not take, so that the next caller can try.
  using TextCaller = std::function<bool(std::string_view text, int nrhs, const vxArray* prhs[])>;

  static FunctionDispatcher& instance();

  FunctionDispatcher();
  ~FunctionDispatcher();
  FunctionDispatcher(const FunctionDispatcher&) = delete;
  FunctionDispatcher& operator=(const FunctionDispatcher&) = delete;

  // Registers a built-in under its name, replacing one of the same name.
  void registerBuiltin(std::string_view name, BuiltinFcn fcn);
  // Answers whether there was one.
  bool unregisterBuiltin(std::string_view name);

  // Opens a shared library and adds it to the registry; the dispatcher keeps
  // it open until removeLibrary. Raises "VANTEL:vcos:LibraryLoadFailed".
  // Opening the same file twice gives the same handle and one registry entry.
  void* loadLibrary(const std::string& path);
  // Adds a library that someone else opened (a dlopen handle); the caller
  // keeps ownership of the handle.
  void addLibrary(void* handle);
  // Takes a library out of the registry, closing it if loadLibrary opened it.
  bool removeLibrary(void* handle);

  // The function of that name, or null.
  BuiltinFcn find(std::string_view name) const;
  // Calls the function of that name; raises "VANTEL:vcos:UndefinedFunction"
  // with the name when there is none.
  void call(std::string_view name, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) const;

  // Installs a caller for function handles; later callers are asked first.
  // Returns a token for removeHandleCaller.
  int addHandleCaller(HandleCaller caller);
  void removeHandleCaller(int token);
  // Calls a function handle through the installed callers. Raises
  // "VANTEL:vcos:NoHandleCaller" when none of them takes the handle.
  void callFunctionHandle(const vxFunctionHandleData& handle, int nlhs, vxArray* plhs[], int nrhs,
                          const vxArray* prhs[]) const;
  // The same for the handle held by a 1-by-1 function-handle array; raises
  // "VANTEL:vcos:NotAFunctionHandle" for any other array.
  void callFunctionHandle(const vxArray* handle, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) const;

  // Installs a runner of callback texts; later ones are asked first. Returns
  // a token for removeTextCaller.
  int addTextCaller(TextCaller caller);
  void removeTextCaller(int token);
  // Runs a callback text with no outputs through the installed runners; when
  // none takes it, the text is the name of a function and call runs it.
  void callText(std::string_view text, int nrhs, const vxArray* prhs[]) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vcos

// Calls a function by name through the dispatcher: the interpreter's call of a
// built-in. Raises "VANTEL:vcos:UndefinedFunction" for an unknown name.
VCOS_API void inCallFcn(const char* name, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
