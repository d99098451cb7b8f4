// A counted pointer typed to one face (class, property, method, data type).
// The helper's getObject turns a general pointer into the typed one, or null.
#pragma once

#include "vcos/COSCasts.h"
#include "vcos/COSInterfacePtr.h"

template <class T, class Helper>
class COSSpecializedInterfacePtr {
 public:
  COSSpecializedInterfacePtr() noexcept = default;
  COSSpecializedInterfacePtr(std::nullptr_t) noexcept {}
  explicit COSSpecializedInterfacePtr(const COSInterfacePtr& p) : p_(Helper::getObject(p) ? p : COSInterfacePtr()) {}
  explicit COSSpecializedInterfacePtr(T* object) : p_(object) {}

  // T must be complete where this is used.
  T* get() const noexcept { return static_cast<T*>(p_.get()); }
  T* operator->() const noexcept { return get(); }
  T& operator*() const noexcept { return *get(); }
  explicit operator bool() const noexcept { return !p_.isNull(); }
  bool isNull() const noexcept { return p_.isNull(); }
  const COSInterfacePtr& getInterface() const noexcept { return p_; }

  friend bool operator==(const COSSpecializedInterfacePtr& a, const COSSpecializedInterfacePtr& b) noexcept {
    return a.p_ == b.p_;
  }

 private:
  COSInterfacePtr p_;
};

struct COSClassPtrHelper {
  static COSClass* getObject(const COSInterfacePtr& p) noexcept { return cosiToClass(p.get()); }
};
struct COSPropInfoPtrHelper {
  static COSPropInfo* getObject(const COSInterfacePtr& p) noexcept { return cosiToProp(p.get()); }
};
struct COSMethodInfoPtrHelper {
  static COSMethodInfo* getObject(const COSInterfacePtr& p) noexcept { return cosiToMethod(p.get()); }
};
