// Free operations of the class-object system: stores without access check,
// the set-forbidden error, the method call entry, name helpers and the count
// of live instances.
#pragma once

#include <cstddef>
#include <string>

#include "vcos/COSInterfacePtr.h"
#include "vcos/COSValue.h"

class COSClass;
class COSClient;
class COSPropInfo;

// Raises "VANTEL:vcos:SetProhibited" naming the property and the class.
[[noreturn]] VCOS_API void omIssueSetProhibitedError(const COSPropInfo* property, const COSClass* cls);

namespace vcos {
// Stores through the property's set method, without access check or listeners.
VCOS_API void omCopyPropertyWithNoPermissionCheck(const COSInterfacePtr& object, const COSPropInfo* property,
                                                  COSValue value);
}  // namespace vcos

namespace vcos::internal {
// Dispatches a method by name on `cls`: the most derived definition whose
// signature accepts the inputs and whose access admits the client. False
// when the class has no method of that name. For an instance method the
// object is prhs[0]. Raises "VANTEL:vcos:NoMatchingSignature" when none
// accepts, "VANTEL:vcos:MethodAccessDenied" when access refuses.
VCOS_API bool callMethod(COSClass* cls, COSID methodId, const COSClient* client, int& nlhs, COSValue* plhs,
                         int nrhs, const COSValue* prhs);
// Instances created and not yet freed (memory), for leak tests.
VCOS_API std::size_t liveInstanceCount() noexcept;
}  // namespace vcos::internal

namespace vcos {
// Instances whose memory is still held: a test compares it before and after
// dropping a tree to prove that no cycle kept the tree alive.
inline std::size_t liveObjectCount() noexcept { return internal::liveInstanceCount(); }
}  // namespace vcos

namespace vcos::nameresolution {
// The last component of a dotted name: "a.b.C" gives "C".
VCOS_API std::string getBaseClassNameFromFullName(const std::string& fullName);
}  // namespace vcos::nameresolution
