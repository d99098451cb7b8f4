#include "sgutils/persistence/SavedFieldsExtension.h"

#include <memory>
#include <string>
#include <utility>

#include "vcos/COSClass.h"

namespace sgutils {

namespace {
struct Entry {
  COSID classId;
  std::unique_ptr<SavedFieldsExtension> extension;
};
// Few entries (one per class with an extension), in registration order;
// interpreter thread only.
std::vector<Entry>& entries() {
  static std::vector<Entry> list;
  return list;
}
}  // namespace

void SavedFieldsExtension::add(const char* className, Save save, Load load) {
  const COSID id(className);
  auto extension = std::make_unique<SavedFieldsExtension>();
  extension->save = std::move(save);
  extension->load = std::move(load);
  for (Entry& e : entries())
    if (e.classId == id) {
      e.extension = std::move(extension);
      return;
    }
  entries().push_back({id, std::move(extension)});
}

void SavedFieldsExtension::remove(const char* className) {
  const COSID id(className);
  std::erase_if(entries(), [&](const Entry& e) { return e.classId == id; });
}

std::vector<const SavedFieldsExtension*> SavedFieldsExtension::of(const COSClass* cls) {
  std::vector<const SavedFieldsExtension*> out;
  if (!cls) return out;
  for (const Entry& e : entries())
    if (cls->isSubclassOf(e.classId)) out.push_back(e.extension.get());
  return out;
}

}  // namespace sgutils
