// The hand-written half of Text: where it may live.
#include "sgutils/objects/Text.gen.h"

#include "sgclasses/ClassNames.h"

namespace sgclasses {

bool Text::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kAxesClass, kGroupClass}); }

}  // namespace sgclasses
