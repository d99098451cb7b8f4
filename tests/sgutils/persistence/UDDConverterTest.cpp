// Old-style handles in data on its way from and to a file: replaced deep
// inside structs and cells, the input left as it was, and the input itself
// given back when nothing had to change.
#include <gtest/gtest.h>

#include <complex>

#include "sgutils/persistence/UDDConverter.h"
#include "sgutils/sgutils.h"
#include "vx/vx.h"

namespace {

using sgutils::UDDConverter;
using matrix::unique_vxArray;

vxArray* complexRow(vxSize n, double imag) {
  const vxSize dims[] = {1, n};
  vxArray* a = vxCreateNumericArray(2, dims, vxDOUBLE_CLASS, vxCOMPLEX);
  for (vxIndex k = 0; k < n; ++k) vxGetComplexDoubles(a)[k] = {1.0, imag};
  return a;
}

class UDDConversion : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { VLInitialize_sgutils(); }
};

TEST_F(UDDConversion, OldHandlesInsideAStructOfCellsBecomePlaceholders) {
  const char* fields[] = {"a", "b"};
  unique_vxArray s(vxCreateStructMatrix(1, 1, 2, fields));
  unique_vxArray cell(vxCreateCellMatrix(2, 1));
  vxSetCell(cell.get(), 0, complexRow(2, UDDConverter::handleMarker()));
  vxSetCell(cell.get(), 1, vxCreateDoubleScalar(5));
  vxSetField(s.get(), 0, "a", cell.release());
  vxSetField(s.get(), 0, "b", vxCreateDoubleScalar(7));

  unique_vxArray out(UDDConverter::replaceUDDHandles(s.get()));
  ASSERT_NE(out.get(), s.get());
  const vxArray* replaced = vxGetCell(vxGetField(out.get(), 0, "a"), 0);
  EXPECT_STREQ(vxGetClassName(replaced), "vantel.graphics.GraphicsPlaceholder");
  EXPECT_EQ(vxGetDimensions(replaced)[0], 1u);
  EXPECT_EQ(vxGetDimensions(replaced)[1], 2u);
  EXPECT_EQ(vxGetScalar(vxGetCell(vxGetField(out.get(), 0, "a"), 1)), 5);
  EXPECT_EQ(vxGetScalar(vxGetField(out.get(), 0, "b")), 7);
  // The input still holds the marker array.
  EXPECT_TRUE(vxIsComplex(vxGetCell(vxGetField(s.get(), 0, "a"), 0)));
}

TEST_F(UDDConversion, NothingToChangeGivesTheInputItself) {
  unique_vxArray cell(vxCreateCellMatrix(1, 3));
  vxSetCell(cell.get(), 0, complexRow(2, 2.0));  // complex, but not the marker
  unique_vxArray mixed(complexRow(2, UDDConverter::handleMarker()));
  vxGetComplexDoubles(mixed.get())[1] = {0.0, 1.0};
  vxSetCell(cell.get(), 1, mixed.release());  // the marker on one element only
  vxSetCell(cell.get(), 2, vxCreateString("text"));
  EXPECT_EQ(UDDConverter::replaceUDDHandles(cell.get()), cell.get());
  EXPECT_EQ(UDDConverter::convertUDDToHandles(cell.get()), cell.get());
  EXPECT_EQ(UDDConverter::replaceUDDHandles(nullptr), nullptr);
  EXPECT_EQ(UDDConverter::convertUDDToHandles(nullptr), nullptr);
}

TEST_F(UDDConversion, AnEmptyComplexArrayCountsAsAnOldHandle) {
  unique_vxArray empty(complexRow(0, 0.0));
  unique_vxArray out(UDDConverter::replaceUDDHandles(empty.get()));
  ASSERT_NE(out.get(), empty.get());
  EXPECT_STREQ(vxGetClassName(out.get()), "vantel.graphics.GraphicsPlaceholder");
  EXPECT_TRUE(vxIsEmpty(out.get()));
}

}  // namespace
