// The list form that a class info or property returns: a plain sequence.
#pragma once

#include <cstddef>
#include <vector>

#include "vcos/ENoElements.h"

template <class T>
class Enumeration {
 public:
  Enumeration() = default;
  explicit Enumeration(std::vector<T> items) : items_(std::move(items)) {}
  void add(T item) { items_.push_back(std::move(item)); }
  bool hasMoreElements() const noexcept { return next_ < items_.size(); }
  // Past the end: ENoElements, as with COSIterator.
  const T& nextElement() {
    if (next_ >= items_.size()) throw ENoElements();
    return items_[next_++];
  }
  std::size_t size() const noexcept { return items_.size(); }
  const std::vector<T>& items() const noexcept { return items_; }

 private:
  std::vector<T> items_;
  std::size_t next_ = 0;
};
