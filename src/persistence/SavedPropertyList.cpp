#include "src/persistence/SavedPropertyList.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "src/copy/ArrayValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
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
  const std::size_t n = list->properties.size();
  list->group.resize(n);
  list->omit.resize(n);
  list->mode.resize(n);
  for (std::size_t k = 0; k < n; ++k) {
    const COSPropInfo* property = list->properties[k];
    list->group[k] = k;
    list->mode[k] = isMode(property) ? 1 : 0;
    if (std::strcmp(property->getName(), "SerializableApplicationData") == 0)
      list->applicationData = static_cast<std::ptrdiff_t>(k);
    list->byName.emplace(property->getName(), k);
    std::string_view name = property->getName();
    if (!isMode(property)) {
      if (name.size() > 2 && name.ends_with("_I")) name.remove_suffix(2);
      const std::string mode = std::string(name) + "Mode";
      for (std::size_t m = 0; m < n; ++m)
        if (mode == list->properties[m]->getName()) list->group[k] = m;
    }
    const COSDataTypePtr type = property->getDataType();
    list->types.push_back(type);
    using Omit = SavedPropertyList::Omit;
    if (!type) list->omit[k] = Omit::Never;
    else if (type->isVANTELArrayType()) list->omit[k] = Omit::WhenArrayBitsEqual;
    else if (type->canContainInterfaces()) list->omit[k] = Omit::WhenEqualWithoutObjects;
    else if (const std::string_view t = type->getName(); t == "double scalar" || t == "single scalar" || t == "double")
      list->omit[k] = Omit::WhenBitsEqual;
    else list->omit[k] = Omit::WhenEqual;
  }
  return *lists.emplace(cls, std::move(list)).first->second;
}

bool SavedPropertyList::isMode(const COSPropInfo* property) {
  const char* name = property->getName();
  const std::size_t n = std::strlen(name);
  return n > 4 && std::strcmp(name + n - 4, "Mode") == 0;
}

}  // namespace sgutils::persistence
