// Not installed; internal to sgutils.
// The cached class pointer behind each getClassInstance: found by its plain
// name in its package, kept per instance once found, null before the class
// is registered.
#pragma once

#include "sgutils/startup/PerInstance.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSPackage.h"

namespace sgutils {

template <class Tag>
COSClass* cachedClass(COSPackage* package, const char* name) {
  COSClass*& slot = PerInstance<Tag, COSClass*>::get([] { return static_cast<COSClass*>(nullptr); });
  if (slot) return slot;
  if (!package) return nullptr;
  COSInterfacePtr found;
  package->findClass(found, name);
  slot = cosiToClass(found.get());  // classes live for the process
  return slot;
}

}  // namespace sgutils
