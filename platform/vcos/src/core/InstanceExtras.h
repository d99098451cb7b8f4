// Not installed; internal to the class-object system.
//
// The side table of an object, allocated on first use: dynamic properties,
// values of generic properties, instance and property listeners, and the
// block array of an object whose blocks do not lie at its class's offsets
// (classes, member objects, the rare instance off the fixed path). An
// object without any of these pays one null pointer. Side tables come from a
// slot pool, so those of objects made in a row lie side by side.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <boost/container/small_vector.hpp>

#include "vcos/COSInterface.h"
#include "vcos/COSInterfacePtr.h"

namespace vcos::internal {

struct ListenerEntry {
  COSID eventId;                          // instance listeners
  const COSPropInfo* property = nullptr;  // property listeners
  COSPropertyEvent kind = COSPropertyEvent::PreSet;
  COSInterfacePtr listener;
  int priority = 0;
  std::uint64_t sequence = 0;
};

struct StoredValue {
  const COSPropInfo* property;
  COSValue value;
};

struct InstanceExtras {
  std::vector<COSInterfacePtr> dynamicProperties;
  // A few values live in the table itself: reading one costs no further
  // pointer to follow, and storing it no allocation.
  boost::container::small_vector<StoredValue, 3> values;
  std::vector<ListenerEntry> listeners;
  int propertyListenerCount = 0;
  // Per ancestry index, the object's blocks (COSInterface::kHeapBlocks),
  // from ObjectOps::newBlockArray; `blockCount` entries.
  void** blocks = nullptr;
  std::uint32_t blockCount = 0;

  static void* operator new(std::size_t size);
  static void operator delete(void* p) noexcept;
};

}  // namespace vcos::internal
