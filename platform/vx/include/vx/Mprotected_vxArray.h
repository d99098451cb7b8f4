// Holder that destroys an array at the end of a scope or with its owner.
#pragma once

#include <utility>

#include "vx/matrix.h"

class Mprotected_vxArray {
 public:
  Mprotected_vxArray() noexcept = default;
  // With owns == true the holder destroys the array; with false it only refers to it.
  Mprotected_vxArray(vxArray* array, bool owns) noexcept : array_(array), owns_(owns) {}
  Mprotected_vxArray(const Mprotected_vxArray&) = delete;
  Mprotected_vxArray& operator=(const Mprotected_vxArray&) = delete;
  Mprotected_vxArray(Mprotected_vxArray&& o) noexcept
      : array_(std::exchange(o.array_, nullptr)), owns_(std::exchange(o.owns_, false)) {}
  Mprotected_vxArray& operator=(Mprotected_vxArray&& o) noexcept {
    Mprotected_vxArray(std::move(o)).swap(*this);
    return *this;
  }
  ~Mprotected_vxArray() {
    if (owns_ && array_) matrix::destroyArray(array_);
  }

  vxArray* get() const noexcept { return array_; }
  // Gives up ownership and returns the array.
  vxArray* release() noexcept {
    owns_ = false;
    return std::exchange(array_, nullptr);
  }
  void reset(vxArray* array = nullptr, bool owns = true) noexcept { Mprotected_vxArray(array, owns).swap(*this); }
  void swap(Mprotected_vxArray& o) noexcept {
    std::swap(array_, o.array_);
    std::swap(owns_, o.owns_);
  }

 private:
  vxArray* array_ = nullptr;
  bool owns_ = false;
};
