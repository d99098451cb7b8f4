// The base of the definition family: a property whose qualities come from
// the attribute word of its record and from three facts, whether it is the
// public face, whether its storage has a mode, and whether it has a
// serializable twin. The public face of a moded property reports itself
// dependent and not resettable; an internal face hides from listeners and
// display.
#pragma once

#include "sgutils/propinfos/PropInfoBase.h"
#include "sgutils/propinfos/PropertyDefinitionInterface.h"

namespace sgutils {

class SGUTILS_API SimplePropInfoBase : public PropInfoBase {
 public:
  SimplePropInfoBase(const PropertyDefinitionInterface& record, const char* name, COSDataTypePtr type,
                     const char* description, bool publicFace, bool hasMode, bool hasSerializableTwin,
                     boost::shared_ptr<DefaultProvider> provider);
  ~SimplePropInfoBase() override;

  COSValue getFactoryDefault() const override;
  bool isDefaultAllowed() const override;
  bool isResetAllowed() const override;
  bool isDependent() const override;
  bool isTransient() const override;
  bool isCopyAllowed() const override;
  bool isInspectAllowed() const override;
  bool isVisible() const override;
  bool isListenerGetAllowed() const override;
  bool isListenerSetAllowed() const override;
  bool isAbortSet() const override;
  bool isExternal() const override { return publicFace_; }

  const PropertyDefinitionInterface& getRecord() const noexcept { return *record_; }

 protected:
  bool has(unsigned bit) const noexcept { return record_->has(bit); }
  bool publicFace() const noexcept { return publicFace_; }
  bool hasMode() const noexcept { return hasMode_; }
  // The two arguments of doPostSet after a write.
  bool limitsDirty() const noexcept { return has(kDefLimitsDirty); }
  bool objectDirty() const noexcept { return !has(kDefNoObjectDirty); }

 private:
  const PropertyDefinitionInterface* record_;
  bool publicFace_;
  bool hasMode_;
  bool hasSerializableTwin_;
};

}  // namespace sgutils
