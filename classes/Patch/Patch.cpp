// The hand-written half of Patch: where it may live.
#include "sgutils/objects/Patch.gen.h"

#include "sgclasses/ClassNames.h"

namespace sgclasses {

bool Patch::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kAxesClass, kGroupClass}); }

}  // namespace sgclasses
