// The graphics library for the life of an sgsh session: started, its
// built-ins registered, its shared object added to the function dispatcher,
// and ended after the language. sgsh and the test shells share it.
#pragma once

namespace sgsh {

class GraphicsSession {
 public:
  GraphicsSession();
  ~GraphicsSession();
  GraphicsSession(const GraphicsSession&) = delete;
  GraphicsSession& operator=(const GraphicsSession&) = delete;

 private:
  void* handle_ = nullptr;
};

}  // namespace sgsh
