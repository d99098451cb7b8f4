// Not installed; internal to the class-object system.
//
// The access rule of the client path: public admits everyone, protected the
// defining class and its subclasses, private the defining class alone, and an
// access list the defining class and the listed classes with their
// subclasses.
#pragma once

#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/ExtendedMemberAccess.h"
#include "vcos/MemberAccess.h"

namespace vcos::internal {

inline bool admits(MemberAccess access, const ExtendedMemberAccess* list, const COSClass* definer,
                   const COSClient* client) noexcept {
  if (access == PublicAccess && !list) return true;
  const COSClass* cc = client ? client->getClass() : nullptr;
  if (!cc) return false;
  if (list) {
    if (definer && cc->isSubclassOf(definer)) return true;
    for (COSID id : list->classes())
      if (cc->isSubclassOf(id)) return true;
    return false;
  }
  switch (access) {
    case PublicAccess:
      return true;
    case ProtectedAccess:
      return definer && cc->isSubclassOf(definer);
    case PrivateAccess:
      return cc == definer;
    case NoAccess:
      return false;
  }
  return false;
}

// Raises unless `client` may listen to `kind` events of `property` on
// instances of `cls`: the property must allow listeners for the kind, and its
// get access must admit the client (the events carry its values).
void checkPropertyListen(const COSClient* client, COSPropertyEvent kind, const COSPropInfo* property,
                         const COSClass* cls);

}  // namespace vcos::internal
