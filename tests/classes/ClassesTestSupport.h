// What the tests of the concrete classes share: the classes registered once,
// a fresh root per test (everything below it deleted at the end), and
// property reads and writes as the language does them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vx.h"
#include "vcos/VxProperty.h"

namespace sgtest::classes {

using Arr = matrix::unique_vxArray;

class ClassesTest : public ::testing::Test {
 protected:
  void SetUp() override { sgclasses::registerClasses(); }
  void TearDown() override { sgclasses::releaseRoot(); }
};

inline Arr obj(const COSInterfacePtr& object) { return Arr(omCreateVCOSScalar(object)); }
inline Arr get(const COSInterfacePtr& object, const char* name) {
  Arr self = obj(object);
  return Arr(vxGetProperty(self.get(), 0, name));
}
inline void set(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  Arr self = obj(object);
  vxSetProperty(self.get(), 0, name, value);
}
inline std::string text(const COSInterfacePtr& object, const char* name) {
  return vxArrayToStdString(get(object, name).get());
}
inline double number(const COSInterfacePtr& object, const char* name) { return vxGetScalar(get(object, name).get()); }
inline int childCount(const COSInterfacePtr& object) {
  int n = 0;
  for (COSInterface* c = object->getNewestChild(); c; c = c->getOlderSibling()) ++n;
  return n;
}

}  // namespace sgtest::classes
