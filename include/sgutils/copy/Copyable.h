// The Copyable mixin, seen from C++: the copy test, the classification of a
// property for a copy, and the default steps that an override may call.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/copy/CopyableData.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"
#include "vx/vxTypes.h"

class COSClient;
class COSPropInfo;

namespace sgutils {

// What a copy does with one property.
enum class PropertyCopyKind : unsigned char {
  Value = 0,      // copy the value in copyElement
  DeepCopy = 1,   // copy the named child objects in copyElement
  Reconnect = 2,  // point at the copy of the referenced object, in connectCopyToTree
  Leave = 3,      // the copy keeps what its constructor made
};

class SGUTILS_API Copyable {
 public:
  static COSID classID();
  // The object's Copyable data, or null when its class has none.
  static CopyableData* dataOf(const COSInterface* object) noexcept;
  // False for a null or deleted object, for one outside Copyable, and for one
  // whose flag is off.
  static bool isCopyable(const COSInterface* object) noexcept;
  static PropertyCopyKind classify(const COSPropInfo* property, const COSInterface* object);
  // Sets the Copyable flag of every live element of an object array to false.
  static void makeObjectsInArrayNonCopyable(const vxArray* array);
  // Copies the properties classed Value from `source` onto `target` (both
  // live), as the default copyElement does. Used by a class that copies a
  // part of itself that is no task of the transaction.
  static void copyValueProperties(const COSInterfacePtr& source, const COSInterfacePtr& target,
                                  const COSClient* client);
};

}  // namespace sgutils
