// How a copy is hooked under its parent's copy without a set of Parent: a
// class family whose "Parent" is one property of its own registers, for
// that property, a function that hooks an object under a parent object with
// the checks and effects of the set (the parent's state and class, the
// object's place among the children, the defaults of its new ancestors, its
// theme, the hooks of its class), without the set's path and the value's
// conversion. The copy calls it only where the set would be unobserved (no
// listener, no custom set).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"

class COSInterface;
class COSPropInfo;

namespace sgutils::copy {

class SGUTILS_API ParentConnector {
 public:
  // Hooks `object` under `parent` as a set of Parent to `parent` would
  // (raising what it raises). False when `object` is none of the family's
  // (nothing done): the copy then sets Parent.
  using Connect = bool (*)(COSInterface* object, COSInterface* parent);

  // Registers `connect` for the "Parent" that the class `definingClass`
  // defines (a few at most; registering a class again replaces its entry).
  static void set(COSID definingClass, Connect connect);
  // The function registered for the class that defines `parent`, when
  // `parent` is a "Parent"; else null. Asked once per class by a copy.
  static Connect find(const COSPropInfo* parent);
};

}  // namespace sgutils::copy
