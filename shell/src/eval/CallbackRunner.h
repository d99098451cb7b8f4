// The language as the runner of callbacks that hold its values. While any
// interpreter is alive, graphics callbacks (VCallback) holding a function
// handle, a text or a cell run in the interpreter running code (else the
// newest alive), and listener callbacks given as text go to it too instead
// of only to the functions that the dispatcher knows.
//
// Each interpreter holds one instance; the first installs the runners, the
// last restores the ones that were there before, so interpreters may end in
// any order.
#pragma once

#include <string_view>

#include <vx/vxTypes.h>

class COSEventData;
class COSInterface;

namespace sgsh {

class CallbackRunner {
 public:
  CallbackRunner();
  ~CallbackRunner();
  CallbackRunner(const CallbackRunner&) = delete;
  CallbackRunner& operator=(const CallbackRunner&) = delete;

  // Runs a graphics callback value: a handle or a cell {handle or name,
  // extra...} is called with (source, event data, extra...); a text is
  // code run in the base workspace.
  static void runValue(const vxArray* callback, COSInterface* source, COSEventData* data);

  // Runs a callback text with its inputs: a plain name calls that function
  // (method, script function, built-in, dispatcher) with the inputs; any
  // other text is code run in the base workspace, without the inputs.
  static void runText(std::string_view text, int nrhs, const vxArray* const prhs[]);
};

}  // namespace sgsh
