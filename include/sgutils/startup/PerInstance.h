// The two-form cache of every per-instance value of the library (a cached
// namespace, class, event info or flag). When the class system keeps its
// state in the per-instance store (omGetVcosUsingUSM), the value lives in a
// slot of foundation::usm and exists once per interpreter instance;
// otherwise it is a function-local static, made once under the thread-safe
// static guard. The choice is made at each access.
#pragma once

#include <memory>
#include <typeinfo>
#include <utility>

#include "foundation/usm/Detail.h"
#include "vcos/ObjectCalls.h"

namespace sgutils {

// `Tag` names the value (one slot per tag); `T` is its type, made with
// `make()` on first access in each instance. `make` must return a T.
template <class Tag, class T>
class PerInstance {
 public:
  template <class Make>
  static T& get(Make&& make) {
    if (omGetVcosUsingUSM()) {
      using Store = foundation::usm::Detail<foundation::usm::scope::Vvm>;
      static const Store::ID slot = Store::getNextID(typeid(PerInstance));
      if (void* found = Store::find(slot, typeid(PerInstance))) return *static_cast<T*>(found);
      return *static_cast<T*>(Store::findOrInsert(slot, typeid(PerInstance), foundation::usm::makeValue<T>(make())));
    }
    static T value = make();
    return value;
  }
};

}  // namespace sgutils
