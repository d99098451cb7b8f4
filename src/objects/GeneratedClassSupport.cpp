// What generated classes share and is not inline (see GeneratedClassSupport.h).
#include "sgutils/objects/GeneratedClassSupport.h"

#include <cassert>

#include "vcos/COSCustomMetaClass.h"
#include "vcos/COSEventInfo.h"

namespace sgutils {

void setEventAttribute(COSEventInfo* event, COSID attribute, bool value) {
  // The generator admits only the attributes of "GraphicsMetaEvent", and a
  // generated class always has the graphics meta class.
  COSClass* meta = event->getClass();
  COSPropInfo* property = meta ? meta->findPropertyExact(attribute) : nullptr;
  assert(property && "an event attribute its meta class does not have");
  if (property) COSCustomMetaClass::setPropertyValue(event, property, COSValue::fromBool(value));
}

}  // namespace sgutils
