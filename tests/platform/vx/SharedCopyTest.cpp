// Shared copies share their payload until one side is written; destroying one
// side leaves the other intact; the header's own count keeps the very array.
#include <gtest/gtest.h>

#include <vx/vx.h>

using matrix::from_vantel;
using matrix::unique_vxArray;

namespace {

unique_vxArray row(std::initializer_list<double> values) {
  unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, values.size(), vxREAL));
  std::copy(values.begin(), values.end(), vxGetPr(a.get()));
  return a;
}

}  // namespace

TEST(SharedCopy, WriteUnsharesOnlyTheWrittenSide) {
  unique_vxArray a = row({1, 2, 3});
  unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));
  const vxArray* ca = a.get();
  const vxArray* cb = b.get();
  EXPECT_EQ(vxGetPr(ca), vxGetPr(cb)) << "a shared copy must not copy the elements";

  vxGetPr(b.get())[1] = 20;
  EXPECT_NE(vxGetPr(ca), vxGetPr(cb));
  EXPECT_EQ(vxGetPr(ca)[1], 2);
  EXPECT_EQ(vxGetPr(cb)[1], 20);

  // The source, now alone with its payload, writes in place.
  const double* before = vxGetPr(ca);
  vxGetPr(a.get())[0] = 10;
  EXPECT_EQ(before, vxGetPr(ca));
}

TEST(SharedCopy, DestroyingEitherSideLeavesTheOtherIntact) {
  unique_vxArray a = row({4, 5});
  vxArray* b = vxCreateSharedCopyNotOnArrayList(a.get());
  vxDestroyArray(b);
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(a.get()))[1], 5);

  unique_vxArray c = from_vantel(vxCreateSharedDataCopy(a.get()));
  a.reset();
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(c.get()))[0], 4);
  EXPECT_EQ(vxGetN(c.get()), 2u);
}

TEST(SharedCopy, ScalarCopiesAreIndependentValues) {
  unique_vxArray a = from_vantel(vxCreateDoubleScalar(7));
  unique_vxArray b = from_vantel(matrix::detail::do_shared_copy(a.get()));
  *vxGetPr(b.get()) = 8;
  EXPECT_EQ(vxGetScalar(a.get()), 7);
  EXPECT_EQ(vxGetScalar(b.get()), 8);
}

TEST(SharedCopy, ReshapingACopyKeepsTheSourceShape) {
  unique_vxArray a = row({1, 2, 3, 4});
  unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));
  const vxSize dims[2] = {2, 2};
  vxSetDimensions(b.get(), dims, 2);
  EXPECT_EQ(vxGetM(a.get()), 1u);
  EXPECT_EQ(vxGetM(b.get()), 2u);
  // Growing a copy reallocates its own storage only.
  vxSetN(b.get(), 3);
  EXPECT_EQ(vxGetNumberOfElements(a.get()), 4u);
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(b.get()))[3], 4);
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(b.get()))[5], 0) << "new elements are zero";
}

TEST(ReferenceCount, DestroyDropsHeldReferencesBeforeTheArray) {
  vxArray* a = vxCreateDoubleScalar(3);
  intrusive_ptr_add_ref(a);
  intrusive_ptr_add_ref(a);
  EXPECT_EQ(vxGetSharedCopyCount(a), 2u);
  matrix::destroyArray(a);
  intrusive_ptr_release(a);
  EXPECT_EQ(vxGetSharedCopyCount(a), 0u);
  EXPECT_EQ(vxGetScalar(a), 3) << "the creator's reference is still there";
  matrix::destroyArray(a);  // the last one; LSan reports a leak otherwise
}

TEST(Scope, PersistentArrayOutlivesItsTemporaryCopies) {
  unique_vxArray kept = row({1, 2});
  vxSetArrayScope(kept.get(), vxSCOPE_PERSISTENT);
  vxArray* temp = vxCreateSharedDataCopy(kept.get());
  EXPECT_EQ(vxGetArrayScope(temp), vxSCOPE_TEMPORARY) << "scope belongs to the header, not the data";
  vxGetPr(temp)[0] = 99;
  vxDestroyArray(temp);
  EXPECT_EQ(vxGetArrayScope(kept.get()), 6);
  EXPECT_EQ(vxGetPr(static_cast<const vxArray*>(kept.get()))[0], 1);
}

