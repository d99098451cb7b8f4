#include "sgclasses/ClassNames.h"

#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"

namespace sgclasses {

bool isOfClass(const COSInterface* object, std::initializer_list<const char*> classNames) {
  const COSClass* cls = object->getClass();
  for (const char* name : classNames)
    if (cls->isSubclassOf(COSID(name))) return true;
  return false;
}

}  // namespace sgclasses
