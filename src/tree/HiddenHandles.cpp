// The switches that lift hiding, and the way to the root object.
#include "sgutils/tree/RootInstance.h"
#include "sgutils/tree/ScopeShowHiddenHandlesOn.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"

#include <typeinfo>

#include "foundation/core/except/Error.h"
#include "foundation/usm/Detail.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSCasts.h"

namespace sgutils {

namespace {

bool internalFlag = false;

using Store = foundation::usm::Detail<foundation::usm::scope::Vvm>;
struct RootAccessorSlot {
  RootInstance::Accessor fn;
};
Store::ID rootSlot() {
  static const Store::ID id = Store::getNextID(typeid(RootAccessorSlot));
  return id;
}

COSPropInfo* showHiddenHandlesOf(const COSInterfacePtr& root) {
  static const COSID name("ShowHiddenHandles");
  return root->findPropertyInfo(name);
}

}  // namespace

void ShowHiddenHandlesInternal::SetShowHiddenHandlesInternalFlag(bool on) noexcept { internalFlag = on; }
bool ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag() noexcept { return internalFlag; }

ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard::ShowHiddenHandlesInternalScopeGuard() noexcept
    : saved_(internalFlag) {
  internalFlag = true;
}
ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard::~ShowHiddenHandlesInternalScopeGuard() {
  internalFlag = saved_;
}

COSInterfacePtr RootInstance::getRootInstance(NullTolerance tolerance) {
  // A copy, so an accessor that replaces itself runs to its end.
  Accessor fn;
  if (auto* slot = static_cast<RootAccessorSlot*>(Store::find(rootSlot(), typeid(RootAccessorSlot)))) fn = slot->fn;
  COSInterfacePtr root = fn();  // an empty accessor raises std::bad_function_call
  if (!root && tolerance == NullTolerance::Refuse) throw foundation::core::except::Error("VANTEL:root:Deleted");
  return root;
}

void RootInstance::setGetRootInstanceFcn(const Accessor& accessor) {
  Store::insert(rootSlot(), typeid(RootAccessorSlot), foundation::usm::makeValue<RootAccessorSlot>(RootAccessorSlot{accessor}));
}

void RootInstance::clearGetRootInstanceFcn() { Store::erase(rootSlot(), typeid(RootAccessorSlot)); }

ScopeShowHiddenHandlesOn::ScopeShowHiddenHandlesOn() {
  COSInterfacePtr root = RootInstance::getRootInstance(NullTolerance::Refuse);
  COSPropInfo* property = showHiddenHandlesOf(root);
  if (!property) return;
  COSValue before = property->getValue(root.get());
  savedValue = before.word() != 0;
  property->releaseValue(root.get(), before);
  property->setValue(root.get(), COSValue::fromBool(true));
  showHiddenProperty = property;
}

ScopeShowHiddenHandlesOn::~ScopeShowHiddenHandlesOn() {
  if (!showHiddenProperty) return;
  try {
    COSInterfacePtr root = RootInstance::getRootInstance(NullTolerance::Refuse);
    if (COSPropInfo* property = cosiToProp(showHiddenProperty.get())) property->setValue(root.get(), COSValue::fromBool(savedValue));
  } catch (...) {
    // The root went before the guard: nothing is left to restore.
  }
}

}  // namespace sgutils
