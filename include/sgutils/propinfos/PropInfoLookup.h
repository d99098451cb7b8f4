// Making proxies from descriptors, and looking up properties and methods by
// description: a shortened property name, an overridden method.
#pragma once

#include <string>

#include "sgutils/propinfos/MethodDescriptor.h"
#include "sgutils/propinfos/PropertyDescriptor.h"
#include "sgutils/propinfos/ProxyMethodInfo.h"
#include "sgutils/propinfos/ProxyPropInfo.h"

class COSClass;

namespace sgutils {

// Null for an invalid descriptor; a plain ProxyPropInfo when the descriptor
// changes nothing; otherwise a proxy that applies the descriptor. Owned by
// the caller until added to a class.
SGUTILS_API COSPropInfo* createPropInfo(const PropertyDescriptor& descriptor, WrappedPropInfoPtr wrapped,
                                        InstanceMap map);
// Null for an invalid descriptor.
SGUTILS_API COSMethodInfo* createMethodInfo(const MethodDescriptor& descriptor, WrappedMethodInfoPtr wrapped,
                                            COSID classId, InstanceMap map);
// The property of exactly this name, else of a unique partial match; null
// for an unknown or an ambiguous name (nothing is raised).
SGUTILS_API COSPropInfo* getAmbiguousMatchingPropInfo(COSClass* cls, const char* name);
// True when the first method of that name that `derived` offers (any
// access) is defined by a class other than `base`.
SGUTILS_API bool isMethodOverridden(const COSClass& base, COSClass& derived, const std::string& name);

// The access a descriptor's mode gives out; `wrapped` for mode 0 or a value
// outside the table.
SGUTILS_API MemberAccess accessOfMode(unsigned char mode, MemberAccess wrapped) noexcept;

}  // namespace sgutils
