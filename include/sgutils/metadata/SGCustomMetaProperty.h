// The data block of one "GraphicsMetaProperty" instance: the graphics
// attributes of a property (Resettable, DeepCopy, ReconnectOnCopy, the three
// Affects bits, InternalComponent, UsedInUpdate). Resettable and DeepCopy of
// the library's own properties live on the property info itself, so their
// accessors go there first.
#pragma once

#include <cstdint>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"

class COSInterface;

namespace sgutils {
class PropInfoBase;
}

// Bits of SGCustomMetaProperty::affects.
enum SGAffectsBit : std::uint32_t {
  kAffectsObject = 1u << 0,
  kAffectsDataLimits = 1u << 1,
  kAffectsLegend = 1u << 2,
};

class SGUTILS_API SGCustomMetaProperty {
 public:
  // `owner` is the property object; not counted.
  explicit SGCustomMetaProperty(COSInterface* owner) noexcept;

  bool getResettable() const;
  void setResettable(bool value);
  bool getDeepCopy() const;
  void setDeepCopy(bool value);
  bool getReconnectOnCopy() const noexcept { return reconnectOnCopy; }
  void setReconnectOnCopy(bool value) noexcept { reconnectOnCopy = value; }
  bool getAffectsObject() const noexcept { return (affects & kAffectsObject) != 0; }
  void setAffectsObject(bool value) noexcept { setBit(kAffectsObject, value); }
  bool getAffectsDataLimits() const noexcept { return (affects & kAffectsDataLimits) != 0; }
  void setAffectsDataLimits(bool value) noexcept { setBit(kAffectsDataLimits, value); }
  bool getAffectsLegend() const noexcept { return (affects & kAffectsLegend) != 0; }
  void setAffectsLegend(bool value) noexcept { setBit(kAffectsLegend, value); }
  bool getInternalComponent() const noexcept { return internalComponent; }
  void setInternalComponent(bool value) noexcept { internalComponent = value; }
  bool getUsedInUpdate() const noexcept { return usedInUpdate; }
  void setUsedInUpdate(bool value) noexcept { usedInUpdate = value; }

  // The property as one of the library's own, or null; found once.
  sgutils::PropInfoBase* propInfoBase() const noexcept { return propInfoBase_; }
  // The block of a property object, or null when the property is not a
  // "GraphicsMetaProperty".
  static SGCustomMetaProperty* of(const COSInterface* property) noexcept;
  static COSID classID();

  bool resettable = true;
  bool deepCopy = false;
  bool reconnectOnCopy = false;
  std::uint32_t affects = 0;
  bool internalComponent = false;
  bool usedInUpdate = true;
  COSInterface* owner;

 private:
  void setBit(std::uint32_t bit, bool on) noexcept { affects = on ? (affects | bit) : (affects & ~bit); }
  sgutils::PropInfoBase* propInfoBase_ = nullptr;
};
