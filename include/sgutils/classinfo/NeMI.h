// ne on graphics objects, numbers compared as the objects they name.
#pragma once

#include "sgutils/classinfo/SGHandleRelOpMI.h"

class SGUTILS_API NeMI : public SGHandleRelOpMI {
 public:
  explicit NeMI(COSID classId);
};
