// Property look-up on an instance (class properties, then dynamic ones:
// exact, without regard to case, then by unique prefix), and dynamic
// properties themselves.
#include "vcos/src/class/ClassTables.h"
#include "vcos/DynamicProperties.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSDataType.h"

using foundation::core::except::Error;
using vcos::internal::InstanceExtras;
using vcos::internal::ObjectOps;

namespace {

COSPropInfo* findDynamic(const COSInterface* o, COSID name, bool folded) {
  const InstanceExtras* x = ObjectOps::extrasIfAny(o);
  if (!x) return nullptr;
  for (const COSInterfacePtr& d : x->dynamicProperties) {
    auto* p = static_cast<COSPropInfo*>(d.get());
    if (folded ? p->getID().folded() == name.folded() : p->getID() == name) return p;
  }
  return nullptr;
}

}  // namespace

COSPropInfo* COSInterface::findPropertyInfo(COSID name) const {
  checkValid();
  if (!name) return nullptr;
  COSClass* cls = class_;
  if (cls)
    if (COSPropInfo* p = cls->findPropertyExact(name)) return p;
  if (COSPropInfo* p = findDynamic(this, name, false)) return p;
  const bool caseInsensitive = !cls || cls->tables().caseInsensitive;
  if (caseInsensitive) {
    if (cls)
      if (const std::uint32_t* i = cls->tables().foldedPropertyIndex.find(name.folded()))
        return cls->tables().properties[*i].property;
    if (COSPropInfo* p = findDynamic(this, name, true)) return p;
  }
  if (!cls || !cls->tables().truncationAllowed) return nullptr;
  std::vector<COSPropInfo*> all;
  for (const auto& s : cls->tables().properties) all.push_back(s.property);
  if (extras_)
    for (const COSInterfacePtr& d : extras_->dynamicProperties) all.push_back(static_cast<COSPropInfo*>(d.get()));
  return vcos::internal::matchByPrefix(all, name, cls->getName());
}

void COSInterface::findProperty(COSInterfacePtr& out, COSID name) const { out = findPropertyInfo(name); }

void COSInterface::findDynamicProperty(COSInterfacePtr& out, COSID name) const {
  checkValid();
  COSPropInfo* p = findDynamic(this, name, false);
  if (!p && (!class_ || class_->tables().caseInsensitive)) p = findDynamic(this, name, true);
  out = p;
}

void COSInterface::addDynamicProperty(COSPropInfo* property) {
  assert(property && "addDynamicProperty needs a property");
  checkValid();
  COSInterfacePtr owned(property);
  COSID id(property->getName());
  if ((class_ && class_->findPropertyExact(id)) || findDynamic(this, id, false))
    throw Error(vcos::msg::DynamicPropertyExists, id.str());
  ObjectOps::setMemberIdentity(property, id, class_);
  if (class_ && !property->getClass())
    if (COSClass* meta = COSClass::getClass(class_->tables().metaPropertyId)) ObjectOps::bindToClass(property, meta);
  ObjectOps::extras(this).dynamicProperties.push_back(owned);
}

void COSInterface::removeDynamicProperty(const COSPropInfo* property) {
  checkValid();
  InstanceExtras* x = extras_;
  if (!x) return;
  for (auto it = x->values.begin(); it != x->values.end(); ++it) {
    if (it->property != property) continue;
    COSValue v = it->value;
    x->values.erase(it);
    if (COSDataTypePtr type = property->getDataType()) type->destroyInternal(v);
    break;
  }
  std::erase_if(x->dynamicProperties, [&](const COSInterfacePtr& d) { return d.get() == property; });
}

bool vcos::hasDynamicProperties(const COSInterface* object) noexcept {
  const vcos::internal::InstanceExtras* x = object ? vcos::internal::ObjectOps::extrasIfAny(object) : nullptr;
  return x && !x->dynamicProperties.empty();
}

std::span<const COSInterfacePtr> vcos::dynamicProperties(const COSInterface* object) noexcept {
  const vcos::internal::InstanceExtras* x = object ? vcos::internal::ObjectOps::extrasIfAny(object) : nullptr;
  if (!x) return {};
  return {x->dynamicProperties.data(), x->dynamicProperties.size()};
}
