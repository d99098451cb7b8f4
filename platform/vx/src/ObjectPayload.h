// Not installed; internal to the array runtime.
//
// Payload of object arrays: counted references to class-system objects, and
// the class id (an opaque interned-id pointer of the class-object system).
#pragma once

#include <vector>

#include "Payload.h"
#include "vcos/COSInterfacePtr.h"

namespace vx::impl {

class ObjectPayload final : public Payload {
 public:
  ObjectPayload(vxSize numel, const void* cls) : elements(numel), classId(cls) {}

  PayloadRef clone(Depth depth) const override;
  // The element count is fixed once created; the caller has checked it.
  void resize(vxSize) override {}
  bool holdsObjects() const override { return true; }

  std::vector<COSInterfacePtr> elements;
  const void* classId;
};

}  // namespace vx::impl