TEST(DeepCopy, CopiesNestedElementsAndTheirData) {
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  unique_vxArray inner = from_vantel(vxCreateCellMatrix(1, 1));
  vxSetCell(inner.get(), 0, row({1, 2}).release());
  vxSetField(s.get(), 0, "c", inner.release());

  unique_vxArray copy = from_vantel(matrix::detail::do_deep_copy(s.get()));
  const vxArray* original = vxGetCell(vxGetField(s.get(), 0, "c"), 0);
  const vxArray* copied = vxGetCell(vxGetField(copy.get(), 0, "c"), 0);
  EXPECT_NE(vxGetPr(original), vxGetPr(copied)) << "a deep copy must not share element data";
  EXPECT_TRUE(vxAreMatricesEqualNanOptional(s.get(), copy.get(), false));
}

TEST(UnshareShallow, TopLevelPrivateElementsStillShared) {
  unique_vxArray a = from_vantel(vxCreateCellMatrix(1, 2));
  vxSetCell(a.get(), 0, row({1, 2, 3}).release());
  unique_vxArray b = from_vantel(vxCreateSharedCopyNotOnArrayList(a.get()));
  vxUnshareShallow(b.get());

  const vxArray* ea = vxGetCell(a.get(), 0);
  const vxArray* eb = vxGetCell(b.get(), 0);
  EXPECT_NE(ea, eb) << "each top level has its own element headers";
  EXPECT_EQ(vxGetPr(ea), vxGetPr(eb)) << "elements keep sharing their data";

  // Replacing a slot of b leaves a alone, and writing b's element unshares it.
  vxSetCell(b.get(), 1, vxCreateDoubleScalar(5));
  EXPECT_EQ(vxGetCell(a.get(), 1), nullptr);
  vxGetPr(vxGetCell(b.get(), 0))[0] = 100;
  EXPECT_EQ(vxGetPr(ea)[0], 1);
}

// The last small payload freed is reused by the next small array: the reuse
// must look like a fresh payload (zero elements, the new shape and class),
// and a payload still shared by another header is never the one reused.
TEST(SharedCopy, ReusedSmallPayloadStartsZeroAndSharedOnesStayPut) {
  {
    unique_vxArray dropped = row({7, 8, 9, 10});
  }
  unique_vxArray fresh = from_vantel(vxCreateDoubleMatrix(2, 2, vxREAL));
  for (int i = 0; i < 4; ++i) EXPECT_EQ(vxGetPr(fresh.get())[i], 0) << i;

  unique_vxArray bytes;
  {
    unique_vxArray doubles = row({1, 2, 3});
    bytes = from_vantel(vxCreateNumericMatrix(1, 20, vxUINT8_CLASS, vxREAL));
    (void)doubles;
  }
  unique_vxArray later = from_vantel(vxCreateNumericMatrix(1, 30, vxUINT8_CLASS, vxREAL));
  const auto* u8 = static_cast<const unsigned char*>(vxGetData(later.get()));
  for (int i = 0; i < 30; ++i) EXPECT_EQ(u8[i], 0) << i;
  vxSetN(later.get(), 32);  // grows within the small room: the new elements read zero
  u8 = static_cast<const unsigned char*>(vxGetData(later.get()));
  EXPECT_EQ(u8[31], 0);

  unique_vxArray keep = row({4, 5, 6});
  {
    unique_vxArray copy = from_vantel(vxCreateSharedDataCopy(keep.get()));
    vxGetPr(copy.get());  // read only: still shared
  }
  unique_vxArray other = row({0, 0, 0});
  EXPECT_EQ(vxGetPr(keep.get())[0], 4);
  EXPECT_EQ(vxGetPr(keep.get())[2], 6);
  EXPECT_NE(vxGetPr(keep.get()), vxGetPr(other.get()));
}
