// The description of one event; also an instance of a meta event class.
#pragma once

#include "vcos/COSInterface.h"
#include "vcos/MemberAccess.h"

class ExtendedMemberAccess;

class VCOS_API COSEventInfo : public COSInterface {
 public:
  COSEventInfo() noexcept : COSInterface(COSKind::Event) {}

  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;
  virtual const char* getDetailedDescription() const;
  virtual bool isHidden() const;
  // The class of the event data ("event.EventData" by default).
  virtual COSID getDataClassID() const;
  virtual MemberAccess getSendAccess() const;
  virtual const ExtendedMemberAccess* getExtendedSendAccess() const;
  virtual MemberAccess getListenAccess() const;
  virtual const ExtendedMemberAccess* getExtendedListenAccess() const;
  // Told when a listener for this event is added to or removed from `source`.
  virtual void notifyAdd(COSInterface* source, COSListener* listener);
  virtual void notifyRemove(COSInterface* source, COSListener* listener);
  virtual bool isDestructible() const;

  COSID getID() const noexcept { return id_; }
  COSClass* getDefiningClass() const noexcept { return definingClass_; }

 private:
  friend class COSClass;
  COSID id_;
  COSClass* definingClass_ = nullptr;
};
