#include "sgutils/copy/ParentConnector.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"

namespace sgutils::copy {

namespace {

struct Entry {
  COSID definingClass;
  ParentConnector::Connect connect = nullptr;
};

// Interpreter thread only, as all class-system work. A family registers
// when its class is built; its function checks the object it is given.
std::array<Entry, 4> gEntries;

}  // namespace

void ParentConnector::set(COSID definingClass, Connect connect) {
  for (Entry& entry : gEntries)
    if (entry.definingClass == definingClass || !entry.connect) {
      entry = {definingClass, connect};
      return;
    }
}

ParentConnector::Connect ParentConnector::find(const COSPropInfo* parent) {
  if (!parent || !parent->getDefiningClass() || std::strcmp(parent->getName(), "Parent") != 0) return nullptr;
  const COSID definingClass = parent->getDefiningClass()->getID();
  for (const Entry& entry : gEntries)
    if (entry.connect && entry.definingClass == definingClass) return entry.connect;
  return nullptr;
}

}  // namespace sgutils::copy
