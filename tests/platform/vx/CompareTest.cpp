// Equality of arrays, with and without NaN equality.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <vx/vx.h>

#include "CountedObject.h"

using matrix::from_vantel;
using matrix::unique_vxArray;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool equal(const unique_vxArray& a, const unique_vxArray& b, bool nanEqual = false) {
  return vxAreMatricesEqualNanOptional(a.get(), b.get(), nanEqual);
}

unique_vxArray pair(double x, double y) {
  unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, 2, vxREAL));
  vxGetPr(a.get())[0] = x;
  vxGetPr(a.get())[1] = y;
  return a;
}

}  // namespace

TEST(Compare, NaNEqualsNaNOnlyWhenAsked) {
  EXPECT_FALSE(equal(pair(1, kNaN), pair(1, kNaN)));
  EXPECT_TRUE(equal(pair(1, kNaN), pair(1, kNaN), /*nanEqual=*/true));
  EXPECT_FALSE(equal(pair(2, kNaN), pair(1, kNaN), true));

  unique_vxArray missing1 = from_vantel(vxCreateStringArray(1, 1));
  unique_vxArray missing2 = from_vantel(vxCreateStringArray(1, 1));
  EXPECT_FALSE(equal(missing1, missing2)) << "a missing string compares like NaN";
  EXPECT_TRUE(equal(missing1, missing2, true));
}

TEST(Compare, ClassShapeAndComplexity) {
  EXPECT_FALSE(equal(pair(1, 2), from_vantel(vxCreateNumericMatrix(1, 2, vxINT32_CLASS, vxREAL))));
  unique_vxArray column = pair(1, 2);
  vxSetM(column.get(), 2);
  vxSetN(column.get(), 1);
  EXPECT_FALSE(equal(pair(1, 2), column));
  EXPECT_TRUE(equal(pair(-0.0, 2), pair(0.0, 2)));

  unique_vxArray z = from_vantel(vxCreateDoubleMatrix(1, 2, vxCOMPLEX));
  vxGetComplexDoubles(z.get())[0] = {1, 0};
  vxGetComplexDoubles(z.get())[1] = {2, 0};
  EXPECT_TRUE(equal(pair(1, 2), z)) << "zero imaginary parts equal a real array";
  vxGetComplexDoubles(z.get())[1] = {2, 1};
  EXPECT_FALSE(equal(z, pair(1, 2)));
}

TEST(Compare, StructsIgnoreFieldOrderCellsRecurse) {
  const char* ab[] = {"a", "b"};
  const char* ba[] = {"b", "a"};
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 2, ab));
  unique_vxArray t = from_vantel(vxCreateStructMatrix(1, 1, 2, ba));
  vxSetField(s.get(), 0, "a", pair(1, kNaN).release());
  vxSetField(t.get(), 0, "a", pair(1, kNaN).release());
  EXPECT_FALSE(equal(s, t));
  EXPECT_TRUE(equal(s, t, true));
  vxSetField(t.get(), 0, "b", vxCreateDoubleMatrix(0, 0, vxREAL));
  EXPECT_TRUE(equal(s, t, true)) << "an unset field equals the empty double";
  vxSetField(t.get(), 0, "b", vxCreateString(""));
  EXPECT_FALSE(equal(s, t, true));

  unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 1));
  unique_vxArray d = from_vantel(vxCreateCellMatrix(1, 1));
  vxSetCell(c.get(), 0, vxDuplicateArray(s.get()));
  vxSetCell(d.get(), 0, vxDuplicateArray(t.get()));
  EXPECT_FALSE(equal(c, d, true));
}

TEST(Compare, ObjectsAndHandlesByIdentity) {
  unique_vxArray a = from_vantel(CountedObject::makeArray(2));
  unique_vxArray same = from_vantel(vxDuplicateArray(a.get()));
  unique_vxArray other = from_vantel(CountedObject::makeArray(2));
  EXPECT_TRUE(equal(a, same));
  EXPECT_FALSE(equal(a, other));

  struct Handle : vxFunctionHandleData {
    std::string text() const override { return "@f"; }
  };
  auto data = std::make_shared<Handle>();
  unique_vxArray h1 = from_vantel(vxCreateFunctionHandle(data));
  unique_vxArray h2 = from_vantel(vxCreateFunctionHandle(data));
  unique_vxArray h3 = from_vantel(vxCreateFunctionHandle(std::make_shared<Handle>()));
  EXPECT_TRUE(equal(h1, h2));
  EXPECT_FALSE(equal(h1, h3));
  EXPECT_EQ(vxGetFunctionHandle(h1.get())->text(), "@f");
}
