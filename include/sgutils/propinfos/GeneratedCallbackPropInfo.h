// The property of an event that asks for a callback property: named after
// the event with "Fcn" behind it, of type "vantel.graphics.datatype.Callback",
// public to read and write. The value lives in the object's
// GeneratedCallbackInterface, which owns it: getValue lends it (null reads as
// the empty callback) and releaseValue gives nothing back; setValue stores a
// copy of the caller's value and frees the old one.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "sgutils/propinfos/PropInfoBase.h"

class COSClass;
class COSEventInfo;

namespace sgutils {

class GeneratedCallbackInterface;

namespace detail {
// The texts a GeneratedCallbackPropInfo points its base at; made before it.
struct GeneratedCallbackNames {
  GeneratedCallbackNames(std::string event);
  std::string eventName;
  std::string propertyName;
  std::string description;
};
}  // namespace detail

class SGUTILS_API GeneratedCallbackPropInfo : private detail::GeneratedCallbackNames, public PropInfoBase {
 public:
  GeneratedCallbackPropInfo(COSID classId, const std::string& eventName);

  // Adds the property of `event` to `cls` when the event's graphics metadata
  // says HasCallbackProperty; otherwise does nothing.
  static void addIfRequested(COSClass* cls, COSEventInfo* event);

  const std::string& getEventName() const noexcept { return eventName; }
  const char* getDetailedDescription() const override { return description.c_str(); }

  COSValue getValue(COSInterface* object) const override;
  void setValue(COSInterface* object, COSValue value) override;
  COSValue getFactoryDefault() const override;
  void getVLArrays(const COSClient* client, COSInterface* instance, std::vector<vxArray*>& out) const override;
  bool canContainInterfaces() const override { return false; }
  void setModeManual(COSInterface*) override {}
  void releaseValue(COSInterface*, COSValue) const override {}

  // The object's interface, or null when its class does not carry one.
  static GeneratedCallbackInterface* interfaceOf(COSInterface* object, COSID classId) noexcept;
};

}  // namespace sgutils
