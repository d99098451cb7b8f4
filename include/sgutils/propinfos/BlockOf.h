// The data block of a class within an instance. Every block of the library
// is stored as an SGReference*, so the cast goes through it.
#pragma once

#include "sgutils/lifecycle/SGReference.h"
#include "vcos/COSInterface.h"

namespace sgutils {

template <class Class>
Class* blockOf(const COSInterface* instance, COSID classId) noexcept {
  return static_cast<Class*>(static_cast<SGReference*>(instance->getInstanceData(classId)));
}

}  // namespace sgutils
