// The per-instance store: slot ids, the process's own instance, and the
// guard that makes a second one current.
#include "foundation/usm/Detail.h"

#include <cassert>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/src/usm/Instance.h"
#include "foundation/usm/ScopedInstance.h"

namespace foundation::usm {

std::atomic<Instance*> Instance::current_{nullptr};

std::atomic<int>& Instance::liveCount() noexcept {
  static std::atomic<int> count{0};
  return count;
}

Instance::Instance() { liveCount().fetch_add(1); }

Instance::~Instance() {
  // Later slots first: a value created later may refer to an earlier one.
  for (std::size_t c = kChunkCount; c-- > 0;) {
    if (!owned_[c]) continue;
    for (std::size_t s = kChunkSize; s-- > 0;) {
      Slot& slot = owned_[c]->slots[s];
      slot.value.store(nullptr, std::memory_order_release);
      slot.owner.reset();
    }
  }
  Instance* self = this;
  current_.compare_exchange_strong(self, nullptr, std::memory_order_acq_rel);
  liveCount().fetch_sub(1);
}

Instance::Slot& Instance::slotFor(std::size_t id) {
  std::size_t c = id / kChunkSize;
  if (!owned_[c]) {
    owned_[c] = std::make_unique<Chunk>();
    chunks_[c].store(owned_[c].get(), std::memory_order_release);
  }
  return owned_[c]->slots[id % kChunkSize];
}

void* Instance::store(std::size_t id, ValuePtr value, bool replace) {
  ValuePtr old{nullptr, [](void*) {}};
  void* result;
  {
    std::lock_guard lock(mutex_);
    Slot& slot = slotFor(id);
    if (slot.owner && !replace) return slot.owner.get();
    old = std::move(slot.owner);
    slot.owner = std::move(value);
    result = slot.owner.get();
    slot.value.store(result, std::memory_order_release);
  }
  return result;  // `old` is freed outside the lock: its destructor may use the store
}

bool Instance::erase(std::size_t id) {
  ValuePtr old{nullptr, [](void*) {}};
  {
    std::lock_guard lock(mutex_);
    if (!chunks_[id / kChunkSize].load(std::memory_order_relaxed)) return false;
    Slot& slot = slotFor(id);
    if (!slot.owner) return false;
    slot.value.store(nullptr, std::memory_order_release);
    old = std::move(slot.owner);
  }
  return true;
}

namespace {

// The slot ids handed out, with the type each was asked for, so that a slot
// read with the wrong type is caught in debug builds.
struct IdTable {
  std::mutex mutex;
  std::vector<const std::type_info*> types;
};

IdTable& idTable() {
  static IdTable table;
  return table;
}

[[maybe_unused]] bool typeMatches(std::size_t id, const std::type_info& type) {
  IdTable& table = idTable();
  std::lock_guard lock(table.mutex);
  return id < table.types.size() && *table.types[id] == type;
}

// The process's own instance, made current on first use of the store.
Instance& processInstance() {
  static Instance instance;
  static const bool installed = (Instance::installIfNone(&instance), true);
  (void)installed;
  return instance;
}

Instance& current() {
  processInstance();
  Instance* inst = Instance::current();
  assert(inst && "per-instance store used after the process instance ended");
  return *inst;
}

}  // namespace

using Store = Detail<scope::Vvm>;

Store::ID Store::getNextID(const std::type_info& type) {
  IdTable& table = idTable();
  std::lock_guard lock(table.mutex);
  if (table.types.size() >= Instance::kCapacity) throw core::except::Error("VANTEL:usm:OutOfSlotIDs");
  table.types.push_back(&type);
  return table.types.size() - 1;
}

void* Store::find(ID id, const std::type_info& type) noexcept {
  assert(typeMatches(id, type) && "usm slot read with a type it was not created for");
  (void)type;
  return current().find(id);
}

void* Store::findOrInsert(ID id, const std::type_info& type, ValuePtr value) {
  assert(typeMatches(id, type) && "usm slot written with a type it was not created for");
  (void)type;
  Instance& inst = current();
  if (void* found = inst.find(id)) return found;
  return inst.store(id, std::move(value), /*replace=*/false);
}

void* Store::findOrThrow(ID id, const std::type_info& type) {
  if (void* found = find(id, type)) return found;
  throw core::except::Error("VANTEL:usm:NoValue", type.name());
}

void* Store::insert(ID id, const std::type_info& type, ValuePtr value) {
  assert(typeMatches(id, type) && "usm slot written with a type it was not created for");
  (void)type;
  return current().store(id, std::move(value), /*replace=*/true);
}

bool Store::erase(ID id, const std::type_info& type) {
  assert(typeMatches(id, type) && "usm slot erased with a type it was not created for");
  (void)type;
  return current().erase(id);
}

bool Store::isRequiredContextActive() noexcept {
  processInstance();
  return Instance::current() != nullptr;
}

ScopedInstance::ScopedInstance() : instance_(std::make_unique<Instance>()) {
  processInstance();
  previous_ = Instance::makeCurrent(instance_.get());
}

ScopedInstance::~ScopedInstance() { Instance::makeCurrent(previous_); }

int instanceCount() noexcept {
  processInstance();
  return Instance::liveCount().load();
}

}  // namespace foundation::usm
