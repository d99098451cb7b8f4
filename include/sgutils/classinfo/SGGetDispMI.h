// getdisp on graphics objects: the interpreter's function "sggetdisp".
#pragma once

#include "sgutils/classinfo/SGSetGetDispBaseMI.h"

class SGUTILS_API SGGetDispMI : public SGSetGetDispBaseMI {
 public:
  explicit SGGetDispMI(COSID classId);
};
