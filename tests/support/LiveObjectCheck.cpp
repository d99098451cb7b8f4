// Leak accounting for every test of a suite: the live instance count of the
// class system is taken when a test starts and compared when it ends. A test
// that leaves more instances than it found fails, naming the difference.
// Objects a suite keeps for all its tests (SetUpTestSuite) are made before
// the first test starts and are not counted against it.
//
// The listener sits before the result printer, so a failure it adds is
// reported with the test it belongs to. It is linked into every test
// program; the variable SG_LEAK_CHECK=0 switches it off (to look at a run
// without it).
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "vcos/COSObjectOperations.h"

namespace sgtest {
namespace {

class LiveObjectCheck : public ::testing::EmptyTestEventListener {
 public:
  void OnTestStart(const ::testing::TestInfo&) override { before_ = vcos::liveObjectCount(); }

  void OnTestEnd(const ::testing::TestInfo& info) override {
    if (info.result()->Skipped()) return;
    const std::size_t after = vcos::liveObjectCount();
    if (after > before_)
      ADD_FAILURE() << "leak: " << (after - before_) << " object(s) still alive at the end of the test (" << before_
                    << " before, " << after << " after)";
  }

 private:
  std::size_t before_ = 0;
};

bool install() {
  const char* off = std::getenv("SG_LEAK_CHECK");
  if (off && std::strcmp(off, "0") == 0) return false;
  ::testing::TestEventListeners& listeners = ::testing::UnitTest::GetInstance()->listeners();
  ::testing::TestEventListener* printer = listeners.Release(listeners.default_result_printer());
  listeners.Append(new LiveObjectCheck);
  if (printer) listeners.Append(printer);
  return true;
}

const bool installed = install();

}  // namespace
}  // namespace sgtest
