// Misuse a script can cause raises an error with an identifier and a catalog
// text; the argument-count errors and the warning channel of built-ins.
#include <gtest/gtest.h>

#include <functional>

#include <foundation/foundation.h>
#include <vx/vx.h>

using foundation::core::except::Error;
using foundation::core::except::IMsgIDException;
using matrix::from_vantel;
using matrix::unique_vxArray;

namespace {

std::string raisedId(const std::function<void()>& f) {
  try {
    f();
  } catch (const IMsgIDException& e) {
    return e.identifier();
  }
  return "(nothing raised)";
}

}  // namespace

TEST(ArrayErrors, EachMisuseRaisesItsIdentifierWithACatalogText) {
  unique_vxArray d = from_vantel(vxCreateDoubleMatrix(1, 2, vxREAL));
  unique_vxArray z = from_vantel(vxCreateDoubleMatrix(1, 1, vxCOMPLEX));
  unique_vxArray empty = from_vantel(vxCreateDoubleMatrix(0, 3, vxREAL));
  unique_vxArray cell = from_vantel(vxCreateCellMatrix(1, 2));
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  unique_vxArray str = from_vantel(vxCreateStringArray(1, 1));
  unique_vxArray big = from_vantel(vxCreateDoubleScalar(3e9));
  struct Handle : vxFunctionHandleData {
    std::string text() const override { return "@g"; }
  };
  unique_vxArray fh = from_vantel(vxCreateFunctionHandle(std::make_shared<Handle>()));
  const vxSize huge[3] = {vxSize(1) << 40, vxSize(1) << 40, 2};

  const std::vector<std::pair<std::string, std::function<void()>>> cases = {
      {"VANTEL:vx:WrongClass", [&] { vxGetCell(d.get(), 0); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetField(cell.get(), 0, "x"); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetPr(z.get()); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetScalar(cell.get()); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetLogicals(d.get()); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetStringElement(d.get(), 0); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetFunctionHandle(d.get()); }},
      {"VANTEL:vx:WrongClass", [&] { vxGetObjectElements(d.get()); }},
      {"VANTEL:vx:IndexOutOfRange", [&] { vxGetCell(cell.get(), 2); }},
      {"VANTEL:vx:IndexOutOfRange", [&] { vxSetCell(cell.get(), 5, nullptr); }},
      {"VANTEL:vx:IndexOutOfRange", [&] { vxGetField(s.get(), 1, "x"); }},
      {"VANTEL:vx:IndexOutOfRange", [&] { vxSetStringElement(str.get(), 1, u"x"); }},
      {"VANTEL:vx:FieldNumberOutOfRange", [&] { vxGetFieldByNumber(s.get(), 0, 0); }},
      {"VANTEL:vx:FieldNumberOutOfRange", [&] { vxRemoveField(s.get(), -1); }},
      {"VANTEL:vx:InvalidFieldName", [&] { vxSetField(s.get(), 0, "no good", nullptr); }},
      {"VANTEL:vx:InvalidFieldName", [&] {
         const char* names[] = {"_x"};
         vxDestroyArray(vxCreateStructMatrix(1, 1, 1, names));
       }},
      {"VANTEL:vx:EmptyScalar", [&] { vxGetScalar(empty.get()); }},
      {"VANTEL:vx:NotText", [&] { vxArrayToStdString(d.get()); }},
      {"VANTEL:vx:NotText", [&] { vxArrayToStdString(str.get()); }},  // missing
      {"VANTEL:vx:NotText", [&] { matrix::get_ustring(cell.get()); }},
      {"VANTEL:vx:IntegerOutOfRange", [&] { vxGetScalarInt(big.get()); }},
      {"VANTEL:vx:ReshapeChangesCount", [&] { vxSetN(fh.get(), 2); }},
      {"VANTEL:vx:SizeTooLarge", [&] { vxCreateNumericArray(3, huge, vxDOUBLE_CLASS, vxREAL); }},
      {"VANTEL:vx:NotNumericClass", [&] { vxCreateNumericMatrix(1, 1, vxCELL_CLASS, vxREAL); }},
      {"VANTEL:minrhs", [] { matrix::detail::error_minrhs(); }},
      {"VANTEL:maxrhs", [] { matrix::detail::error_maxrhs(); }},
      {"VANTEL:maxlhs", [] { matrix::detail::error_maxlhs(); }},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const auto& [id, f] = cases[i];
    EXPECT_EQ(raisedId(f), id) << "case " << i;
    EXPECT_TRUE(i18n::MessageCatalog::has(id)) << id << " has no catalog text";
  }
  // Arrays are untouched by a refused operation.
  EXPECT_EQ(vxGetNumberOfFields(s.get()), 0);
  EXPECT_EQ(vxGetNumberOfElements(fh.get()), 1u);
}

TEST(ArrayErrors, TextsNameWhatWentWrong) {
  unique_vxArray cell = from_vantel(vxCreateCellMatrix(1, 2));
  try {
    vxGetCell(cell.get(), 2);
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_STREQ(e.what(), "Index 3 exceeds the number of array elements (2).");
  }
  EXPECT_STREQ(Error("VANTEL:minrhs").what(), "Not enough input arguments.");
}

TEST(ArrayErrors, LegacyChannelRaisesTheMostDerivedType) {
  foundation::core::except::bad_alloc original;
  const IMsgIDException& base = original;
  EXPECT_THROW(matrix::detail::do_legacy_vx_error(base), foundation::core::except::bad_alloc);
}

TEST(ArrayWarnings, GoThroughTheWarningChannel) {
  auto& channel = foundation::core::except::WarningChannel::instance();
  std::string printed;
  auto old = channel.setSink([&](std::string_view line) { printed += line; });
  vxWarningMsgId(i18n::Message("VANTEL:maxlhs"));
  channel.setEnabled("VANTEL:maxlhs", false);
  vxWarningMsgId(i18n::Message("VANTEL:maxlhs"));
  channel.setEnabled("VANTEL:maxlhs", true);
  channel.setSink(std::move(old));
  EXPECT_EQ(printed, "Warning: Too many output arguments.\n");
  EXPECT_EQ(channel.lastId(), "VANTEL:maxlhs");
}
