// Not installed. The saved fields of an object whose class the serializer
// restores element by element (object_serialization::customizeAndDeserialize).
#pragma once

#include <vector>

#include "vx/matrix.h"
#include "vx/vxSerialize.h"

class COSClass;

namespace sgutils::persistence {

// Whether objects of the class take their saved elements in themselves.
bool restoresElements(const COSClass* cls);

// The saved fields of one object as a 1-by-1 struct of copies, in saved
// order, without the serializer's own (children, stored defaults).
matrix::unique_vxArray elementsOf(const std::vector<vxNamedValue>& fields);

}  // namespace sgutils::persistence
