// The default store of one object: the view, name resolution, reading with
// inheritance up the "Parent" chain, writing, removing, and the look-ups by
// class (DefaultProp.h). Applying defaults is in DefaultPropApply.cpp.
#include "sgutils/defaults/DefaultProp.h"

#include <cctype>
#include <functional>
#include <map>
#include <unordered_map>
#include <string_view>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/bad_alloc.h"
#include "sgdatatypes/ClassNameMap.h"
#include "sgutils/defaults/BadDefaultPropNameException.h"
#include "sgutils/defaults/ClassNameLookupException.h"
#include "sgutils/defaults/StoredDefaultsEpoch.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/propinfos/PropInfoLookup.h"
#include "src/defaults/DefaultValueConversion.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxMemory.h"
#include "vcos/VxProperty.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"
#include "vx/vxText.h"

namespace sgutils {

using foundation::core::except::Error;

namespace {

constexpr std::size_t kPrefixLength = 7;  // "default"

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

// Removes the first occurrence of `word`, compared without regard to case.
void eraseFirstIgnoringCase(std::string& text, std::string_view word) {
  if (word.empty() || text.size() < word.size()) return;
  for (std::size_t i = 0; i + word.size() <= text.size(); ++i) {
    if (equalsIgnoringCase(std::string_view(text).substr(i, word.size()), word)) {
      text.erase(i, word.size());
      return;
    }
  }
}

std::string fullClassName(const DefaultPropString& name) {
  const std::string ns = name.getNamespaceName();
  return ns.empty() ? name.getClassName() : ns + "." + name.getClassName();
}

vxArray* sharedCopyOf(const vxArray* value) {
  vxArray* copy = vxCreateSharedCopyNotOnArrayList(value);
  if (!copy) throw foundation::core::except::bad_alloc();
  return copy;
}

// The object's parent as its "Parent" property gives it, or null.
COSInterfacePtr parentOf(const COSInterfacePtr& object) {
  static const COSID parentId("Parent");
  if (!object || object->isDestroyed() || !object->findPropertyInfo(parentId)) return nullptr;
  matrix::unique_vxArray self(omCreateVCOSScalar(object));
  matrix::unique_vxArray parent(vxGetProperty(self.get(), 0, "Parent"));
  if (!parent || !omIsVCOS(parent.get()) || vxIsEmpty(parent.get())) return nullptr;
  return omGetLiveArrayElement(parent.get(), 0);
}

// A scalar text value ("default", "remove", ...) as UTF-8; empty otherwise.
bool scalarText(const vxArray* value, std::string& out) {
  if (!value) return false;
  if (vxIsChar(value) ? vxGetM(value) == 1 : vxIsString(value) && vxIsScalar(value)) {
    char* text = vxCreateCStrFromArray(value);
    if (!text) return false;
    out = text;
    vxFreeEx(text);
    return true;
  }
  return false;
}

// The full class name of a stored field name. A field whose name no longer
// parses (its class has no short name, as with a store read from a file)
// belongs to no class, rather than stopping the look-up for all others.
bool parsedClassOf(const char* fieldName, std::string& out) {
  try {
    out = fullClassName(DefaultPropString(fieldName, false));
    return true;
  } catch (const foundation::core::except::IMsgIDException&) {
  } catch (const BadDefaultPropNameException&) {
  } catch (const ClassNameLookupException&) {
  }
  return false;
}

// The index of stored names: the full class of each field name seen, parsed
// once per process rather than once per store and new object. Field names
// parse the same way for the whole process (the class-name maps are fixed),
// so the index never goes stale; it is bounded by emptying it when it grows
// past a size that real stores never reach. Interpreter thread only.
struct ParsedField {
  bool parsed = false;
  std::string fullClass;
  // The property name left once "default" and the short class name are
  // taken out, made on the first application and kept with the short name
  // it was made for.
  std::string strippedFor;
  std::string stripped;
  // The stripped name interned, with its mode and internal faces.
  COSID strippedId, modeId, internalId;
};

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>()(s); }
};

// Interned once: a view is taken per ancestor of every new object.
COSID storePropertyId() {
  static const COSID id("DefaultPropMap_Internal");
  return id;
}

ParsedField& parsedField(const char* fieldName) {
  static std::unordered_map<std::string, ParsedField, NameHash, std::equal_to<>> index;
  constexpr std::size_t kMaxNames = 4096;
  if (const auto it = index.find(std::string_view(fieldName)); it != index.end()) return it->second;
  if (index.size() >= kMaxNames) index.clear();
  ParsedField entry;
  entry.parsed = parsedClassOf(fieldName, entry.fullClass);
  return index.emplace(fieldName, std::move(entry)).first->second;
}

}  // namespace

