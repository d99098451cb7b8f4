// The data block of one "GraphicsMetaEvent" instance: whether the event
// brings a callback property of its own.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"

class COSInterface;

class SGUTILS_API SGCustomMetaEvent {
 public:
  bool getHasCallbackProperty() const noexcept { return hasCallbackProperty; }
  void setHasCallbackProperty(bool value) noexcept { hasCallbackProperty = value; }
  // The block of an event object, or null.
  static SGCustomMetaEvent* of(const COSInterface* event) noexcept;
  static COSID classID();

  bool hasCallbackProperty = false;
};
