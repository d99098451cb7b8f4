// Reads of one property over many instances of one class: the slot found
// once, the rest of the client get path per read.
#include "vcos/src/property/SlotReader.h"

#include <typeinfo>
#include <utility>

#include "vcos/src/core/Access.h"
#include "vcos/src/property/PropertyPath.h"
#include "vcos/COSCustomMetaClass.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSPropT.h"

namespace vcos::internal {

void SlotReader::Value::giveBack() noexcept {
  COSInterface* o = std::exchange(object_, nullptr);
  try {
    if (customGet_)
      customGet_->customReleasePropertyValue(o, property_, word_);
    else
      property_->releaseValue(o, word_);
  } catch (...) {
    // The object went away while the value was out; nothing left to give back.
  }
  customGet_ = nullptr;
}

void SlotReader::bind(const COSClass* cls, const COSPropInfo* property, const COSClient* client) noexcept {
  property_ = const_cast<COSPropInfo*>(property);
  client_ = client;
  tables_ = nullptr;
  storedWord_ = false;
  lender_ = nullptr;
  default_ = COSValue();
  const PropSlot* slot = cls && property ? cls->findSlot(property) : nullptr;
  if (!slot) return;
  tables_ = &cls->tables();
  index_ = static_cast<std::uint32_t>(slot - tables_->properties.data());
  // Exactly these two keep their value as the stored word (getValue hands
  // out a copy of it or of the default, releaseValue frees that copy).
  storedWord_ = typeid(*property) == typeid(COSPropT) || typeid(*property) == typeid(COSGenericProp);
  if (storedWord_) default_ = property->getFactoryDefault();
  lender_ = nullptr;
  if (!storedWord_ && property->getDefiningClass())
    lender_ = findobjLender(property->getDefiningClass()->getID(), COSID(property->getName()));
}

bool SlotReader::readThroughPath(COSInterface* o, Value& out) const {
  o->checkValid();
  const PropSlot* slot = nullptr;
  if (tables_ && index_ < tables_->properties.size() && tables_->properties[index_].property == property_)
    slot = &tables_->properties[index_];
  else if (COSClass* cls = o->getClass())
    slot = cls->findSlot(property_);
  if (!admits(property_->getMemberGetAccess(), property_->getExtendedGetAccess(), property_->getDefiningClass(),
              client_))
    return false;
  if (!slot) {
    // A property of the instance (or none of the object's: that raises).
    out.word_ = o->getPropertyValue(client_, property_);
    out.property_ = property_;
    out.object_ = o;
    return true;
  }
  if (!(slot->route & kGetRoutes) && !hasPropertyListeners(o)) {
    out.word_ = property_->getValue(o);
  } else {
    const PropSlot taken = *slot;
    out.word_ = getObserved(o, taken, property_);
    out.customGet_ = taken.customGet;
  }
  out.property_ = property_;
  out.object_ = o;
  return true;
}

}  // namespace vcos::internal
