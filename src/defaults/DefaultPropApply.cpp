// Applying defaults to an object: collecting the ancestors' stores for the
// object's class, and setting the pairs with the rules of the mode triples
// (DefaultProp::setPVPairs).
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/defaults/DefaultWalkScope.h"
#include "sgutils/defaults/StoredDefaultsEpoch.h"
#include "src/defaults/DefaultPairCollection.h"
#include "src/defaults/DefaultValueConversion.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"

namespace sgutils {

namespace {

struct AutoManualType {
  COSID id{"vantel.graphics.datatype.AutoManual"};
  COSDataTypePtr type{COSTypeRepository::getType(id)};
  COSTypeConversion* fromArray = COSTypeRepository::getConversion(COSID("any"), id);
};

// Made once per process, on first use.
const AutoManualType& autoManual() {
  static const AutoManualType t;
  return t;
}

COSPropInfo* findOn(COSInterface* object, COSID name) { return object->findPropertyInfo(name); }

// The property of exactly that name, of the class or dynamic. The mode and
// internal faces are looked for by their exact names: a miss must not fall
// back to the case-folded and truncated matching of user input, which
// would also gather every property of the class to match a prefix.
COSPropInfo* findExactOn(COSInterface* object, COSID name) {
  if (COSPropInfo* p = object->getClass()->findPropertyExact(name)) return p;
  COSInterfacePtr dynamic;
  object->findDynamicProperty(dynamic, name);
  return cosiToProp(dynamic.get());
}

// The interned names of a default's property, its mode and its internal
// face ("LineWidth", "LineWidthMode", "LineWidth_I"), made once per name
// for the process instead of once per pair and object. Bounded like the
// index of stored names. Interpreter thread only.
struct RelatedIds {
  COSID name, mode, internal;
};

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>()(s); }
};

const RelatedIds& relatedIds(const std::string& name) {
  static std::unordered_map<std::string, RelatedIds, NameHash, std::equal_to<>> ids;
  constexpr std::size_t kMaxNames = 4096;
  if (const auto it = ids.find(std::string_view(name)); it != ids.end()) return it->second;
  if (ids.size() >= kMaxNames) ids.clear();
  RelatedIds entry{COSID(name.c_str()), COSID((name + "Mode").c_str()), COSID((name + "_I").c_str())};
  return ids.emplace(name, entry).first->second;
}

// The pair's own ids where its maker interned them; else by its name.
RelatedIds idsOf(const DefaultPairName& name) {
  if (name.modeId() && name.internalId()) return {name.id(), name.modeId(), name.internalId()};
  return relatedIds(name.str());
}

// Whether the mode property reads manual (as the public client).
bool isManual(COSInterface* object, const COSPropInfo* mode) {
  const BorrowedPropertyValue borrowed = BorrowedPropertyValue::read(object, COSGetPublicClient(), mode);
  const COSValue value = borrowed.get();
  if (mode->getDataType().getID() == autoManual().id) {
    const auto* byte = value.asPointer<const unsigned char>();
    return byte && *byte != 0;
  }
  // A mode of another type (an array) is read through the AutoManual conversion.
  if (!autoManual().fromArray) return false;
  const ConvertedValue converted(autoManual().type, autoManual().fromArray->convert(value));
  const auto* byte = converted.get().asPointer<const unsigned char>();
  return byte && *byte != 0;
}

// The ancestors from the top down. One without a store (nor a saved one
// waiting to move in) is passed by without making its DefaultProp.
void collect(COSInterface* node, const COSInterfacePtr& object, const char*& className, PropValuePairs& pairs) {
  if (!node || node->isBeingDestroyed()) return;
  node->checkValid();
  collect(node->getOwnerObject(), object, className, pairs);
  const SGHandle* handle = SGHandle::fromObject(node);
  if (!handle || (!handle->getDefaultProp() && !handle->getLoadedFromFile())) return;
  DefaultProp defaults{COSInterfacePtr(node)};
  if (!defaults.getDefaultPropArray()) return;
  // The class name is asked for only once some ancestor has a store; room
  // for a few pairs is made once rather than by growing one pair at a time.
  if (!className) {
    className = object->getClass()->getName();
    pairs.reserve(pairs.size() + 8);
  }
  defaults.appendDefaults(pairs, std::string_view(className));
}

// The last empty answer of the walk while a DefaultWalkScope lives: for
// objects of `cls` under `parent`, with `chain` the ancestors the walk
// passed (the parent first, up to the root or to one being destroyed),
// when the stored defaults were at `epoch`.
struct KeptEmptyWalk {
  static constexpr std::size_t kMaxDepth = 16;
  const COSInterface* parent = nullptr;
  const COSClass* cls = nullptr;
  std::uint64_t epoch = 0;
  std::array<const COSInterface*, kMaxDepth> chain{};
  std::size_t depth = 0;
};

