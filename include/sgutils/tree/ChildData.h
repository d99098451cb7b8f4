// The data of the events NodeChildAdded and NodeChildRemoved: the parent
// concerned (ParentNode) and the node that was added or removed (ChildNode).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSEventData.h"

namespace sgutils {

class SGUTILS_API ChildData : public COSEventData {
 public:
  // The event data class named by the events' infos.
  static constexpr const char kClassName[] = "ChildData";

  ChildData(const COSInterfacePtr& parentNode, const COSInterfacePtr& childNode, COSID eventName);
  ~ChildData() override;

  const COSInterfacePtr& getParentNode() const noexcept { return parentNode_; }
  const COSInterfacePtr& getChildNode() const noexcept { return childNode_; }

 private:
  COSInterfacePtr parentNode_;
  COSInterfacePtr childNode_;
};

}  // namespace sgutils
