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

// Growing one element at a time reuses the storage's spare room: the data
// moves a logarithmic number of times, and room left by a shrink reads as
// zero when the array grows into it again.
TEST(Shape, GrowingStepByStepMovesTheDataRarelyAndZeroFillsReusedRoom) {
  unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, 0, vxREAL));
  int moves = 0;
  const double* last = nullptr;
  for (vxSize n = 1; n <= 1000; ++n) {
    vxSetN(a.get(), n);
    double* p = vxGetPr(a.get());
    if (p != last) ++moves;
    last = p;
    p[n - 1] = static_cast<double>(n);
  }
  EXPECT_LT(moves, 25) << "each growth copied the whole array";
  const double* p = vxGetPr(static_cast<const vxArray*>(a.get()));
  EXPECT_EQ(p[0], 1);
  EXPECT_EQ(p[999], 1000);

  vxSetN(a.get(), 600);
  vxSetN(a.get(), 1000);
  p = vxGetPr(static_cast<const vxArray*>(a.get()));
  EXPECT_EQ(p[599], 600);
  EXPECT_EQ(p[600], 0) << "room reused after a shrink must read as zero";
  EXPECT_EQ(p[999], 0);

  // A shared copy made while the room is there keeps its own elements.
  unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));
  vxSetN(a.get(), 1001);
  vxGetPr(a.get())[0] = -1;
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(b.get()))[0], 1);
  EXPECT_EQ(vxGetN(b.get()), 1000u);
}

// A few elements live in the storage's own small room: they grow out of it
// with their values, and a shrink and regrowth inside it reads zeros; a
// shared copy of a small array still unshares on a write.
TEST(Shape, SmallArraysGrowOutOfTheirRoomAndUnshareOnWrite) {
  unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, 3, vxREAL));
  double* p = vxGetPr(a.get());
  p[0] = 1;
  p[1] = 2;
  p[2] = 3;
  vxSetN(a.get(), 1);
  vxSetN(a.get(), 4);
  p = vxGetPr(a.get());
  EXPECT_EQ(p[0], 1);
  EXPECT_EQ(p[1], 0) << "room reused after a shrink must read as zero";
  EXPECT_EQ(p[3], 0);
  p[3] = 4;
  unique_vxArray copy = from_vantel(vxCreateSharedDataCopy(a.get()));
  vxSetN(a.get(), 9);
  p = vxGetPr(a.get());
  EXPECT_EQ(p[3], 4);
  EXPECT_EQ(p[8], 0);
  p[0] = -1;
  const double* c = vxGetPr(static_cast<const vxArray*>(copy.get()));
  EXPECT_EQ(c[0], 1);
  EXPECT_EQ(c[3], 4);
  vxGetPr(copy.get())[1] = 7;  // a write to the copy leaves the other alone
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(a.get()))[1], 0);

  unique_vxArray text = from_vantel(vxCreateString("on"));
  unique_vxArray same = from_vantel(vxDuplicateArray(text.get()));
  EXPECT_TRUE(vxAreMatricesEqualNanOptional(text.get(), same.get(), false));
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

// Object arrays grow in place; the new elements are empty references.
TEST(Shape, ObjectArraysGrowInPlaceWithEmptyElements) {
  unique_vxArray objs = from_vantel(vxCreateObjectMatrix(1, 1, nullptr));
  vxSetN(objs.get(), 3);
  EXPECT_EQ(vxGetNumberOfElements(objs.get()), 3u);
  EXPECT_EQ(vxGetObjectElements(objs.get())[2].get(), nullptr);
}