int gWalkScopes = 0;
KeptEmptyWalk gKeptWalk;

// The ancestors the walk passes from `parent`, as collect() takes them;
// false when there are more than the kept answer holds, or one of them is
// destroyed (the walk raises for it).
bool chainOf(const COSInterface* parent, std::array<const COSInterface*, KeptEmptyWalk::kMaxDepth>& chain,
             std::size_t& depth) noexcept {
  depth = 0;
  for (const COSInterface* node = parent; node && !node->isBeingDestroyed(); node = node->getOwnerObject()) {
    if (node->isDestroyed() || depth == KeptEmptyWalk::kMaxDepth) return false;
    chain[depth++] = node;
  }
  return true;
}

// Whether the kept answer stands for `cls` under `parent`: the same pair,
// no stored default changed since, and the same ancestors.
bool keptWalkIsEmpty(const COSInterface* parent, const COSClass* cls) noexcept {
  const KeptEmptyWalk& kept = gKeptWalk;
  if (!kept.parent || kept.parent != parent || kept.cls != cls || kept.epoch != storedDefaultsEpoch()) return false;
  std::size_t i = 0;
  for (const COSInterface* node = parent; node && !node->isBeingDestroyed(); node = node->getOwnerObject()) {
    if (i == kept.depth || node->isDestroyed() || kept.chain[i] != node) return false;
    ++i;
  }
  return i == kept.depth;
}

void keepEmptyWalk(const COSInterface* parent, const COSClass* cls) noexcept {
  KeptEmptyWalk& kept = gKeptWalk;
  kept.parent = nullptr;
  if (!chainOf(parent, kept.chain, kept.depth)) return;
  kept.parent = parent;
  kept.cls = cls;
  kept.epoch = storedDefaultsEpoch();
}

}  // namespace

DefaultWalkScope::DefaultWalkScope() noexcept { ++gWalkScopes; }
DefaultWalkScope::~DefaultWalkScope() {
  if (--gWalkScopes == 0) gKeptWalk = KeptEmptyWalk{};
}

void DefaultProp::setPVPairs(const COSInterfacePtr& object, const PropValuePairs& pairs, bool resetOnly) {
  if (pairs.empty() || !object) return;
  const AutoManualType& am = autoManual();
  const COSClient* client = COSGetPublicClient();
  COSInterface* self = object.get();

  std::vector<std::pair<COSID, const vxArray*>> modes;
  for (const auto& pair : pairs) {
    const RelatedIds ids = idsOf(pair.first);
    COSPropInfo* property = findOn(self, ids.name);
    if (!property) continue;  // the object has no such property
    if (property->getDataType().getID() == am.id) {
      if (resetOnly && !property->isResetAllowed()) continue;
      modes.emplace_back(ids.name, pair.second.get());  // modes go last
      continue;
    }
    if (COSPropInfo* mode = findExactOn(self, ids.mode); mode && isManual(self, mode)) continue;
    // The internal face keeps the mode automatic.
    COSPropInfo* target = findExactOn(self, ids.internal);
    if (!target || target->getMemberSetAccess() != PublicAccess) target = property;
    if (target->getMemberSetAccess() != PublicAccess) continue;
    if (resetOnly && !target->isResetAllowed()) continue;
    detail::setFromArray(client, self, target, pair.second.get());
  }

  for (const auto& [name, value] : modes) {
    COSPropInfo* property = findOn(self, name);
    if (!property || property->getMemberSetAccess() != PublicAccess || !value || !am.fromArray) continue;
    const ConvertedValue typed(am.type, am.fromArray->convert(COSValue(value)));
    self->setPropertyValue(client, property, typed.get());
  }
}

namespace detail {

void collectDefaultPairs(SGReference& block, const COSInterfacePtr& parent, PropValuePairs& pairs) {
  if (!parent) return;
  const COSInterfacePtr object = block.getCOSReference();
  if (!object) return;
  const char* className = nullptr;
  if (gWalkScopes == 0) {
    collect(parent.get(), object, className, pairs);
    return;
  }
  const COSClass* cls = object->getClass();
  if (keptWalkIsEmpty(parent.get(), cls)) return;
  const std::size_t before = pairs.size();
  collect(parent.get(), object, className, pairs);
  // Read after the walk: a saved store it moved in has moved the counter.
  if (pairs.size() == before) keepEmptyWalk(parent.get(), cls);
}

}  // namespace detail

}  // namespace sgutils
