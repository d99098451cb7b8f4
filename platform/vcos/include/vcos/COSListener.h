// A registered listener: a counted object that owns its callback. A listener
// can be disabled, and removed (then it never runs again, even from a
// notification already under way).
#pragma once

#include <memory>

#include "vcos/COSInterface.h"
#include "vcos/COSInterfacePtr.h"

class COSListenerOp;

class VCOS_API COSListener : public COSInterface {
 public:
  // Takes the op. The result holds the only reference.
  static COSInterfacePtr createListener(COSListenerOp* op);
  // The same, typed; convenient in C++.
  static COSListener* toListener(const COSInterfacePtr& p) noexcept;

  bool isEnabled() const noexcept { return enabled_ && !removed_; }
  void setEnabled(bool enabled) noexcept { enabled_ = enabled; }
  // Once removed, a listener is skipped by every notification.
  void markRemoved() noexcept { removed_ = true; }
  bool isRemoved() const noexcept { return removed_; }
  // Whether the listener may run while it is already running (default no).
  void setRecursive(bool recursive) noexcept { recursive_ = recursive; }

  // Runs the callback unless disabled, removed, or already running without
  // the recursive mark.
  void fire(COSInterface* source, COSEventData* data);
  // Whether the op reads the event data it is handed (see COSListenerOp).
  bool readsEventData() const noexcept;
  // False only when fire would certainly do nothing for this source now:
  // disabled, removed, already running without the recursive mark, or the
  // op says so (COSListenerOp::mayRunFor).
  bool mayRunFor(COSInterface* source) const noexcept;
  // What the op answers for the instances of a class without properties
  // added at run time (COSListenerOp::mayRunForInstancesOf).
  bool mayRunForInstancesOf(const COSClass* cls) const noexcept;

 protected:
  ~COSListener() override;

 private:
  explicit COSListener(COSListenerOp* op);
  std::unique_ptr<COSListenerOp> op_;
  bool enabled_ = true;
  bool removed_ = false;
  bool recursive_ = false;
  int running_ = 0;
};
