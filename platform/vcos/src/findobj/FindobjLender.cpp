#include "vcos/FindobjLender.h"

#include <algorithm>
#include <vector>

namespace vcos {

namespace {
struct Entry {
  COSID definingClass;
  COSID name;
  FindobjLender lender;
};
// A handful of entries, written at start-up, read when a search binds a
// property (once per class met), on the thread of the class-object system.
std::vector<Entry>& entries() {
  static std::vector<Entry> list;
  return list;
}
}  // namespace

void setFindobjLender(COSID definingClass, COSID name, FindobjLender lender) {
  auto& list = entries();
  std::erase_if(list, [&](const Entry& e) { return e.definingClass == definingClass && e.name == name; });
  if (lender) list.push_back({definingClass, name, lender});
}

FindobjLender findobjLender(COSID definingClass, COSID name) noexcept {
  for (const Entry& e : entries())
    if (e.definingClass == definingClass && e.name == name) return e.lender;
  return nullptr;
}

}  // namespace vcos