DefaultProp::DefaultProp(COSInterfacePtr object)
    : object_(object, COSWeakReference), propertyId_(storePropertyId()), handleData_(toSGHandle(object)) {
  if (!handleData_ || !handleData_->getLoadedFromFile()) return;
  // The saved store travels in a dynamic property; it moves into the store
  // once, and the dynamic property goes.
  static const COSID savedId("InternalDefaultPropMap");
  COSInterfacePtr saved;
  object_->findDynamicProperty(saved, savedId);
  if (COSPropInfo* savedProperty = cosiToProp(saved.get())) {
    COSInterface* self = object_.get();
    {
      const BorrowedPropertyValue value = BorrowedPropertyValue::read(self, COSGetPublicClient(), savedProperty);
      handleData_->setDefaultProp(value.get().asPointer<const vxArray>());
    }
    self->removeDynamicProperty(savedProperty);
  }
  handleData_->setLoadedFromFile(false);
}

vxArray* DefaultProp::store() const noexcept { return handleData_ ? handleData_->getDefaultPropForEdit() : nullptr; }

vxArray* DefaultProp::ensureStore() {
  if (!handleData_) return nullptr;
  if (!handleData_->getDefaultProp()) {
    matrix::unique_vxArray empty(vxCreateStructMatrix(1, 1, 0, nullptr));
    handleData_->setDefaultProp(empty.get());
  }
  return handleData_->getDefaultPropForEdit();
}

const vxArray* DefaultProp::getDefaultPropArray() const noexcept { return store(); }

matrix::unique_vxArray DefaultProp::get() const {
  const vxArray* s = store();
  return matrix::unique_vxArray(s ? sharedCopyOf(s) : nullptr);
}

matrix::unique_vxArray DefaultProp::getDefaults(const COSInterfacePtr& object) { return DefaultProp(object).get(); }

COSPropInfo* DefaultProp::resolve(const DefaultPropString& name) {
  const std::string className = fullClassName(name);
  COSClass* cls = COSClass::getClass(COSID(className.c_str()));
  if (!cls) return nullptr;
  const std::string propName = name.getPropName();
  if (propName.empty()) throw Error("VANTEL:sgutils:EmptyPropName", className);
  COSPropInfo* property = cls->findPropertyExact(COSID(propName.c_str()));
  if (!property) {
    // A shortened name finds the property it stands for.
    if (COSPropInfo* match = getAmbiguousMatchingPropInfo(cls, propName.c_str()))
      property = cls->findPropertyExact(COSID(match->getName()));
  }
  if (!property) throw Error("VANTEL:sg:InvalidProperty", propName, cls->getName());
  // "Parent" never has a default, whatever its flags say.
  if (!property->isDefaultAllowed() || name.isSettingDefaultParent())
    throw Error("VANTEL:sg:DefaultCannotBeSetGet", propName, cls->getName());
  return property;
}

matrix::unique_vxArray DefaultProp::get(const DefaultPropString& name) const {
  matrix::unique_vxArray themeValue;
  return get(name, themeValue);
}

matrix::unique_vxArray DefaultProp::get(const DefaultPropString& name, matrix::unique_vxArray& themeValue) const {
  if (const vxArray* s = store()) {
    COSPropInfo* property = resolve(name);
    if (!property) throw Error("VANTEL:sgutils:InvalidClass", name.getClassName(), name.getNamespaceName());
    DefaultPropString stored(name);
    if (stored.getPropName() != property->getName()) stored.setPropName(property->getName());
    const int field = vxGetFieldNumber(s, stored.getAsCompatStr().c_str());
    if (field >= 0) {
      if (const vxArray* value = vxGetFieldByNumber(s, 0, field)) {
        vxArray* copy = vxDuplicateArray(value);
        if (!copy) throw foundation::core::except::bad_alloc();
        return matrix::unique_vxArray(copy);
      }
    }
  }
  if (COSInterfacePtr parent = parentOf(object_)) {
    if (matrix::unique_vxArray found = DefaultProp(parent).get(name, themeValue)) return found;
  }
  return std::move(themeValue);
}

bool DefaultProp::contains(const DefaultPropString& name) const {
  const vxArray* s = store();
  return s && vxGetFieldNumber(s, name.getAsCompatStr().c_str()) >= 0;
}

