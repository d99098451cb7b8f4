// Running graphics and listener callbacks that hold values of the language.
#include "eval/CallbackRunner.h"

#include <cassert>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

#include <sgdatatypes/VCallback.h>
#include <vcos/BuiltinClasses.h>
#include <vcos/FunctionDispatcher.h>
#include <vcos/ObjectArray.h>
#include <vcos/vcos.h>
#include <vx/vx.h>

#include "sgsh/FunctionHandle.h"
#include "sgsh/Interpreter.h"

namespace sgsh {
namespace {

using graphics::datatype::VCallback;

// What the first interpreter replaced, to be put back by the last.
struct Installation {
  int users = 0;
  VCallback::Runner previousRunner;
  int textToken = 0;
};

Installation& installation() {
  static Installation state;
  return state;
}

bool isPlainName(std::string_view s) {
  if (s.empty() || !(std::isalpha(static_cast<unsigned char>(s[0])))) return false;
  for (char c : s)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_') return false;
  return true;
}

// An object array of one element, or an empty double for no object.
matrix::unique_vxArray objectArg(const COSInterfacePtr& object) {
  return matrix::unique_vxArray(object ? omCreateVCOSScalar(object) : vxCreateDoubleMatrix(0, 0, vxREAL));
}

// Calls a callable head (a handle, or a function's name) with no outputs.
void callHead(const vxArray* head, std::vector<const vxArray*>& args) {
  if (vxIsFunctionHandle(head)) {
    vcos::FunctionDispatcher::instance().callFunctionHandle(head, 0, nullptr, static_cast<int>(args.size()),
                                                            args.data());
    return;
  }
  CallbackRunner::runText(vxArrayToStdString(head), static_cast<int>(args.size()), args.data());
}

}  // namespace

CallbackRunner::CallbackRunner() {
  Installation& state = installation();
  if (state.users++ > 0) return;
  state.previousRunner = VCallback::setRunner(&CallbackRunner::runValue);
  state.textToken =
      vcos::FunctionDispatcher::instance().addTextCaller([](std::string_view text, int nrhs, const vxArray* prhs[]) {
        runText(text, nrhs, prhs);
        return true;
      });
}

CallbackRunner::~CallbackRunner() {
  Installation& state = installation();
  assert(state.users > 0 && "callback runner installations out of balance");
  if (--state.users > 0) return;
  VCallback::setRunner(std::exchange(state.previousRunner, nullptr));
  vcos::FunctionDispatcher::instance().removeTextCaller(std::exchange(state.textToken, 0));
}

void CallbackRunner::runValue(const vxArray* callback, COSInterface* source, COSEventData* data) {
  if (!callback || vxIsEmpty(callback)) return;
  if (!vxIsFunctionHandle(callback) && !vxIsCell(callback)) {
    Interpreter::current().runInBase(vxArrayToStdString(callback));
    return;
  }
  matrix::unique_vxArray src = objectArg(COSInterfacePtr(source));
  // Core event data has no class of its own: it goes as an event data object.
  matrix::unique_vxArray evt = objectArg(vcos::eventDataObject(source, data));
  std::vector<const vxArray*> args{src.get(), evt.get()};
  if (vxIsFunctionHandle(callback)) {
    callHead(callback, args);
    return;
  }
  for (vxSize i = 1, n = vxGetNumberOfElements(callback); i < n; ++i) args.push_back(vxGetCell(callback, i));
  callHead(vxGetCell(callback, 0), args);
}

void CallbackRunner::runText(std::string_view text, int nrhs, const vxArray* const prhs[]) {
  Interpreter& in = Interpreter::current();
  if (!isPlainName(text)) {
    in.runInBase(text);
    return;
  }
  std::vector<Value> args;
  args.reserve(static_cast<std::size_t>(nrhs));
  for (int i = 0; i < nrhs; ++i) args.push_back(Value::copyOf(prhs[i]));
  // Through a named handle, so that the call counts as the interpreter running.
  in.callHandleData(FunctionHandle(std::string(text)), args, 0);
}

}  // namespace sgsh
