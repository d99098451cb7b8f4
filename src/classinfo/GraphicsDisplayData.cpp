// The display data of graphics classes: a table by class, filled at
// start-up by the libraries that define the classes.
#include "sgutils/classinfo/GraphicsDisplayData.h"

#include <algorithm>
#include <utility>

#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"

namespace sgutils {

namespace {

struct Entry {
  COSID classId;
  std::shared_ptr<const GraphicsDisplayData> data;
};

// A handful of classes: a vector searched in order is enough. Written at
// start-up, read on the interpreter's thread.
std::vector<Entry>& table() {
  static std::vector<Entry> entries;
  return entries;
}

}  // namespace

GraphicsDisplayData::~GraphicsDisplayData() = default;

std::vector<GraphicsDisplayData::Group> GraphicsDisplayData::getPropertyGroups(COSInterface& object) const {
  Group group;
  const COSClass* cls = object.getClass();
  for (std::size_t i = 0, n = cls ? cls->getPropertyCount() : 0; i < n; ++i) {
    const COSPropInfo* p = cls->getPropertyAt(i);
    if (p->getMemberGetAccess() == PublicAccess && p->isVisible()) group.names.emplace_back(p->getName());
  }
  return {std::move(group)};
}

vxArray* GraphicsDisplayData::getDescriptiveLabelForDisplay(COSInterface&) const { return nullptr; }

void GraphicsDisplayData::setForClass(COSID classId, std::shared_ptr<const GraphicsDisplayData> data) {
  std::vector<Entry>& entries = table();
  auto it = std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.classId == classId; });
  if (it != entries.end()) entries.erase(it);
  if (data) entries.push_back({classId, std::move(data)});
}

const GraphicsDisplayData& GraphicsDisplayData::forClass(const COSClass* cls) {
  static const GraphicsDisplayData base;
  if (!cls) return base;
  const COSID id = cls->getID();
  for (const Entry& e : table())
    if (e.classId == id) return *e.data;
  return base;
}

}  // namespace sgutils
