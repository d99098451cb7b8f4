// One loaded value set on an object, the same way by every load path (a
// graphics file's record, an added property, a struct given to loadobj).
#pragma once

#include <cstdint>
#include <string_view>

#include "vx/matrix.h"

#include "vcos/COSInterfacePtr.h"
class COSPropInfo;

namespace sgutils::persistence {

// The verbosity bits of the serialization channel for a property's value.
inline constexpr std::uint32_t kLoadingPropertyBit = 1u << 2;  // "    Loading property: "
inline constexpr std::uint32_t kFailedSetBit = 1u << 8;        // a set that failed
inline constexpr std::uint32_t kFailedConversionBit = 1u << 9;  // a conversion that failed

// Logs the "Loading property" line, converts `value` to the property's type
// (an array property takes the array itself: it stores a copy of its own)
// and sets it past access checks. A value that does not convert, or that the
// property refuses, is logged and dropped, so a file's other values still
// load; other failures pass through.
void setLoadedValue(const COSInterfacePtr& object, const COSPropInfo* property, const vxArray* value, std::string_view name);

}  // namespace sgutils::persistence
