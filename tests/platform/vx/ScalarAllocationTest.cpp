// A 1-by-1 double or logical costs one allocation at most. Counted through a
// replacement of the global allocation functions, active only while a
// counter is in scope.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include <vx/vx.h>

namespace {

int* activeCounter = nullptr;

void* allocate(std::size_t bytes) {
  if (activeCounter) ++*activeCounter;
  if (void* p = std::malloc(bytes ? bytes : 1)) return p;
  throw std::bad_alloc();
}

class AllocationCounter {
 public:
  AllocationCounter() { activeCounter = &count_; }
  ~AllocationCounter() { activeCounter = nullptr; }
  int count() const { return count_; }

 private:
  int count_ = 0;
};

}  // namespace

void* operator new(std::size_t bytes) { return allocate(bytes); }
void* operator new[](std::size_t bytes) { return allocate(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return std::malloc(bytes ? bytes : 1); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return std::malloc(bytes ? bytes : 1); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

TEST(ScalarCost, DoubleAndLogicalScalarsTakeOneAllocation) {
  vxArray* d;
  vxArray* l;
  vxArray* copy;
  {
    AllocationCounter counter;
    d = vxCreateDoubleScalar(1.5);
    EXPECT_EQ(counter.count(), 1);
  }
  {
    AllocationCounter counter;
    l = vxCreateLogicalScalar(true);
    EXPECT_EQ(counter.count(), 1);
  }
  {
    AllocationCounter counter;
    copy = vxCreateSharedDataCopy(d);
    *vxGetPr(copy) = 2;  // a write to a scalar copy has nothing to unshare
    EXPECT_EQ(counter.count(), 1);
  }
  EXPECT_EQ(vxGetScalar(d), 1.5);
  EXPECT_TRUE(vxIsLogicalScalarTrue(l));
  vxDestroyArray(d);
  vxDestroyArray(l);
  vxDestroyArray(copy);
}
