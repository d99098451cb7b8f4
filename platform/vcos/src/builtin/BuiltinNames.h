// Not installed; internal to the built-in classes of the class-object system.
//
// The interned names that the built-in classes, object arrays and findobj
// use, made once on first use.
#pragma once

#include "vcos/COSInternedBase.h"

namespace vcos::builtin {

struct Names {
  // Classes.
  COSID handle{"handle"};
  COSID dynamicprops{"dynamicprops"};
  COSID eventData{"event.EventData"};
  COSID propertyEvent{"event.PropertyEvent"};
  COSID listener{"event.listener"};
  COSID propListener{"event.proplistener"};
  COSID heterogeneous{"vantel.mixin.Heterogeneous"};
  COSID customDisplay{"vantel.mixin.CustomDisplay"};
  COSID propertyGroup{"vantel.mixin.util.PropertyGroup"};
  // Methods.
  COSID getDefaultScalarElement{"getDefaultScalarElement"};
  COSID loadobj{"loadobj"};
  COSID getPropertyGroups{"getPropertyGroups"};
  COSID displayScalarObject{"displayScalarObject"};
  COSID displayNonScalarObject{"displayNonScalarObject"};
  COSID displayEmptyObject{"displayEmptyObject"};
  COSID getHeader{"getHeader"};
  COSID getFooter{"getFooter"};
  // Types.
  COSID any{"any"};
};

inline const Names& names() {
  static const Names n;
  return n;
}

}  // namespace vcos::builtin
