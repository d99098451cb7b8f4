// The base of event data objects. The source is held weakly; the notify count
// tells how many notifications are using the data, and the data may be
// destroyed only when none is (isOkToDestroy). For property events it also
// names the property and carries the value being set (PreSet/PostSet).
#pragma once

#include "vcos/COSInterface.h"
#include "vcos/COSInterfacePtr.h"

class VCOS_API COSEventData : public COSInterface {
 public:
  COSEventData(COSInterface* source, COSID eventName);
  ~COSEventData() override;

  void incrementNotifyCount() noexcept { ++notifyCount_; }
  void decrementNotifyCount() noexcept {
    assert(notifyCount_ > 0 && "notify count underflow");
    --notifyCount_;
  }
  int getNotifyCount() const noexcept { return notifyCount_; }
  bool isOkToDestroy() const noexcept { return notifyCount_ == 0; }

  // A weak reference to the source; the source may be deleted meanwhile.
  const COSInterfacePtr& getSourceWeak() const noexcept { return source_; }
  COSID getEventName() const noexcept { return eventName_; }
  // Data a derived class attaches; null here.
  virtual void* getUserData() const;
  // Frees the user data early (e.g. before the source is deleted).
  virtual void releaseUserData();

  // Property events: the property, and the value being set (borrowed).
  const COSPropInfo* getProperty() const noexcept { return property_; }
  COSValue getValue() const noexcept { return value_; }
  void setPropertyEvent(const COSPropInfo* property, COSValue value) noexcept {
    property_ = property;
    value_ = value;
  }

 private:
  COSInterfacePtr source_;
  COSID eventName_;
  int notifyCount_ = 0;
  const COSPropInfo* property_ = nullptr;
  COSValue value_;
};
