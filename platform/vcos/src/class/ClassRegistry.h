// Not installed; internal to the class-object system.
//
// The registry of class infos by full name, and the start-up of the built-in
// meta classes.
#pragma once

#include <memory>
#include <unordered_map>

#include "vcos/COSClassInfo.h"
#include "vcos/COSInternedBase.h"

class COSClass;
class COSPackage;

namespace vcos::internal {

struct ClassRegistration {
  std::unique_ptr<COSClassInfo> info;
  COSPackage* package = nullptr;
  COSClass* cls = nullptr;
};

std::unordered_map<COSID, ClassRegistration>& classRegistry();
// Registers the built-in meta classes once; every entry point calls it.
void ensureBuiltins();
// Called by ensureBuiltins (meta/MetaClasses.cpp).
void registerMetaClasses();
// Lends class knowledge to the array runtime (types/VxBridge.cpp).
void installArrayHooks();
// The extra block id under which a built-in meta class's block is also found
// ("vantel.metadata.Property" for "meta.property"); empty for others.
COSID blockAliasOf(COSID classId);
// "meta.class".
COSID metaClassId();

}  // namespace vcos::internal
