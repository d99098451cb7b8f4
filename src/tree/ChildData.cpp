// The data of the node events.
#include "sgutils/tree/ChildData.h"

namespace sgutils {

ChildData::ChildData(const COSInterfacePtr& parentNode, const COSInterfacePtr& childNode, COSID eventName)
    : COSEventData(parentNode.get(), eventName), parentNode_(parentNode), childNode_(childNode) {}

ChildData::~ChildData() = default;

}  // namespace sgutils
