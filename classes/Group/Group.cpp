// The hand-written half of Group: a group lives in an axes or another group.
#include "sgutils/objects/Group.gen.h"

#include "sgclasses/ClassNames.h"

namespace sgclasses {

bool Group::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kAxesClass, kGroupClass}); }

}  // namespace sgclasses
