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

class COSInterface;
class COSPropInfo;

namespace sgutils::copy {

class SGUTILS_API ParentConnector {
 public:
  // Hooks `object` under `parent` as a set of Parent to `parent` would
  // (raising what it raises). False when `object` is none of the family's
  // (nothing done): the copy then sets Parent.
  using Connect = bool (*)(COSInterface* object, COSInterface* parent);

  // Registers `connect` for the Parent property `parent` (a few at most;
  // a second registration of the same property replaces the first).
  static void set(const COSPropInfo* parent, Connect connect) noexcept;
  // The function registered for `parent`, or null.
  static Connect find(const COSPropInfo* parent) noexcept;
};

}  // namespace sgutils::copy
