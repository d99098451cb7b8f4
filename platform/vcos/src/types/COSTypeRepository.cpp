// The table of data types by name, and the conversion tables. Class-typed
// names are made on first request and kept, and so is the conversion from
// "asciiString" to any type that can be made from an array.
#include "vcos/COSTypeRepository.h"

#include <map>
#include <memory>
#include <unordered_map>

#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/src/types/BasicTypes.h"
#include "vcos/src/types/TextConversion.h"
#include "vcos/COSDataType.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/JavaTypeConversion.h"

namespace {

struct Tables {
  std::unordered_map<COSID, COSDataTypePtr> types;
  std::map<std::pair<COSID, COSID>, std::unique_ptr<COSTypeConversion>> conversions;
  std::unordered_map<COSID, std::unique_ptr<COSTypeConversion>> foreign;
  // From text to a type, made on first request (TextConversion.h).
  std::unordered_map<COSID, std::unique_ptr<COSTypeConversion>> fromText;
};

Tables& tables() {
  static auto* t = new Tables;  // types live for the life of the process
  static bool started = false;
  if (!started) {
    started = true;
    vcos::internal::registerBasicTypes();
  }
  return *t;
}

}  // namespace

COSDataTypePtr COSTypeRepository::getType(COSID id) {
  if (!id) return {};
  Tables& t = tables();
  if (auto it = t.types.find(id); it != t.types.end()) return it->second;
  COSDataType* made = vcos::internal::makeClassType(id);
  if (!made) return {};
  COSDataTypePtr ptr(made);
  t.types.emplace(id, ptr);
  return ptr;
}

void COSTypeRepository::addType(COSDataType* type) {
  assert(type && "addType needs a type");
  COSDataTypePtr ptr(type);
  Tables& t = tables();
  if (!t.types.emplace(type->getID(), ptr).second)
    throw foundation::core::except::Error(vcos::msg::ExistingName, type->getID().str());
}

COSTypeConversion* COSTypeRepository::getConversion(COSID from, COSID to) {
  Tables& t = tables();
  auto it = t.conversions.find({from, to});
  if (it != t.conversions.end()) return it->second.get();
  static const COSID text("asciiString"), any("any");
  if (from != text || (to != any && !t.conversions.contains({any, to}))) return nullptr;
  std::unique_ptr<COSTypeConversion>& made = t.fromText[to];
  if (!made) made = std::make_unique<vcos::internal::TextConversion>(to);
  return made.get();
}

COSTypeConversion* COSTypeRepository::getArrayConversion(const COSDataType& type, bool toArray) {
  static const COSID any("any"), handle("handle scalar");
  const COSID id = type.getID();
  COSTypeConversion* c = toArray ? getConversion(id, any) : getConversion(any, id);
  if (!c && !type.isVANTELArrayType() && type.canContainInterfaces())
    c = toArray ? getConversion(handle, any) : getConversion(any, handle);
  return c;
}

void COSTypeRepository::addConversion(COSID from, COSID to, COSTypeConversion* conversion) {
  tables().conversions[{from, to}].reset(conversion);
}

void COSTypeRepository::removeConversion(COSID from, COSID to) { tables().conversions.erase({from, to}); }

void JavaTypeConversion::addConversion(COSID id, COSTypeConversion* conversion) { tables().foreign[id].reset(conversion); }

COSTypeConversion* JavaTypeConversion::getConversion(COSID id) {
  Tables& t = tables();
  auto it = t.foreign.find(id);
  return it == t.foreign.end() ? nullptr : it->second.get();
}

void JavaTypeConversion::removeConversion(COSID id) { tables().foreign.erase(id); }
