// Not installed. The one access list of the Copyable registration: the
// restricted copy members (copyElement, connectCopyToTree, the Copyable flag)
// admit the copy classes themselves, and the classes that the registration
// names beside them ("vantel.graphics.Graphics" and the annotation event
// data), each with its subclasses.
#pragma once

#include "vcos/ExtendedMemberAccess.h"

namespace sgutils::copy {
ExtendedMemberAccess copyAccessList();
}  // namespace sgutils::copy
