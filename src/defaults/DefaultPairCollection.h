// The collection of the defaults that apply to an object under a parent,
// for the frame's hook (SGReference::getDefaultPropValuePairs).
#pragma once

#include "sgutils/defaults/PropValuePairs.h"
#include "vcos/COSInterfacePtr.h"

class SGReference;

namespace sgutils::detail {

// Appends, root first, each ancestor's defaults for the class of the
// block's object; nothing for a null parent.
void collectDefaultPairs(SGReference& block, const COSInterfacePtr& parent, PropValuePairs& pairs);

}  // namespace sgutils::detail
