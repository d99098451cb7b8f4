// The record behind the properties of the definition family: the class id,
// the property name and an attribute word in which most bits turn a quality
// off. A record is a member of its class info and makes the property infos
// of one name (see PropertyDefinition.h).
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"
#include "vcos/MemberAccess.h"

class COSClass;

namespace sgutils {

// Bits of the attribute word.
enum DefinitionAttribute : unsigned {
  kDefNoObjectDirty = 1u << 0,     // doPostSet's second argument is false
  kDefReadOnly = 1u << 1,          // set access 1 unless bits 3/4 say more; no default
  kDefLimitsDirty = 1u << 2,       // doPostSet's first argument is true
  kDefSetProtected = 1u << 3,
  kDefSetPrivate = 1u << 4,        // beats kDefSetProtected
  kDefGetProtected = 1u << 5,
  kDefGetPrivate = 1u << 6,        // beats kDefGetProtected
  kDefHidden = 1u << 7,
  kDefNoReset = 1u << 9,
  kDefNoCopy = 1u << 10,
  kDefNoGetListeners = 1u << 11,
  kDefNoSetListeners = 1u << 12,
  kDefDependent = 1u << 13,
  kDefNotInspectable = 1u << 14,
  kDefTransient = 1u << 15,
  kDefNoDefault = 1u << 16,
  kDefNotAbortSet = 1u << 17,
};

class SGUTILS_API PropertyDefinitionInterface {
 public:
  PropertyDefinitionInterface(COSID classId, std::string name, unsigned attributes);
  PropertyDefinitionInterface(const PropertyDefinitionInterface&) = delete;
  PropertyDefinitionInterface& operator=(const PropertyDefinitionInterface&) = delete;
  virtual ~PropertyDefinitionInterface();

  // Makes the property infos of this name and adds each to `cls`.
  virtual void addTo(COSClass* cls) = 0;

  COSID getClassID() const noexcept { return classId_; }
  const std::string& getName() const noexcept { return name_; }
  unsigned getAttributes() const noexcept { return attributes_; }
  bool has(unsigned bit) const noexcept { return (attributes_ & bit) != 0; }
  MemberAccess getAccess() const noexcept;
  MemberAccess setAccess() const noexcept;

 private:
  COSID classId_;
  std::string name_;
  unsigned attributes_;
};

}  // namespace sgutils
