// The table of data types by name, and the conversion tables. Class-typed
// names are made on first request and kept, and so is the conversion from
// "asciiString" to any type that can be made from an array.
#include "vcos/COSTypeRepository.h"
#include "vcos/PropertyRouteEpoch.h"

#include <array>
#include <atomic>
#include <cstdint>
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

namespace {

// Bumped by every change of the conversion tables, so that the answers of
// getArrayConversion kept below are never stale.
std::atomic<std::uint64_t> conversionGeneration{1};

COSTypeConversion* lookUpArrayConversion(const COSDataType& type, bool toArray) {
  static const COSID any("any"), handle("handle scalar");
  const COSID id = type.getID();
  COSTypeConversion* c = toArray ? COSTypeRepository::getConversion(id, any) : COSTypeRepository::getConversion(any, id);
  if (!c && !type.isVANTELArrayType() && type.canContainInterfaces())
    c = toArray ? COSTypeRepository::getConversion(handle, any) : COSTypeRepository::getConversion(any, handle);
  return c;
}

}  // namespace

COSTypeConversion* COSTypeRepository::getArrayConversion(const COSDataType& type, bool toArray) {
  const COSID id = type.getID();
  // Property gets and sets by name ask this for the same few types over and
  // over; the last answers per type and direction are kept, per thread.
  struct Kept {
    const void* id = nullptr;
    bool toArray = false;
    std::uint64_t generation = 0;
    COSTypeConversion* conversion = nullptr;
  };
  thread_local std::array<Kept, 16> kept{};
  Kept& k = kept[((reinterpret_cast<std::uintptr_t>(id.entry()) >> 4) * 2 + toArray) & 15];
  const std::uint64_t generation = conversionGeneration.load(std::memory_order_relaxed);
  if (k.id == id.entry() && k.toArray == toArray && k.generation == generation) return k.conversion;
  COSTypeConversion* c = lookUpArrayConversion(type, toArray);
  k = {id.entry(), toArray, generation, c};
  return c;
}

void COSTypeRepository::addConversion(COSID from, COSID to, COSTypeConversion* conversion) {
  tables().conversions[{from, to}].reset(conversion);
  ++conversionGeneration;
  vcos::bumpPropertyRouteEpoch();
}

void COSTypeRepository::removeConversion(COSID from, COSID to) {
  tables().conversions.erase({from, to});
  ++conversionGeneration;
  vcos::bumpPropertyRouteEpoch();
}

void JavaTypeConversion::addConversion(COSID id, COSTypeConversion* conversion) { tables().foreign[id].reset(conversion); }

COSTypeConversion* JavaTypeConversion::getConversion(COSID id) {
  Tables& t = tables();
  auto it = t.foreign.find(id);
  return it == t.foreign.end() ? nullptr : it->second.get();
}

void JavaTypeConversion::removeConversion(COSID id) { tables().foreign.erase(id); }
