// What the tests of the base mixins and the current axes share: starting
// the library, making objects of the generated test classes, and reading
// and writing properties as the language does.
#pragma once

#include <string>

#include "sgutils/objects/ConcreteLegacy.gen.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/TestContextMenu.gen.h"
#include "sgutils/objects/TestLoadObj.gen.h"
#include "sgutils/objects/TestPlotAxes.gen.h"
#include "sgutils/objects/TestPlotFrame.gen.h"
#include "sgutils/sgutils.h"
#include "support/PropertyAccess.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgtest::mixins {

using Arr = matrix::unique_vxArray;
using sgtest::get;
using sgtest::getText;
using sgtest::obj;
using sgtest::set;

// Starts the library and registers the test classes (once).
inline void registerMixinTestClasses() {
  static const bool done = [] {
    VLInitialize_sgutils();
    using namespace sgutils::generated;
    for (auto fn : {&registerFigure, &registerTestLoadObj, &registerTestContextMenu, &registerConcreteLegacy,
                    &registerTestPlotAxes, &registerTestPlotFrame})
      fn();
    return true;
  }();
  (void)done;
}

inline COSInterfacePtr make(const char* className) {
  registerMixinTestClasses();
  Arr result(omConstructObjectWithClient(className, 0, nullptr, COSGetPublicClient()));
  return omGetArrayElement(result.get(), 0);
}

inline Arr text(const char* value) { return Arr(vxCreateString(value)); }
inline Arr empty() { return Arr(vxCreateDoubleMatrix(0, 0, vxREAL)); }

// The object a property holds (a 1-by-1 object array), or null.
inline COSInterfacePtr getObject(const COSInterfacePtr& object, const char* name) {
  Arr value = get(object, name);
  return omIsVCOS(value.get()) && vxGetNumberOfElements(value.get()) == 1 ? omGetArrayElement(value.get(), 0)
                                                                          : COSInterfacePtr();
}
inline void remove(const COSInterfacePtr& object) {
  if (object && !object->isDestroyed()) object->deleteObject(COSGetPublicClient());
}

}  // namespace sgtest::mixins
