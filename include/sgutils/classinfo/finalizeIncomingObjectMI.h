// "finalizeIncomingObject" of a graphics class: the hidden twin of
// "loadobj", taking one input.
#pragma once

#include "sgutils/classinfo/loadobjBaseMI.h"

class SGUTILS_API finalizeIncomingObjectMI : public loadobjBaseMI {
 public:
  explicit finalizeIncomingObjectMI(COSID classId);
};
