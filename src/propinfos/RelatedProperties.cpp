// RelatedProperties, ForceHonorModesScopeGuard and the fan-out of a value
// from a composite to one of its parts.
#include "sgutils/propinfos/RelatedProperties.h"

#include <utility>

#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/propinfos/ForceHonorModesScopeGuard.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"

namespace sgutils {

namespace {
const COSID& autoManualId() {
  static const COSID id("vantel.graphics.datatype.AutoManual");
  return id;
}
}  // namespace

RelatedProperties::RelatedProperties(COSInterfacePtr object, const std::string& name) : object_(std::move(object)) {
  if (!object_ || object_->isDestroyed()) return;
  COSInterfacePtr mode, internal;
  object_->findProperty(mode, COSID(name + "Mode"));
  object_->findProperty(internal, COSID(name + "_I"));
  COSPropInfoPtr m(mode), i(internal);
  if (m && m->getMemberGetAccess() == PublicAccess && m->getDataType().getID() == autoManualId()) mode_ = m;
  if (i && i->getMemberSetAccess() == PublicAccess) internal_ = i;
}

const AutoManual* RelatedProperties::modeValue() const {
  if (!mode_ || object_->isDestroyed()) return nullptr;
  // Mode words point at process-lifetime bytes: nothing to give back.
  return object_->getPropertyValue(COSGetPublicClient(), mode_.get()).asPointer<const AutoManual>();
}

bool RelatedProperties::setMode(AutoManual mode) {
  if (!mode_ || object_->isDestroyed()) return false;
  object_->setPropertyValue(COSGetPublicClient(), mode_.get(), COSValue(&mode));
  return true;
}

bool RelatedProperties::setInternal(COSValue value) {
  if (!internal_ || object_->isDestroyed()) return false;
  object_->setPropertyValue(COSGetPublicClient(), internal_.get(), value);
  return true;
}

bool RelatedProperties::setInternal(const vxArray* value) {
  if (!value || !internal_) return false;
  static const COSID any("any");
  COSDataTypePtr type = internal_->getDataType();
  if (!type) return false;
  if (type.getID() == any) return setInternal(COSValue(value));
  COSTypeConversion* conversion = COSTypeRepository::getConversion(any, type.getID());
  if (!conversion) return false;
  const ConvertedValue typed(type, conversion->convert(COSValue(value)));
  return setInternal(typed.get());
}

ForceHonorModesScopeGuard::ForceHonorModesScopeGuard(COSInterface* object, bool enable) {
  if (!enable || !object || object->isDestroyed()) return;
  SGHandle* handle = SGHandle::fromObject(object);
  if (!handle || handle->shouldFanoutsHonorModes()) return;
  object_ = object;
  active_ = true;
  handle->setFanoutsHonorModes(true);
}

ForceHonorModesScopeGuard::ForceHonorModesScopeGuard(ForceHonorModesScopeGuard&& other) noexcept
    : object_(std::move(other.object_)), active_(std::exchange(other.active_, false)) {}

ForceHonorModesScopeGuard& ForceHonorModesScopeGuard::operator=(ForceHonorModesScopeGuard&& other) noexcept {
  if (this != &other) {
    release();
    object_ = std::move(other.object_);
    active_ = std::exchange(other.active_, false);
  }
  return *this;
}

ForceHonorModesScopeGuard ForceHonorModesScopeGuard::copyState(COSInterface* from, COSInterface* to) {
  if (from && !from->isDestroyed()) {
    SGHandle* handle = SGHandle::fromObject(from);
    if (handle && handle->shouldFanoutsHonorModes()) return ForceHonorModesScopeGuard(to);
  }
  return ForceHonorModesScopeGuard();
}

void ForceHonorModesScopeGuard::release() noexcept {
  if (!active_) return;
  active_ = false;
  if (object_ && !object_->isDestroyed())
    if (SGHandle* handle = SGHandle::fromObject(object_.get())) handle->setFanoutsHonorModes(false);
  object_.reset();
}

void setFanoutProperty(const COSValue& value, COSDataTypePtr& /*type*/, COSInterfacePtr& target, std::string name,
                       bool honorModes) {
  if (!target || target->isDestroyed()) return;
  RelatedProperties related(target, name);
  if (honorModes && related.hasMode()) {
    const AutoManual* mode = related.modeValue();
    if (mode && *mode != AutoManual::Auto) return;
  }
  ForceHonorModesScopeGuard guard(target.get(), honorModes);
  related.setInternal(value);
}

}  // namespace sgutils
