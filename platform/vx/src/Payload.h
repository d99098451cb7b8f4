// Not installed; internal to the array runtime.
//
// The shared, counted part of an array: the elements. Array headers point at a
// payload; a shared copy is a second header on the same payload, and a write
// through either header first gives it a private payload (copy-on-write).
// Counts are plain integers: arrays are used on the interpreter's thread.
#pragma once

#include <cassert>
#include <cstdint>
#include <utility>

#include "vx/vxTypes.h"

namespace vx::impl {

class PayloadRef;
class Payload;

// Deletes a payload whose last reference ended. Payloads freed while
// another is being freed (the elements of a cell inside a cell ...) are
// queued and freed in turn by the outermost call, so a value nested
// 100,000 deep is freed without a deep stack.
void destroyPayload(Payload* p) noexcept;

class Payload {
 public:
  // Shallow: cell and struct elements become shared copies of the source's
  // elements. Deep: elements are duplicated in turn.
  enum class Depth { Shallow, Deep };

  Payload() = default;
  Payload(const Payload&) = delete;
  Payload& operator=(const Payload&) = delete;
  virtual ~Payload();

  virtual PayloadRef clone(Depth depth) const = 0;
  // Changes the element count; new elements are zero or empty.
  virtual void resize(vxSize numel) = 0;
  // True when class-system objects are reachable from the elements.
  virtual bool holdsObjects() const = 0;

  bool isShared() const noexcept { return refs_ > 1; }

 protected:
  // Set by NumericPayload, so that destroyPayload tells it apart without a
  // virtual call.
  bool numeric_ = false;

 private:
  friend class PayloadRef;
  friend void destroyPayload(Payload* p) noexcept;
  std::uint32_t refs_ = 0;
};

// Counted reference to a payload.
class PayloadRef {
 public:
  PayloadRef() noexcept = default;
  explicit PayloadRef(Payload* p) noexcept : p_(p) {
    if (p_) ++p_->refs_;
  }
  PayloadRef(const PayloadRef& o) noexcept : PayloadRef(o.p_) {}
  PayloadRef(PayloadRef&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  PayloadRef& operator=(PayloadRef o) noexcept {
    std::swap(p_, o.p_);
    return *this;
  }
  ~PayloadRef() {
    if (p_ && --p_->refs_ == 0) destroyPayload(p_);
  }

  Payload* get() const noexcept { return p_; }
  Payload* operator->() const noexcept { return p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }

 private:
  Payload* p_ = nullptr;
};

// Builds a payload owned by a fresh reference.
template <class T, class... Args>
PayloadRef makePayload(Args&&... args) {
  return PayloadRef(new T(std::forward<Args>(args)...));
}

}  // namespace vx::impl
