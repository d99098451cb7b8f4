// Unique ids as decimal text, from a counter shared by copies of the
// generator and guarded by a recursive mutex.
#include "sgutils/lifecycle/UniqueIDGenerator.h"

#include <mutex>

#include "sgutils/lifecycle/OutOfUniqueIDs.h"

namespace sgutils {

struct UniqueIDGenerator::Counter {
  std::recursive_mutex mutex;
  std::uint64_t next = 1;

  std::string take() {
    std::lock_guard lock(mutex);
    if (next == 0) throw OutOfUniqueIDs();
    std::string id = std::to_string(next);
    ++next;
    return id;
  }
};

UniqueIDGenerator::UniqueIDGenerator() : counter_(std::make_shared<Counter>()) {}

std::string UniqueIDGenerator::nextID() { return counter_->take(); }
std::string UniqueIDGenerator::nextID() const { return counter_->take(); }

void UniqueIDGenerator::setCounterForTesting(std::uint64_t value) {
  std::lock_guard lock(counter_->mutex);
  counter_->next = value;
}

}  // namespace sgutils
