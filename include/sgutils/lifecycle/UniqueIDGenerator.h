// Hands out ids as decimal text ("1", "2", ...), safe from any thread. Copies
// share one counter; the counter is 64 bits, and OutOfUniqueIDs is raised
// only once it has wrapped around to zero.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API UniqueIDGenerator {
 public:
  UniqueIDGenerator();
  std::string nextID();
  std::string nextID() const;

  // Test support: puts the shared counter at `value`.
  void setCounterForTesting(std::uint64_t value);

 private:
  struct Counter;
  std::shared_ptr<Counter> counter_;
};

}  // namespace sgutils
