// eq on graphics objects, numbers compared as the objects they name.
#pragma once

#include "sgutils/classinfo/SGHandleRelOpMI.h"

class SGUTILS_API EqMI : public SGHandleRelOpMI {
 public:
  explicit EqMI(COSID classId);
};
