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
  // New elements are empty references (invalid handles), as when an
  // assignment past the end of an object array leaves a gap.
  void resize(vxSize numel) override { elements.resize(numel); }
  bool holdsObjects() const override { return true; }

  std::vector<COSInterfacePtr> elements;
  const void* classId;
};

}  // namespace vx::impl