void DefaultProp::set(const DefaultPropString& name, const vxArray* value) {
  vxArray* s = ensureStore();
  if (!s) return;
  COSPropInfo* property = resolve(name);
  if (!property) return;
  COSClass* cls = COSClass::getClass(COSID(fullClassName(name).c_str()));
  if (property->getMemberSetAccess() != PublicAccess) omIssueSetProhibitedError(property, cls);

  bool useFactory = false;
  matrix::unique_vxArray unescaped;
  std::string text;
  if (scalarText(value, text)) {
    if (text == "factory") {
      useFactory = true;
    } else if (text == "\\default" || text == "\\factory" || text == "\\remove") {
      unescaped.reset(vxCreateString(text.c_str() + 1));
      value = unescaped.get();
    }
  }
  const COSDataTypePtr type = property->getDataType();
  // Converting there and back validates the value against the type.
  matrix::unique_vxArray validated =
      useFactory ? detail::typedToArray(type, property->getFactoryDefault()) : detail::validatedCopy(type, value);

  const std::string fieldName =
      "default" + DefaultPropString(name.getNamespaceName(), name.getClassName(), property->getName(), false).getAsCompatStr();
  noteStoredDefaultsChanged();
  vxUnshareShallow(s);
  int field = vxGetFieldNumber(s, fieldName.c_str());
  if (field < 0) {
    field = vxAddFieldToStruct(s, fieldName.c_str());
    if (field < 0) throw foundation::core::except::bad_alloc();
  }
  vxArray* copy = validated ? vxCreateSharedCopyNotOnArrayList(validated.get()) : nullptr;
  if (validated && !copy) throw foundation::core::except::bad_alloc();
  vxSetFieldByNumber(s, 0, field, copy);
}

matrix::unique_vxArray DefaultProp::set(const DefaultPropString& name) const {
  COSPropInfo* property = resolve(name);
  if (!property) throw Error("VANTEL:sgutils:InvalidClass", name.getClassName(), name.getNamespaceName());
  const std::vector<std::string> values = property->getDataType()->getPossibleValues();
  if (values.empty()) return matrix::unique_vxArray(vxCreateCellMatrix(0, 0));
  matrix::unique_vxArray cell(vxCreateCellMatrix(values.size(), 1));
  for (std::size_t i = 0; i < values.size(); ++i) vxSetCell(cell.get(), i, vxCreateString(values[i].c_str()));
  return cell;
}

matrix::unique_vxArray DefaultProp::set() const {
  const vxArray* s = store();
  if (!s) return nullptr;
  const int n = vxGetNumberOfFields(s);
  std::vector<const char*> names(static_cast<std::size_t>(n));
  for (int f = 0; f < n; ++f) names[static_cast<std::size_t>(f)] = vxGetFieldNameByNumber(s, f);
  matrix::unique_vxArray result(vxCreateStructMatrix(1, 1, n, names.data()));
  for (int f = 0; f < n; ++f)
    vxSetFieldByNumber(result.get(), 0, f, set(DefaultPropString(names[static_cast<std::size_t>(f)], false)).release());
  return result;
}

void DefaultProp::remove(const DefaultPropString& name) {
  vxArray* s = store();
  if (!s) return;
  noteStoredDefaultsChanged();
  vxUnshareShallow(s);
  const std::string compat = name.getAsCompatStr();
  const int n = vxGetNumberOfFields(s);
  for (int f = 0; f < n; ++f) {
    if (equalsIgnoringCase(vxGetFieldNameByNumber(s, f), compat)) {
      vxSetFieldByNumber(s, 0, f, nullptr);
      vxRemoveField(s, f);
      return;
    }
  }
}

void DefaultProp::clear() {
  vxArray* s = store();
  if (!s) return;
  const vxClassID cls = vxGetClassID(s);
  // An object-compatible store (class 18) keeps no fields an array of this
  // runtime could drop one by one: it is emptied by an empty store in its
  // place, which frees it and the values it held.
  if (cls == vxOBJECT_CLASS) {
    handleData_->setDefaultProp(nullptr);
    return;
  }
  if (cls != vxSTRUCT_CLASS) return;
  noteStoredDefaultsChanged();
  vxUnshareShallow(s);
  for (int f = vxGetNumberOfFields(s) - 1; f >= 0; --f) {
    vxSetFieldByNumber(s, 0, f, nullptr);
    vxRemoveField(s, f);
  }
}

