// Removes old-style handle values from data on its way to and from a file.
// Both functions walk cells and structs recursively and return their input
// when nothing had to change; otherwise a new array that the caller owns.
// The input is never modified.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vx/vxTypes.h"

namespace sgutils {

class SGUTILS_API UDDConverter {
 public:
  // At load: an old handle in a file is marked as a complex double array
  // whose imaginary parts all hold one marker number. Each such array
  // becomes an array of graphics placeholders of the same size, since the
  // object it stood for no longer exists.
  static vxArray* replaceUDDHandles(vxArray* value);
  // At save: a handle object of the older object layer (is-a
  // "handle.handle" but no class-system object) becomes a complex double
  // array of the same size; its numbers are not kept.
  static vxArray* convertUDDToHandles(vxArray* value);

  // The imaginary part that marks an old handle in a file.
  static double handleMarker() noexcept;
};

}  // namespace sgutils
