// Cells and structs own their elements: setting takes ownership and destroys
// what it replaces; getters lend; copies share or duplicate elements.
#include <gtest/gtest.h>

#include <cstring>

#include <vx/vx.h>

#include "CountedObject.h"

using matrix::from_vantel;
using matrix::unique_vxArray;

TEST(StructFields, SetAddsMissingFieldsInOrderAndGetLends) {
  const char* names[] = {"b", "a"};
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 2, 2, names));
  vxSetField(s.get(), 1, "c", vxCreateDoubleScalar(3));
  ASSERT_EQ(vxGetNumberOfFields(s.get()), 3);
  EXPECT_STREQ(vxGetFieldNameByNumber(s.get(), 0), "b");
  EXPECT_STREQ(vxGetFieldNameByNumber(s.get(), 2), "c");
  EXPECT_EQ(vxGetFieldNumber(s.get(), "c"), 2);
  EXPECT_EQ(vxGetFieldNumber(s.get(), "C"), -1) << "field names are case-sensitive";
  EXPECT_EQ(vxGetField(s.get(), 0, "c"), nullptr) << "other elements get the new field unset";
  EXPECT_EQ(vxGetScalar(vxGetFieldByNumber(s.get(), 1, 2)), 3);
  EXPECT_EQ(vxGetField(s.get(), 0, "nosuch"), nullptr);
}

TEST(StructFields, AddAndRemoveKeepOtherFieldsAndNames) {
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  EXPECT_EQ(vxAddField(s.get(), "x"), 0);
  EXPECT_EQ(vxAddField(s.get(), "x"), 0) << "an existing field returns its number";
  EXPECT_EQ(vxAddField(s.get(), "1x"), -1);
  EXPECT_EQ(vxAddField(s.get(), "a b"), -1);
  const char* yName = nullptr;
  EXPECT_EQ(vxAddFieldToStruct(s.get(), "y_1"), 1);
  yName = vxGetFieldNameByNumber(s.get(), 1);
  for (int i = 0; i < 20; ++i) vxAddField(s.get(), ("f" + std::to_string(i)).c_str());
  EXPECT_STREQ(yName, "y_1") << "a field name stays valid while the field exists";

  vxSetField(s.get(), 0, "y_1", vxCreateDoubleScalar(2));
  vxRemoveField(s.get(), 0);
  EXPECT_EQ(vxGetFieldNumber(s.get(), "x"), -1);
  EXPECT_EQ(vxGetFieldNumber(s.get(), "y_1"), 0);
  EXPECT_EQ(vxGetScalar(vxGetField(s.get(), 0, "y_1")), 2);

  unique_vxArray notStruct = from_vantel(vxCreateCellMatrix(1, 1));
  EXPECT_EQ(vxAddFieldToStruct(notStruct.get(), "x"), -1);
}

TEST(StructFields, ChangesToASharedCopyStayInTheCopy) {
  const char* names[] = {"v"};
  unique_vxArray a = from_vantel(vxCreateStructMatrix(1, 1, 1, names));
  vxSetField(a.get(), 0, "v", vxCreateDoubleScalar(1));
  unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));

  vxSetField(b.get(), 0, "v", vxCreateDoubleScalar(2));
  vxAddField(b.get(), "w");
  unique_vxArray c = from_vantel(vxCreateSharedDataCopy(a.get()));
  vxRemoveField(c.get(), 0);

  EXPECT_EQ(vxGetScalar(vxGetField(a.get(), 0, "v")), 1);
  EXPECT_EQ(vxGetNumberOfFields(a.get()), 1);
  EXPECT_EQ(vxGetNumberOfFields(b.get()), 2);
  EXPECT_EQ(vxGetNumberOfFields(c.get()), 0);
}

TEST(ContainerOwnership, ReplacingAnElementReleasesIt) {
  const int before = CountedObject::live;
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  unique_vxArray c = from_vantel(vxCreateCellMatrix(2, 1));
  vxSetField(s.get(), 0, "o", CountedObject::makeArray(2));
  vxSetCell(c.get(), 1, CountedObject::makeArray(1));
  EXPECT_EQ(CountedObject::live, before + 3);

  vxSetField(s.get(), 0, "o", nullptr);
  vxSetCell(c.get(), 1, vxCreateDoubleScalar(1));
  EXPECT_EQ(CountedObject::live, before) << "replaced elements must be destroyed";

  vxSetCell(c.get(), 0, CountedObject::makeArray(1));
  c.reset();
  EXPECT_EQ(CountedObject::live, before) << "a destroyed cell destroys its elements";
}

TEST(ContainerOwnership, DestroyingABorrowedElementBeforeReplacingItIsHarmless) {
  // Callers that destroy the old value themselves and then store the new one:
  // the container still owns the old value and frees it exactly once.
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  vxSetField(s.get(), 0, "v", vxCreateDoubleScalar(1));
  matrix::destroyArray(vxGetField(s.get(), 0, "v"));
  EXPECT_EQ(vxGetScalar(vxGetField(s.get(), 0, "v")), 1);
  vxSetFieldByNumber(s.get(), 0, 0, vxCreateDoubleScalar(2));
  EXPECT_EQ(vxGetScalar(vxGetField(s.get(), 0, "v")), 2);
}

TEST(ContainerOwnership, HeldReferenceOutlivesTheContainer) {
  unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 1));
  vxSetCell(c.get(), 0, vxCreateDoubleScalar(4));
  vxArray* held = vxGetCell(c.get(), 0);
  intrusive_ptr_add_ref(held);
  c.reset();
  EXPECT_EQ(vxGetScalar(held), 4);
  intrusive_ptr_release(held);  // now the last reference; LSan reports a leak otherwise
}

TEST(ContainerOwnership, StoringTheHeldValueAgainChangesNothing) {
  unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 1));
  vxSetCell(c.get(), 0, vxCreateDoubleScalar(4));
  unique_vxArray copy = from_vantel(vxCreateSharedDataCopy(c.get()));
  vxSetCell(c.get(), 0, vxGetCell(c.get(), 0));
  EXPECT_EQ(vxGetScalar(vxGetCell(c.get(), 0)), 4);
  EXPECT_EQ(vxGetScalar(vxGetCell(copy.get(), 0)), 4);
}

TEST(ContainerShape, GrowingKeepsElementsAndAddsEmptyOnes) {
  const char* names[] = {"f"};
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 1, names));
  vxSetField(s.get(), 0, "f", vxCreateDoubleScalar(1));
  vxSetN(s.get(), 3);
  EXPECT_EQ(vxGetNumberOfElements(s.get()), 3u);
  EXPECT_EQ(vxGetScalar(vxGetField(s.get(), 0, "f")), 1);
  EXPECT_EQ(vxGetField(s.get(), 2, "f"), nullptr);

  unique_vxArray c = from_vantel(vxCreateCellMatrix(0, 0));
  vxSetM(c.get(), 1);
  vxSetN(c.get(), 2);
  vxSetCell(c.get(), 1, vxCreateString("x"));
  EXPECT_EQ(vxGetCell(c.get(), 0), nullptr);
  EXPECT_EQ(vxArrayToStdString(vxGetCell(c.get(), 1)), "x");
}
