#include "vcos/FindobjLender.h"

#include <algorithm>
#include <vector>

namespace vcos {

namespace {
template <class Function>
struct Entry {
  COSID definingClass;
  COSID name;
  Function function;
};
// A handful of entries, written at start-up, read when a search binds a
// property (once per class met), on the thread of the class-object system.
template <class Function>
std::vector<Entry<Function>>& entries() {
  static std::vector<Entry<Function>> list;
  return list;
}

template <class Function>
void set(COSID definingClass, COSID name, Function function) {
  auto& list = entries<Function>();
  std::erase_if(list, [&](const Entry<Function>& e) { return e.definingClass == definingClass && e.name == name; });
  if (function) list.push_back({definingClass, name, function});
}

template <class Function>
Function find(COSID definingClass, COSID name) noexcept {
  for (const Entry<Function>& e : entries<Function>())
    if (e.definingClass == definingClass && e.name == name) return e.function;
  return nullptr;
}
}  // namespace

void setFindobjLender(COSID definingClass, COSID name, FindobjLender lender) { set(definingClass, name, lender); }
FindobjLender findobjLender(COSID definingClass, COSID name) noexcept { return find<FindobjLender>(definingClass, name); }

void setFindobjKey(COSID definingClass, COSID name, FindobjKey key) { set(definingClass, name, key); }
FindobjKey findobjKey(COSID definingClass, COSID name) noexcept { return find<FindobjKey>(definingClass, name); }

}  // namespace vcos
