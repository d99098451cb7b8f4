// The definition record and the qualities of the definition family, read
// from the record's attribute word.
#include "sgutils/propinfos/SimplePropInfoBase.h"

#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/propinfos/DefaultProvider.h"
#include "sgutils/propinfos/PropertyDefinition.h"

namespace sgutils {

PropertyDefinitionInterface::PropertyDefinitionInterface(COSID classId, std::string name, unsigned attributes)
    : classId_(classId), name_(std::move(name)), attributes_(attributes) {}

PropertyDefinitionInterface::~PropertyDefinitionInterface() = default;

MemberAccess PropertyDefinitionInterface::getAccess() const noexcept {
  if (has(kDefGetPrivate)) return PrivateAccess;
  if (has(kDefGetProtected)) return ProtectedAccess;
  return PublicAccess;
}

MemberAccess PropertyDefinitionInterface::setAccess() const noexcept {
  if (has(kDefSetPrivate)) return PrivateAccess;
  if (has(kDefSetProtected) || has(kDefReadOnly)) return ProtectedAccess;
  return PublicAccess;
}

SimplePropInfoBase::SimplePropInfoBase(const PropertyDefinitionInterface& record, const char* name,
                                       COSDataTypePtr type, const char* description, bool publicFace, bool hasMode,
                                       bool hasSerializableTwin, boost::shared_ptr<DefaultProvider> provider)
    : PropInfoBase(record.getClassID(), name, std::move(type), record.getAccess(), record.setAccess(),
                   /*flags=*/0, description),
      record_(&record),
      publicFace_(publicFace),
      hasMode_(hasMode),
      hasSerializableTwin_(hasSerializableTwin) {
  setDefaultProvider(std::move(provider));
}

SimplePropInfoBase::~SimplePropInfoBase() = default;

COSValue SimplePropInfoBase::getFactoryDefault() const {
  const auto& provider = getDefaultProvider();
  return provider ? provider->getDefaultValue() : COSValue();
}

bool SimplePropInfoBase::isDefaultAllowed() const { return !has(kDefReadOnly) && !has(kDefNoDefault); }
bool SimplePropInfoBase::isResetAllowed() const { return !(publicFace_ && hasMode_) && !has(kDefNoReset); }
bool SimplePropInfoBase::isDependent() const { return (publicFace_ && hasMode_) || has(kDefDependent); }
bool SimplePropInfoBase::isTransient() const { return (hasSerializableTwin_ && !publicFace_) || has(kDefTransient); }
bool SimplePropInfoBase::isCopyAllowed() const { return !has(kDefNoCopy); }
bool SimplePropInfoBase::isInspectAllowed() const { return !has(kDefNotInspectable); }
bool SimplePropInfoBase::isVisible() const { return publicFace_ && !has(kDefHidden); }
bool SimplePropInfoBase::isListenerGetAllowed() const { return publicFace_ && !has(kDefNoGetListeners); }
bool SimplePropInfoBase::isListenerSetAllowed() const { return publicFace_ && !has(kDefNoSetListeners); }
bool SimplePropInfoBase::isAbortSet() const { return SGReference::getAbortSet() && !has(kDefNotAbortSet); }

namespace detail {

COSDataTypePtr autoManualType() {
  static const COSID id("vantel.graphics.datatype.AutoManual");
  return COSTypeRepository::getType(id);
}

unsigned modeFaceFlags(const PropertyDefinitionInterface& record) noexcept {
  // Transient, inspectable and, unless the record says otherwise, defaultable,
  // resettable and copyable: the mode of a triple is reset with its value.
  unsigned flags = kPropTransient | kPropInspectAllowed;
  if (!record.has(kDefNoDefault) && !record.has(kDefReadOnly)) flags |= kPropDefaultAllowed;
  if (!record.has(kDefNoReset)) flags |= kPropResetAllowed;
  // A copy keeps the mode with the value: copyable unless the value is not.
  if (!record.has(kDefNoCopy)) flags |= kPropCopyAllowed;
  return flags;
}

}  // namespace detail
}  // namespace sgutils
