// An event info built from data: name, data class, send and listen access.
#pragma once

#include <string>

#include "vcos/COSEventInfo.h"

class VCOS_API COSEventT : public COSEventInfo {
 public:
  explicit COSEventT(COSID name, MemberAccess sendAccess = PublicAccess, MemberAccess listenAccess = PublicAccess,
                     COSID dataClass = COSID(), const char* description = "");

  const char* getName() const override;
  const char* getDescription() const override;
  COSID getDataClassID() const override;
  MemberAccess getSendAccess() const override;
  MemberAccess getListenAccess() const override;

 private:
  COSID name_;
  MemberAccess send_;
  MemberAccess listen_;
  COSID dataClass_;
  std::string description_;
};
