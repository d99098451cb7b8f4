// Applying defaults to an object: collecting the ancestors' stores for the
// object's class, and setting the pairs with the rules of the mode triples
// (DefaultProp::setPVPairs).
#include <string>

#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/defaults/DefaultProp.h"
#include "src/defaults/DefaultPairCollection.h"
#include "src/defaults/DefaultValueConversion.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"

namespace sgutils {

namespace {

struct AutoManualType {
  COSID id{"vantel.graphics.datatype.AutoManual"};
  COSDataTypePtr type{COSTypeRepository::getType(id)};
  COSTypeConversion* fromArray = COSTypeRepository::getConversion(COSID("any"), id);
};

// Made once per process, on first use.
const AutoManualType& autoManual() {
  static const AutoManualType t;
  return t;
}

COSPropInfo* findOn(COSInterface* object, const char* name) {
  COSInterfacePtr found;
  object->findProperty(found, COSID(name));
  return cosiToProp(found.get());
}

// Whether the mode property reads manual (as the public client).
bool isManual(COSInterface* object, const COSPropInfo* mode) {
  const BorrowedPropertyValue borrowed = BorrowedPropertyValue::read(object, COSGetPublicClient(), mode);
  const COSValue value = borrowed.get();
  if (mode->getDataType().getID() == autoManual().id) {
    const auto* byte = value.asPointer<const unsigned char>();
    return byte && *byte != 0;
  }
  // A mode of another type (an array) is read through the AutoManual conversion.
  if (!autoManual().fromArray) return false;
  const ConvertedValue converted(autoManual().type, autoManual().fromArray->convert(value));
  const auto* byte = converted.get().asPointer<const unsigned char>();
  return byte && *byte != 0;
}

void collect(const COSInterfacePtr& node, const COSInterfacePtr& object, std::string& className, PropValuePairs& pairs) {
  if (!node || node->isBeingDestroyed()) return;
  COSInterfacePtr owner;
  node->getOwner(owner);
  if (owner) collect(owner, object, className, pairs);
  DefaultProp defaults(node);
  if (!defaults.getDefaultPropArray()) return;
  // The class name is built only once some ancestor has a store.
  if (className.empty()) className = object->getClass()->getName();
  defaults.appendDefaults(pairs, className);
}

}  // namespace

void DefaultProp::setPVPairs(const COSInterfacePtr& object, const PropValuePairs& pairs, bool resetOnly) {
  if (pairs.empty() || !object) return;
  const AutoManualType& am = autoManual();
  const COSClient* client = COSGetPublicClient();
  COSInterface* self = object.get();

  std::vector<const PropValuePairs::value_type*> modes;
  std::string related;
  for (const auto& pair : pairs) {
    COSPropInfo* property = findOn(self, pair.first.c_str());
    if (!property) continue;  // the object has no such property
    if (property->getDataType().getID() == am.id) {
      if (resetOnly && !property->isResetAllowed()) continue;
      modes.push_back(&pair);  // modes go last
      continue;
    }
    related.assign(pair.first).append("Mode");
    if (COSPropInfo* mode = findOn(self, related.c_str()); mode && isManual(self, mode)) continue;
    // The internal face keeps the mode automatic.
    related.assign(pair.first).append("_I");
    COSPropInfo* target = findOn(self, related.c_str());
    if (!target || target->getMemberSetAccess() != PublicAccess) target = property;
    if (target->getMemberSetAccess() != PublicAccess) continue;
    if (resetOnly && !target->isResetAllowed()) continue;
    detail::setFromArray(client, self, target, pair.second.get());
  }

  for (const auto* pair : modes) {
    COSPropInfo* property = findOn(self, pair->first.c_str());
    if (!property || property->getMemberSetAccess() != PublicAccess || !pair->second || !am.fromArray) continue;
    const ConvertedValue typed(am.type, am.fromArray->convert(COSValue(pair->second.get())));
    self->setPropertyValue(client, property, typed.get());
  }
}

namespace detail {

void collectDefaultPairs(SGReference& block, const COSInterfacePtr& parent, PropValuePairs& pairs) {
  if (!parent) return;
  const COSInterfacePtr object = block.getCOSReference();
  if (!object) return;
  std::string className;
  collect(parent, object, className, pairs);
}

}  // namespace detail

}  // namespace sgutils
