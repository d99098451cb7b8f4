// Out-of-line parts of the counted base of every class-system object.
#include "vcos/COSInterface.h"

COSInterface::~COSInterface() { assert(strong_ == 0 && "object freed while still strongly referenced"); }

void COSInterface::lastStrongReferenceReleased() {}
