// "loadobj" of a graphics class: static, visible; takes the saved form and,
// optionally, the object the serializer restored.
#pragma once

#include "sgutils/classinfo/loadobjBaseMI.h"

class SGUTILS_API loadobjMI : public loadobjBaseMI {
 public:
  explicit loadobjMI(COSID classId);
};