namespace {

// The full class name that a short class name maps to, as the pairs of a
// store are matched against it.
const std::string* mappedClassOf(const std::string& shortName) {
  const auto& classes = sgdatatypes::typemap::getClassNameMap();
  auto entry = classes.find(shortName);
  // An unknown short name compares against the map's first entry, which a
  // stored name of another class does not match.
  if (entry == classes.end()) entry = classes.begin();
  return entry == classes.end() ? nullptr : &entry->second;
}

// The short name and mapped class of the last class that defaults were
// applied for: new objects come in runs of one class, and each of their
// ancestors with a store asks again. The class-name maps are fixed for the
// process, so the entry never goes stale. Interpreter thread only.
struct LastClass {
  std::string className, shortName;
  const std::string* mapped = nullptr;
  bool known = false;
};

}  // namespace

void DefaultProp::appendPairsOfShortName(PropValuePairs& pairs, const std::string& shortName, bool stripNames) const {
  if (!store()) return;
  if (const std::string* mapped = mappedClassOf(shortName)) appendPairsOfClass(pairs, shortName, *mapped, stripNames);
}

void DefaultProp::appendPairsOfClass(PropValuePairs& pairs, const std::string& shortName, const std::string& mapped,
                                     bool stripNames) const {
  const vxArray* s = store();
  if (!s) return;
  const int n = vxGetNumberOfFields(s);
  for (int f = 0; f < n; ++f) {
    const char* fieldName = vxGetFieldNameByNumber(s, f);
    ParsedField& field = parsedField(fieldName);
    // The parsed class is spelled as the map spells it, so the exact
    // comparison settles nearly every field without the case rule.
    if (!field.parsed || (field.fullClass != mapped && !equalsIgnoringCase(field.fullClass, mapped)))
      continue;
    const vxArray* value = vxGetFieldByNumber(s, 0, f);
    matrix::unique_vxArray copy(value ? sharedCopyOf(value) : nullptr);
    if (!stripNames) {
      pairs.emplace_back(fieldName, std::move(copy));
      continue;
    }
    if (field.strippedFor != shortName) {
      std::string name(fieldName);
      eraseFirstIgnoringCase(name, "default");
      eraseFirstIgnoringCase(name, shortName);
      field.strippedId = COSID(std::string_view(name));
      field.modeId = COSID(std::string_view(name + "Mode"));
      field.internalId = COSID(std::string_view(name + "_I"));
      field.stripped = std::move(name);
      field.strippedFor = shortName;
    }
    pairs.emplace_back(DefaultPairName(field.strippedId, field.modeId, field.internalId), std::move(copy));
  }
}

void DefaultProp::appendDefaults(PropValuePairs& pairs, const std::string& className) const {
  appendDefaults(pairs, std::string_view(className));
}

void DefaultProp::appendDefaults(PropValuePairs& pairs, std::string_view className) const {
  if (!store()) return;
  static LastClass last;
  if (!last.known || last.className != className) {
    const auto& reverse = sgdatatypes::typemap::getReverseClassNameMap();
    const auto it = reverse.find(std::string(className));
    last.className = className;
    last.known = true;
    // A class without a short name cannot have defaults.
    last.mapped = it == reverse.end() ? nullptr : mappedClassOf(it->second);
    last.shortName = it == reverse.end() ? std::string() : it->second;
  }
  if (last.mapped) appendPairsOfClass(pairs, last.shortName, *last.mapped, /*stripNames=*/true);
}

matrix::unique_vxArray DefaultProp::getClassDefaults(const std::string& name) const {
  if (!store()) return nullptr;
  const std::string_view rest = std::string_view(name).substr(kPrefixLength);
  std::map<std::string, matrix::unique_vxArray> byField;
  for (const auto& [key, fullName] : sgdatatypes::typemap::getClassNameMap()) {
    if (key.size() < rest.size() || !equalsIgnoringCase(std::string_view(key).substr(0, rest.size()), rest)) continue;
    PropValuePairs pairs;
    appendPairsOfShortName(pairs, key, /*stripNames=*/false);
    for (auto& [field, value] : pairs) byField.try_emplace(field.str(), std::move(value));
  }
  std::vector<const char*> names;
  names.reserve(byField.size());
  for (const auto& entry : byField) names.push_back(entry.first.c_str());
  matrix::unique_vxArray result(vxCreateStructMatrix(1, 1, static_cast<int>(names.size()), names.data()));
  int f = 0;
  for (auto& entry : byField) vxSetFieldByNumber(result.get(), 0, f++, entry.second.release());
  return result;
}

}  // namespace sgutils
