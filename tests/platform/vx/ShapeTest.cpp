// Dimensions: at least two, trailing singletons dropped, and reshaping that
// grows or shrinks storage where the class allows it.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

using matrix::from_vantel;
using matrix::unique_vxArray;

TEST(Shape, TrailingSingletonsBeyondTwoAreDropped) {
  const vxSize dims[5] = {2, 3, 1, 4, 1};
  unique_vxArray a = from_vantel(vxCreateNumericArray(5, dims, vxUINT8_CLASS, vxREAL));
  ASSERT_EQ(vxGetNumberOfDimensions(a.get()), 4u);
  EXPECT_EQ(vxGetDimensions(a.get())[3], 4u);
  EXPECT_EQ(vxGetN(a.get()), 12u) << "all dimensions after the first";
  EXPECT_EQ(vxGetNumberOfElements(a.get()), 24u);
  EXPECT_FALSE(vxIsVector(a.get()));

  const vxSize ones[3] = {1, 1, 1};
  unique_vxArray s = from_vantel(vxCreateLogicalArray(3, ones));
  EXPECT_EQ(vxGetNumberOfDimensions(s.get()), 2u);
  EXPECT_TRUE(vxIsScalar(s.get()));
  EXPECT_FALSE(vxIsLogicalScalarTrue(s.get()));

  const vxSize n[1] = {5};
  unique_vxArray column = from_vantel(vxCreateCellArray(1, n));
  EXPECT_EQ(vxGetM(column.get()), 5u);
  EXPECT_TRUE(vxIsVector(column.get()));
  EXPECT_FALSE(vxIsVector(from_vantel(vxCreateDoubleMatrix(1, 0, vxREAL)).get()));
}

TEST(Shape, ScalarGrowsIntoStorageKeepingItsValue) {
  unique_vxArray a = from_vantel(vxCreateDoubleScalar(2.5));
  vxSetN(a.get(), 3);
  const double* p = vxGetPr(static_cast<const vxArray*>(a.get()));
  EXPECT_EQ(p[0], 2.5);
  EXPECT_EQ(p[2], 0);
  vxSetN(a.get(), 0);
  EXPECT_TRUE(vxIsEmpty(a.get()));

  unique_vxArray e = from_vantel(vxCreateLogicalMatrix(0, 0));
  vxSetM(e.get(), 1);
  vxSetN(e.get(), 1);
  EXPECT_TRUE(vxIsLogicalScalar(e.get()));
  EXPECT_FALSE(vxIsLogicalScalarTrue(e.get()));
  *vxGetLogicals(e.get()) = true;
  EXPECT_TRUE(vxIsLogicalScalarTrue(e.get()));
}

TEST(Shape, ReshapeToAnotherCountRefusedForHandles) {
  struct Handle : vxFunctionHandleData {
    std::string text() const override { return "@g"; }
  };
  unique_vxArray h = from_vantel(vxCreateFunctionHandle(std::make_shared<Handle>()));
  EXPECT_THROW(vxSetM(h.get(), 2), foundation::core::except::Error);
  const vxSize same[3] = {1, 1, 1};
  vxSetDimensions(h.get(), same, 3);
  EXPECT_TRUE(vxIsScalar(h.get()));
}

TEST(Scalars, ReadingConvertsAndTruncates) {
  unique_vxArray i = from_vantel(vxCreateNumericMatrix(1, 1, vxINT16_CLASS, vxREAL));
  *static_cast<std::int16_t*>(vxGetData(i.get())) = -7;
  EXPECT_EQ(vxGetScalar(i.get()), -7);
  unique_vxArray d = from_vantel(vxCreateDoubleScalar(-2.9));
  EXPECT_EQ(vxGetScalarInt(d.get()), -2) << "towards zero";
  unique_vxArray c = from_vantel(vxCreateString("A"));
  EXPECT_EQ(vxGetScalar(c.get()), 65);
  unique_vxArray z = from_vantel(vxCreateDoubleMatrix(1, 1, vxCOMPLEX));
  vxGetComplexDoubles(z.get())[0] = {3, 4};
  EXPECT_EQ(vxGetScalar(z.get()), 3) << "the real part";
  EXPECT_EQ(vxGetElementSize(z.get()), 16u);
  EXPECT_TRUE(vxIsA(i.get(), "integer"));
  EXPECT_TRUE(vxIsA(d.get(), "numeric"));
  EXPECT_STREQ(vxGetClassName(i.get()), "int16");
}
