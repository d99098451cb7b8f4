#include "src/persistence/SavedPropertyList.h"

#include <cstring>
#include <memory>
#include <unordered_map>

#include "src/copy/ArrayValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSVisitor.h"

namespace sgutils::persistence {

namespace {

class SavedPropertyVisitor final : public COSVisitor {
 public:
  explicit SavedPropertyVisitor(SavedPropertyList& list) : list_(list) {}
  bool visitProperty(COSClass*, COSPropInfo* property) override {
    // A property overridden in a subclass arrives again through its base:
    // the first visit (the most derived class) counts.
    const COSID name(property->getName());
    for (const COSID& seen : names_)
      if (seen == name) return true;
    names_.push_back(name);
    if (property->isTransient() || property->isDependent()) return true;
    const char* text = property->getName();
    if (std::strcmp(text, "Parent") == 0 || std::strcmp(text, "Children") == 0) return true;
    if (!copy::hasArrayForm(property->getDataType())) return true;
    list_.properties.push_back(property);
    return true;
  }

 private:
  SavedPropertyList& list_;
  std::vector<COSID> names_;
};

}  // namespace

const SavedPropertyList& SavedPropertyList::of(COSClass* cls) {
  // Interpreter thread only, as all class-system work; classes live for the
  // process, so a list does too.
  static std::unordered_map<const COSClass*, std::unique_ptr<SavedPropertyList>> lists;
  auto found = lists.find(cls);
  if (found != lists.end()) return *found->second;
  auto list = std::make_unique<SavedPropertyList>();
  SavedPropertyVisitor visitor(*list);
  cls->acceptPropertyVisitor(visitor);
  return *lists.emplace(cls, std::move(list)).first->second;
}

bool SavedPropertyList::isMode(const COSPropInfo* property) {
  const char* name = property->getName();
  const std::size_t n = std::strlen(name);
  return n > 4 && std::strcmp(name + n - 4, "Mode") == 0;
}

}  // namespace sgutils::persistence
