// Counted pointer to any class-system object. Reference type 0 is strong;
// type 2 does not keep the target alive (only its memory). A pointer built by
// copy takes the reference type of its source unless one is given; assignment
// keeps the reference type of the pointer assigned to, so a weak member stays
// weak whatever is stored in it.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

#include "vcos/COSInterface.h"

enum COSReferenceType : unsigned char {
  COSStrongReference = 0,
  COSWeakReference = 2,
};

class COSInterfacePtr {
 public:
  COSInterfacePtr() noexcept = default;
  COSInterfacePtr(std::nullptr_t) noexcept {}
  COSInterfacePtr(COSInterface* p, int referenceType = COSStrongReference) noexcept
      : p_(p), type_(static_cast<unsigned char>(referenceType)) {
    if (p_) p_->addReference(type_);
  }
  COSInterfacePtr(const COSInterfacePtr& o) noexcept : COSInterfacePtr(o.p_, o.type_) {}
  COSInterfacePtr(const COSInterfacePtr& o, int referenceType) noexcept : COSInterfacePtr(o.p_, referenceType) {}
  COSInterfacePtr(COSInterfacePtr&& o) noexcept : p_(std::exchange(o.p_, nullptr)), type_(o.type_) {}
  ~COSInterfacePtr() { reset(); }

  COSInterfacePtr& operator=(const COSInterfacePtr& o) {
    COSInterfacePtr(o.p_, type_).swap(*this);
    return *this;
  }
  COSInterfacePtr& operator=(COSInterfacePtr&& o) noexcept {
    COSInterfacePtr tmp(std::move(o));
    if (tmp.type_ != type_) tmp.setReferenceType(type_);
    tmp.swap(*this);
    return *this;
  }
  COSInterfacePtr& operator=(COSInterface* p) {
    COSInterfacePtr(p, type_).swap(*this);
    return *this;
  }

  void reset() {
    if (COSInterface* p = std::exchange(p_, nullptr)) p->releaseReference(type_);
  }

  // Changes the kind of reference in place; the target is kept.
  void setReferenceType(int referenceType) {
    if (referenceType == type_) return;
    if (p_) p_->addReference(referenceType);
    COSInterface* p = p_;
    int old = type_;
    type_ = static_cast<unsigned char>(referenceType);
    if (p) p->releaseReference(old);
  }
  int getReferenceType() const noexcept { return type_; }

  COSInterface* get() const noexcept { return p_; }
  COSInterface* operator->() const noexcept { return p_; }
  COSInterface& operator*() const noexcept { return *p_; }
  operator COSInterface*() const noexcept { return p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }
  bool isNull() const noexcept { return p_ == nullptr; }

  void swap(COSInterfacePtr& o) noexcept {
    std::swap(p_, o.p_);
    std::swap(type_, o.type_);
  }

  friend bool operator==(const COSInterfacePtr& a, const COSInterfacePtr& b) noexcept { return a.p_ == b.p_; }
  friend bool operator==(const COSInterfacePtr& a, std::nullptr_t) noexcept { return a.p_ == nullptr; }

 private:
  COSInterface* p_ = nullptr;
  unsigned char type_ = COSStrongReference;
};

template <>
struct std::hash<COSInterfacePtr> {
  size_t operator()(const COSInterfacePtr& p) const noexcept { return std::hash<COSInterface*>()(p.get()); }
};
