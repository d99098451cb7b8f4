// Running listener callbacks through the function dispatcher: handles through
// its handle callers, texts through its text runners.
#include "vcos/src/builtin/Callbacks.h"

#include <string>
#include <vector>

#include "vcos/FunctionDispatcher.h"
#include "vx/vxCell.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace vcos::builtin {

namespace {

bool isFunction(const vxArray* f) {
  return f && ((vxIsFunctionHandle(f) && vxIsScalar(f)) || (vxIsChar(f) && vxGetM(f) == 1) ||
               (vxIsString(f) && vxIsScalar(f)));
}

void call(const vxArray* f, int nargs, const vxArray* const args[]) {
  std::vector<const vxArray*> in(args, args + nargs);
  if (vxIsFunctionHandle(f)) {
    FunctionDispatcher::instance().callFunctionHandle(f, 0, nullptr, nargs, in.data());
  } else {
    // A language may take the text (its own function, or code); otherwise
    // it names a function of the dispatcher.
    FunctionDispatcher::instance().callText(vxArrayToStdString(f), nargs, in.data());
  }
}

}  // namespace

bool isCallback(const vxArray* callback) {
  if (!callback || vxIsEmpty(callback)) return true;
  if (vxIsCell(callback)) return isFunction(vxGetCell(callback, 0));
  return isFunction(callback);
}

void runCallback(const vxArray* callback, int nargs, const vxArray* const args[]) {
  if (!callback || vxIsEmpty(callback)) return;
  if (!vxIsCell(callback)) {
    call(callback, nargs, args);
    return;
  }
  std::vector<const vxArray*> all(args, args + nargs);
  for (vxSize i = 1, n = vxGetNumberOfElements(callback); i < n; ++i) all.push_back(vxGetCell(callback, i));
  call(vxGetCell(callback, 0), static_cast<int>(all.size()), all.data());
}

}  // namespace vcos::builtin
