// Not installed; internal to the array runtime.
//
// The installed object hooks and checked access to an object payload.
#pragma once

#include "vx/vxObjectStorage.h"

namespace vx::impl {

class ObjectPayload;

vxObjectHooks& objectHooks() noexcept;
// Raises when the array is not an object array.
const ObjectPayload& objects(const vxArray& a);

}  // namespace vx::impl
