#include "sgclasses/ClassNames.h"

#include <array>

#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"

namespace sgclasses {

namespace {

// The id of a class name, interned once per name: callers pass the
// constants of ClassNames.h, so the text's address is the key. All class
// work runs on the interpreter's thread.
COSID idOf(const char* name) {
  struct Entry {
    const char* name;
    COSID id;
  };
  static std::array<Entry, 16> cache{};
  static std::size_t used = 0;
  for (std::size_t i = 0; i < used; ++i)
    if (cache[i].name == name) return cache[i].id;
  const COSID id(name);
  if (used < cache.size()) cache[used++] = {name, id};
  return id;
}

}  // namespace

bool isOfClass(const COSInterface* object, std::initializer_list<const char*> classNames) {
  const COSClass* cls = object->getClass();
  for (const char* name : classNames)
    if (cls->isSubclassOf(idOf(name))) return true;
  return false;
}

}  // namespace sgclasses
