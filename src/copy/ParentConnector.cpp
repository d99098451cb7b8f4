#include "sgutils/copy/ParentConnector.h"

#include <array>
#include <cstddef>

namespace sgutils::copy {

namespace {

struct Entry {
  const COSPropInfo* property = nullptr;
  ParentConnector::Connect connect = nullptr;
};

// Interpreter thread only, as all class-system work. A family registers
// when its class is built; its function checks the object it is given, so
// an entry left by a class since destroyed does no harm.
std::array<Entry, 4> gEntries;

}  // namespace

void ParentConnector::set(const COSPropInfo* parent, Connect connect) noexcept {
  for (Entry& entry : gEntries)
    if (entry.property == parent || !entry.property) {
      entry = {parent, connect};
      return;
    }
}

ParentConnector::Connect ParentConnector::find(const COSPropInfo* parent) noexcept {
  if (!parent) return nullptr;
  for (const Entry& entry : gEntries)
    if (entry.property == parent) return entry.connect;
  return nullptr;
}

}  // namespace sgutils::copy
