// What the generated classes (objects/<Class>, made by tools/genmixins.py)
// share: the cached class pointer and the log line of a hook.
#pragma once

#include <string_view>

#include "foundation/log/LogRecord.h"
#include "sgdatatypes/ClientEnum.h"
#include "sgutils/SgutilsExport.h"
#include "sgutils/startup/PerInstance.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSPackage.h"

class COSEventInfo;

namespace sgutils {

// The class `name` of the package, found on first use and kept once per
// instance (or per process without the per-instance store). Null while the
// class is not registered; a later call looks again.
template <class Tag>
COSClass* cachedGeneratedClass(COSPackage* (*package)(), const char* name) {
  COSClass*& slot = PerInstance<Tag, COSClass*>::get([] { return static_cast<COSClass*>(nullptr); });
  if (!slot) {
    COSPackage* p = package();
    if (!p) return nullptr;
    COSInterfacePtr found;
    p->findClass(found, name);
    slot = cosiToClass(found.get());
  }
  return slot;
}

// The property `name` of the generated class `cls`, looked up once per class
// and kept beside it (per instance, like the class): the typed setters reach
// their face without a look-up per call.
template <class Tag>
COSPropInfo* cachedFace(COSClass* cls, COSID name) {
  struct Entry {
    COSClass* cls = nullptr;
    COSPropInfo* property = nullptr;
  };
  Entry& e = PerInstance<Tag, Entry>::get([] { return Entry{}; });
  if (e.cls != cls) e = {cls, cls->findPropertyExact(name)};
  return e.property;
}

// The property `name` of the generated class that `classOf` answers, both
// found on first use and kept in one entry (per instance, like the class):
// a typed setter's public write reaches its face with one look at the
// cache. Null while the class is not registered; a later call looks again.
template <class Tag>
COSPropInfo* cachedOwnFace(COSClass* (*classOf)(), COSID name) {
  struct Entry {
    COSClass* cls = nullptr;
    COSPropInfo* property = nullptr;
  };
  Entry& e = PerInstance<Tag, Entry>::get([] { return Entry{}; });
  if (!e.cls) {
    COSClass* cls = classOf();
    if (!cls) return nullptr;
    e = {cls, cls->findPropertyExact(name)};
  }
  return e.property;
}

// Sets a graphics metadata attribute (such as "HasCallbackProperty") of an
// event a class has just added; the event's meta class must have it.
SGUTILS_API void setEventAttribute(COSEventInfo* event, COSID attribute, bool value);

// One trace line of a generated hook: source path, function, line.
inline void logGeneratedHook(foundation::log::Logger& lg, std::string_view source, const char* function, int line) {
  FOUNDATION_LOG(lg, foundation::log::kTrace) << source << " " << function << " " << line;
}

}  // namespace sgutils
