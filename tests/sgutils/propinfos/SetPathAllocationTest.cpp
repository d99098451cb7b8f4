// The set and get paths of a moded property allocate nothing. Allocations
// are counted by replacing the global allocation functions of this test
// executable; the counter only runs while a test asks for it. Under the
// address sanitizer the sanitizer's own allocator stays in place (a
// replacement would mix its operator new with our free), and the tests skip.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "PropertyModelClasses.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/vx.h"

#if defined(__SANITIZE_ADDRESS__)
#define SG_COUNT_ALLOCATIONS 0
#else
#define SG_COUNT_ALLOCATIONS 1
#endif

namespace {
std::atomic<bool> counting{false};
std::atomic<std::size_t> allocations{0};

// Counts the allocations made while it is alive.
struct AllocationCounter {
  AllocationCounter() {
    allocations = 0;
    counting = true;
  }
  ~AllocationCounter() { counting = false; }
  std::size_t count() const { return allocations.load(); }
};
}  // namespace

#if SG_COUNT_ALLOCATIONS
namespace {
void* allocate(std::size_t bytes) {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* p = std::malloc(bytes ? bytes : 1)) return p;
  throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t bytes) { return allocate(bytes); }
void* operator new[](std::size_t bytes) { return allocate(bytes); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
#endif

namespace sgtest::propmodel {
namespace {

using graphics::datatype::AutoManual;

TEST(SetPathAllocations, PublicSetInternalWriteAndGetAllocateNothing) {
  if (!SG_COUNT_ALLOCATIONS) GTEST_SKIP() << "allocations are not counted under the address sanitizer";
  COSInterfacePtr object = makeObject(kSelectableClass);
  COSPropInfo* selected = prop(object, "Selected");
  COSPropInfo* internal = prop(object, "Selected_I");
  COSPropInfo* mode = prop(object, "SelectedMode");
  const COSClient* client = COSGetPublicClient();
  // Warm up: lazily resolved faces, cached ids.
  object->setPropertyValue(client, selected, COSValue::fromBool(true));
  object->setPropertyValue(client, mode, COSValue(modeWord(AutoManual::Auto)));
  handleOf(object).posts.reserve(4096);

  {
    // The counter itself works: a direct call of the allocation function counts.
    AllocationCounter counter;
    ::operator delete(::operator new(16));
    ASSERT_EQ(counter.count(), 1u) << "the replaced allocation functions are not in use";
  }
  std::size_t count = 0;
  {
    AllocationCounter counter;
    for (int i = 0; i < 200; ++i) {
      object->setPropertyValue(client, selected, COSValue::fromBool(i % 2 == 0));
      object->setPropertyValue(client, mode, COSValue(modeWord(AutoManual::Auto)));
      object->setPropertyValue(client, internal, COSValue::fromBool(i % 2 != 0));
      const COSValue v = object->getPropertyValue(client, selected);
      object->releasePropertyValue(client, selected, v);
    }
    count = counter.count();
  }
  EXPECT_EQ(count, 0u) << "the set path of a moded property allocated";
  EXPECT_GT(handleOf(object).posts.size(), 200u) << "the loop did not reach doPostSet";
  object->deleteObject(client);
}

TEST(SetPathAllocations, ColourSetAllocatesNothing) {
  if (!SG_COUNT_ALLOCATIONS) GTEST_SKIP() << "allocations are not counted under the address sanitizer";
  using graphics::datatype::RGBAColor;
  COSInterfacePtr object = makeObject(kFlagsClass);
  COSPropInfo* edge = prop(object, "EdgeColor");
  const COSClient* client = COSGetPublicClient();
  const RGBAColor colours[2] = {RGBAColor(1, 0, 0), RGBAColor(0, 1, 0)};
  object->setPropertyValue(client, edge, COSValue(&colours[0]));
  handleOf(object).posts.reserve(1024);
  std::size_t count = 0;
  {
    AllocationCounter counter;
    for (int i = 0; i < 200; ++i) object->setPropertyValue(client, edge, COSValue(&colours[i % 2]));
    count = counter.count();
  }
  EXPECT_EQ(count, 0u) << "a colour set allocated";
  object->deleteObject(client);
}

// A get by name whose value goes straight to the caller, dropped before the
// next get, reuses the header and the small payload freed last: a colour
// read in a loop and an on/off read allocate nothing once warm, and each
// read still gives the current value.
TEST(SetPathAllocations, GetByNameDroppedEachTimeAllocatesNothing) {
  if (!SG_COUNT_ALLOCATIONS) GTEST_SKIP() << "allocations are not counted under the address sanitizer";
  using graphics::datatype::RGBAColor;
  COSInterfacePtr object = makeObject(kFlagsClass);
  COSInterfacePtr selectable = makeObject(kSelectableClass);
  matrix::unique_vxArray self(omCreateVCOSScalar(object));
  matrix::unique_vxArray other(omCreateVCOSScalar(selectable));
  const COSClient* client = COSGetPublicClient();
  const RGBAColor colours[2] = {RGBAColor(1, 0, 0), RGBAColor(0, 0.5, 1)};
  handleOf(object).posts.reserve(1024);
  handleOf(selectable).posts.reserve(1024);
  auto readBack = [&](int i) {
    object->setPropertyValue(client, prop(object, "EdgeColor"), COSValue(&colours[i % 2]));
    vxArray* c = vxGetProperty(self.get(), 0, "EdgeColor");
    const bool colourOk = vxGetNumberOfElements(c) == 3 && vxGetPr(c)[1] == (i % 2 ? 0.5 : 0.0);
    vxDestroyArray(c);
    selectable->setPropertyValue(client, prop(selectable, "Selected"), COSValue::fromBool(i % 2 == 0));
    vxArray* b = vxGetProperty(other.get(), 0, "Selected");
    // An on/off value reads as the text "on" or "off".
    const bool boolOk = vxIsChar(b) && vxGetNumberOfElements(b) == (i % 2 == 0 ? 2u : 3u);
    vxDestroyArray(b);
    return colourOk && boolOk;
  };
  // Warm up: the kept answers of both names, both texts of the on/off value.
  ASSERT_TRUE(readBack(0));
  ASSERT_TRUE(readBack(1));
  std::size_t count = 0;
  int wrong = 0;
  {
    AllocationCounter counter;
    for (int i = 2; i < 202; ++i) wrong += readBack(i) ? 0 : 1;
    count = counter.count();
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(count, 0u) << "a get by name allocated";
  object->deleteObject(client);
  selectable->deleteObject(client);
}

}  // namespace
}  // namespace sgtest::propmodel
