// The internal face `X_I` of a generated triple whose value the class works
// out when it is read (a theme's automatic colours, say). Writes behave as
// for any internal face; a read asks the class, which may refresh the member
// first and answers a word that points at it.
//
// `PI` gives, besides what InternalPropInfo needs:
//   static COSValue compute(Class&);   the refreshed member's word, borrowed
#pragma once

#include "sgutils/propinfos/InternalPropInfo.h"

namespace sgutils {

template <class Class, class PI>
class ComputedInternalPropInfo : public InternalPropInfo<Class, PI> {
 public:
  using InternalPropInfo<Class, PI>::InternalPropInfo;

  COSValue getValue(COSInterface* instance) const override {
    Class* block = blockOf<Class>(instance, this->getClassID());
    return block ? PI::compute(*block) : COSValue();
  }
};

}  // namespace sgutils
