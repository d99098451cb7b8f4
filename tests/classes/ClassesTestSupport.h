// What the tests of the concrete classes share: the classes registered once,
// a fresh root per test (everything below it deleted at the end), and
// property reads and writes as the language does them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "support/PropertyAccess.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgtest::classes {

using Arr = matrix::unique_vxArray;

class ClassesTest : public ::testing::Test {
 protected:
  void SetUp() override { sgclasses::registerClasses(); }
  void TearDown() override { sgclasses::releaseRoot(); }
};

// A figure holding an axes, made fresh for each test.
class AxesInFigureTest : public ClassesTest {
 protected:
  void SetUp() override {
    ClassesTest::SetUp();
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    axes = sgclasses::create(sgclasses::kAxesClass, figure);
  }
  COSInterfacePtr figure, axes;
};

// A figure holding an axes holding a line, made fresh for each test.
class LineInAxesTest : public AxesInFigureTest {
 protected:
  void SetUp() override {
    AxesInFigureTest::SetUp();
    line = sgclasses::create(sgclasses::kLineClass, axes);
  }
  COSInterfacePtr line;
};

using sgtest::get;
using sgtest::obj;
using sgtest::set;
inline std::string text(const COSInterfacePtr& object, const char* name) { return sgtest::getText(object, name); }
inline double number(const COSInterfacePtr& object, const char* name) { return vxGetScalar(get(object, name).get()); }
inline int childCount(const COSInterfacePtr& object) {
  int n = 0;
  for (COSInterface* c = object->getNewestChild(); c; c = c->getOlderSibling()) ++n;
  return n;
}

}  // namespace sgtest::classes
