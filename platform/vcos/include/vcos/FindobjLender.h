// A way for findobj to look at a property's value without the copy that a
// get hands out: the library that defines a computed property whose value it
// keeps in the object installs a lender for it, and the search compares the
// lent value before any other code runs, then lets go of it. Used only when
// the get would take its plain course (public access, no routed get, no
// property listeners on the object).
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSValue.h"

class COSInterface;

namespace vcos {

// Puts the value of the property on `object` in `out`, borrowed, and answers
// true; false: no value to lend (the search then reads it the usual way).
using FindobjLender = bool (*)(COSInterface* object, COSValue& out);

// For the property `name` of the class that defines it; replaces an earlier
// lender, and a null lender removes it.
VCOS_API void setFindobjLender(COSID definingClass, COSID name, FindobjLender lender);
VCOS_API FindobjLender findobjLender(COSID definingClass, COSID name) noexcept;

// A key that stands for the value of the property on `object`, so a search
// comparing many objects with one value compares each distinct value once:
// two objects whose keys are equal hold equal values, for as long as the
// process runs (an interned id of the value, say). False: no key (the value
// is then compared as usual). Asked on the same plain course as a lender,
// reads no value and runs no code. `block` is the object's data block of the
// defining class, found by the search once per class (null where the class
// keeps none under that class), so the key is read without a look-up.
using FindobjKey = bool (*)(COSInterface* object, const void* block, const void*& key);

// For the property `name` of the class that defines it; a null key removes it.
VCOS_API void setFindobjKey(COSID definingClass, COSID name, FindobjKey key);
VCOS_API FindobjKey findobjKey(COSID definingClass, COSID name) noexcept;

}  // namespace vcos
