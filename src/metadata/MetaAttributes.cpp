// The attributes of "GraphicsMetaProperty" and "GraphicsMetaEvent": their
// data blocks and the logical properties through which they are read and
// written.
#include "sgutils/metadata/SGCustomMetaEvent.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "src/classinfo/SupportClasses.h"
#include "src/metadata/SGCustomMetaClasses.h"
#include "vcos/COSClass.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSPropCPPT.h"

namespace {

// The flag words of the attributes: the second adds "never ambiguous".
constexpr unsigned kPlainAttribute = 974;
constexpr unsigned kUnambiguousAttribute = 3022;

const COSID& metaPropertyId() {
  static const COSID id("vantel.graphics.internal.GraphicsMetaProperty");
  return id;
}
const COSID& metaEventId() {
  static const COSID id("vantel.graphics.internal.GraphicsMetaEvent");
  return id;
}

// The property object behind a block, when the block's owner is a graphics
// meta property.
COSPropInfo* ownerProperty(const COSInterface* owner) {
  if (!owner || !owner->getClass() || !owner->getClass()->isSubclassOf(metaPropertyId())) return nullptr;
  if (owner->getKind() != COSKind::Property) return nullptr;
  return const_cast<COSPropInfo*>(static_cast<const COSPropInfo*>(owner));
}

}  // namespace

SGCustomMetaProperty::SGCustomMetaProperty(COSInterface* ownerObject) noexcept : owner(ownerObject) {
  if (owner && owner->getKind() == COSKind::Property)
    propInfoBase_ = dynamic_cast<sgutils::PropInfoBase*>(static_cast<COSPropInfo*>(owner));
}

bool SGCustomMetaProperty::getResettable() const {
  if (COSPropInfo* p = ownerProperty(owner)) {
    if (auto* base = dynamic_cast<sgutils::PropInfoBase*>(p)) return base->isResetAllowed();
    if (auto* generic = dynamic_cast<COSGenericProp*>(p)) return generic->isResetAllowed();
  }
  return resettable;
}

void SGCustomMetaProperty::setResettable(bool value) {
  if (COSPropInfo* p = ownerProperty(owner)) {
    if (auto* base = dynamic_cast<sgutils::PropInfoBase*>(p)) return base->setResetAllowed(value);
    if (auto* generic = dynamic_cast<COSGenericProp*>(p)) return generic->setResetAllowed(value);
  }
  resettable = value;
}

bool SGCustomMetaProperty::getDeepCopy() const {
  if (COSPropInfo* p = ownerProperty(owner))
    if (auto* base = dynamic_cast<sgutils::PropInfoBase*>(p)) return base->isDeepCopy();
  return deepCopy;
}

void SGCustomMetaProperty::setDeepCopy(bool value) {
  // The library's own properties answer DeepCopy themselves; the value is
  // dropped for them.
  if (COSPropInfo* p = ownerProperty(owner))
    if (dynamic_cast<sgutils::PropInfoBase*>(p)) return;
  deepCopy = value;
}

SGCustomMetaProperty* SGCustomMetaProperty::of(const COSInterface* property) noexcept {
  return property ? static_cast<SGCustomMetaProperty*>(property->getInstanceData(metaPropertyId())) : nullptr;
}
COSID SGCustomMetaProperty::classID() { return metaPropertyId(); }

SGCustomMetaEvent* SGCustomMetaEvent::of(const COSInterface* event) noexcept {
  return event ? static_cast<SGCustomMetaEvent*>(event->getInstanceData(metaEventId())) : nullptr;
}
COSID SGCustomMetaEvent::classID() { return metaEventId(); }

namespace sgutils::metadata {

namespace {

template <class Owner>
void addAttribute(COSClass* cls, const char* name, bool (Owner::*getter)() const, void (Owner::*setter)(bool),
                  unsigned flags, const char* description) {
  cls->addProperty(new COSPropCPPT<Owner, bool>(cls->getID(), COSID(name), COSDataTypePtr("logical scalar"), getter,
                                                setter, PublicAccess, PublicAccess, flags, description));
}

}  // namespace

void SGCustomMetaPropInfo::initializeClass(COSClass* cls, const COSClient*) {
  using P = SGCustomMetaProperty;
  cls->addSuperclass(COSID("meta.property"));
  addAttribute<P>(cls, "Resettable", &P::getResettable, &P::setResettable, kPlainAttribute, "Resettable Attribute");
  addAttribute<P>(cls, "DeepCopy", &P::getDeepCopy, &P::setDeepCopy, kPlainAttribute, "DeepCopy Attribute");
  addAttribute<P>(cls, "ReconnectOnCopy", &P::getReconnectOnCopy, &P::setReconnectOnCopy, kPlainAttribute,
                  "ReconnectOnCopy Attribute");
  addAttribute<P>(cls, "AffectsObject", &P::getAffectsObject, &P::setAffectsObject, kUnambiguousAttribute,
                  "AffectsObject Attribute");
  addAttribute<P>(cls, "AffectsDataLimits", &P::getAffectsDataLimits, &P::setAffectsDataLimits,
                  kUnambiguousAttribute, "AffectsDataLimits Attribute");
  addAttribute<P>(cls, "AffectsLegend", &P::getAffectsLegend, &P::setAffectsLegend, kUnambiguousAttribute,
                  "AffectsLegend Attribute");
  addAttribute<P>(cls, "InternalComponent", &P::getInternalComponent, &P::setInternalComponent,
                  kUnambiguousAttribute, "InternalComponent Attribute");
  addAttribute<P>(cls, "UsedInUpdate", &P::getUsedInUpdate, &P::setUsedInUpdate, kPlainAttribute,
                  "UsedInUpdate Attribute");
}

void* SGCustomMetaPropInfo::allocateInstance(COSInterface* instance) { return new SGCustomMetaProperty(instance); }
void SGCustomMetaPropInfo::deallocateInstance(COSInterface*, void* data) {
  delete static_cast<SGCustomMetaProperty*>(data);
}

void SGCustomMetaEventInfo::initializeClass(COSClass* cls, const COSClient*) {
  using E = SGCustomMetaEvent;
  cls->addSuperclass(COSID("meta.event"));
  addAttribute<E>(cls, "HasCallbackProperty", &E::getHasCallbackProperty, &E::setHasCallbackProperty,
                  kUnambiguousAttribute, "CallbackFcn Attribute");
}

void* SGCustomMetaEventInfo::allocateInstance(COSInterface*) { return new SGCustomMetaEvent; }
void SGCustomMetaEventInfo::deallocateInstance(COSInterface*, void* data) {
  delete static_cast<SGCustomMetaEvent*>(data);
}

}  // namespace sgutils::metadata

// The factories that start-up registers the three classes with.
namespace sgutils::support {
COSClassInfo* newSGCustomMetaPropInfo() { return new metadata::SGCustomMetaPropInfo; }
COSClassInfo* newSGCustomMetaEventInfo() { return new metadata::SGCustomMetaEventInfo; }
COSClassInfo* newSGCustomMetaClass() { return new metadata::SGCustomMetaClass; }
}  // namespace sgutils::support
