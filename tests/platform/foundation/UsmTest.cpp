// The per-instance store: slots, ownership of the values, and a second
// instance that sees none of the first one's values.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>
#include <foundation/usm/Detail.h>
#include <foundation/usm/ScopedInstance.h>

namespace usm = foundation::usm;
using Store = usm::Detail<usm::scope::Vvm>;

namespace {

// Counts live values, so that every free is seen.
struct Counted {
  static inline int live = 0;
  int value;
  explicit Counted(int v) : value(v) { ++live; }
  ~Counted() { --live; }
};

usm::ValuePtr counted(int v) { return usm::makeValue<Counted>(v); }

Counted* asCounted(void* p) { return static_cast<Counted*>(p); }

}  // namespace

TEST(UsmStore, FindOrInsertKeepsTheFirstValueAndFreesTheOther) {
  static const Store::ID id = Store::getNextID(typeid(Counted));
  int before = Counted::live;
  void* first = Store::findOrInsert(id, typeid(Counted), counted(1));
  void* second = Store::findOrInsert(id, typeid(Counted), counted(2));
  EXPECT_EQ(first, second);
  EXPECT_EQ(asCounted(second)->value, 1);
  EXPECT_EQ(Counted::live, before + 1) << "the rejected value leaked";
  EXPECT_TRUE(Store::erase(id, typeid(Counted)));
  EXPECT_EQ(Counted::live, before);
  EXPECT_FALSE(Store::erase(id, typeid(Counted)));
  EXPECT_EQ(Store::find(id, typeid(Counted)), nullptr);
}

TEST(UsmStore, InsertReplacesAndFreesTheOldValue) {
  static const Store::ID id = Store::getNextID(typeid(Counted));
  int before = Counted::live;
  Store::insert(id, typeid(Counted), counted(1));
  void* replaced = Store::insert(id, typeid(Counted), counted(2));
  EXPECT_EQ(asCounted(Store::find(id, typeid(Counted)))->value, 2);
  EXPECT_EQ(replaced, Store::find(id, typeid(Counted)));
  EXPECT_EQ(Counted::live, before + 1);
  Store::erase(id, typeid(Counted));
}

TEST(UsmStore, FindOrThrowRaisesForAnEmptySlot) {
  static const Store::ID id = Store::getNextID(typeid(Counted));
  try {
    Store::findOrThrow(id, typeid(Counted));
    FAIL() << "expected an error";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:usm:NoValue");
  }
}

TEST(UsmInstances, SecondInstanceStartsEmptyAndFreesItsValuesAtTheEnd) {
  static const Store::ID id = Store::getNextID(typeid(Counted));
  EXPECT_TRUE(Store::isRequiredContextActive());
  Store::insert(id, typeid(Counted), counted(1));
  int before = Counted::live;
  int instances = usm::instanceCount();
  {
    usm::ScopedInstance second;
    EXPECT_EQ(usm::instanceCount(), instances + 1);
    EXPECT_TRUE(Store::isRequiredContextActive());
    EXPECT_EQ(Store::find(id, typeid(Counted)), nullptr) << "the first instance's value leaked into the second";
    Store::findOrInsert(id, typeid(Counted), counted(2));
    EXPECT_EQ(asCounted(Store::find(id, typeid(Counted)))->value, 2);
    EXPECT_EQ(Counted::live, before + 1);
  }
  EXPECT_EQ(Counted::live, before) << "the second instance's value outlived it";
  EXPECT_EQ(usm::instanceCount(), instances);
  EXPECT_EQ(asCounted(Store::find(id, typeid(Counted)))->value, 1);
  Store::erase(id, typeid(Counted));
}

TEST(UsmInstances, NestedInstancesRestoreTheirPredecessor) {
  static const Store::ID id = Store::getNextID(typeid(Counted));
  usm::ScopedInstance outer;
  Store::insert(id, typeid(Counted), counted(10));
  {
    usm::ScopedInstance inner;
    Store::insert(id, typeid(Counted), counted(20));
  }
  EXPECT_EQ(asCounted(Store::find(id, typeid(Counted)))->value, 10);
}

TEST(UsmStore, ValueFreedByEraseMayWriteTheStore) {
  // A cache whose destructor writes another slot, as a per-instance cache
  // holding a class reference does. Freeing it under the store's lock would
  // deadlock.
  static const Store::ID other = Store::getNextID(typeid(Counted));
  struct Writer {
    ~Writer() { Store::findOrInsert(other, typeid(Counted), counted(7)); }
  };
  static const Store::ID id = Store::getNextID(typeid(Writer));
  usm::ScopedInstance instance;
  Store::insert(id, typeid(Writer), usm::makeValue<Writer>());
  EXPECT_TRUE(Store::erase(id, typeid(Writer)));
  ASSERT_NE(Store::find(other, typeid(Counted)), nullptr);
  EXPECT_EQ(asCounted(Store::find(other, typeid(Counted)))->value, 7);
}
