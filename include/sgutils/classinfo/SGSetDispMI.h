// setdisp on graphics objects: the interpreter's function "sgsetdisp".
#pragma once

#include "sgutils/classinfo/SGSetGetDispBaseMI.h"

class SGUTILS_API SGSetDispMI : public SGSetGetDispBaseMI {
 public:
  explicit SGSetDispMI(COSID classId);
};
