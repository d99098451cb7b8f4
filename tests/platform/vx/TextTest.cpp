// Text in and out of char (UTF-16) and string arrays.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

using matrix::from_vantel;
using matrix::unique_vxArray;

TEST(TextRoundTrip, NonAsciiAndSurrogatePairsSurviveBothWays) {
  // Latin-1, a three-byte character and a character outside the BMP.
  const std::string text = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80!";
  unique_vxArray a = from_vantel(vxCreateString(text.c_str()));
  EXPECT_EQ(vxGetM(a.get()), 1u);
  EXPECT_EQ(vxGetN(a.get()), 10u) << "the emoji takes two UTF-16 units";
  const vxChar* chars = vxGetChars(static_cast<const vxArray*>(a.get()));
  EXPECT_EQ(chars[3], u'\u00E9');
  EXPECT_EQ(chars[7], 0xD83D);
  EXPECT_EQ(chars[8], 0xDE00);
  EXPECT_EQ(vxArrayToStdString(a.get()), text);

  char* c = vxCreateCStrFromArray(a.get());
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(std::string(c), text);
  vxFreeEx(c);

  unique_vxArray u = matrix::create(u"\u00E9\U0001F600");
  EXPECT_EQ(matrix::get_ustring(u.get()), u"\u00E9\U0001F600");
  EXPECT_EQ(vxArrayToStdString(u.get()), "\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(TextRoundTrip, MalformedInputReadsAsReplacementCharacters) {
  // A stray continuation byte, a truncated sequence, an overlong '/'.
  unique_vxArray a = from_vantel(vxCreateString("a\x80" "b\xE2\x82" "c\xC0\xAF"));
  EXPECT_EQ(matrix::get_ustring(a.get()), u"a\uFFFDb\uFFFDc\uFFFD");
  const char16_t lone[] = {u'x', 0xD800, u'y'};
  unique_vxArray b = matrix::create(lone, 3);
  EXPECT_EQ(vxArrayToStdString(b.get()), "x\xEF\xBF\xBDy");
}

TEST(TextShapes, RowsEmptiesAndStringScalarsAreText) {
  unique_vxArray none = from_vantel(vxCreateString(nullptr));
  EXPECT_TRUE(vxIsChar(none.get()));
  EXPECT_EQ(vxArrayToStdString(none.get()), "");
  unique_vxArray empty = from_vantel(vxCreateString(""));
  EXPECT_EQ(vxGetNumberOfElements(empty.get()), 0u);

  unique_vxArray s = from_vantel(vxCreateStringArray(1, 1));
  char* missing = vxCreateCStrFromArray(s.get());
  EXPECT_EQ(missing, nullptr) << "a missing string is not text";
  vxSetStringElement(s.get(), 0, u"h\u00E9");
  EXPECT_EQ(vxArrayToStdString(s.get()), "h\xC3\xA9");
  EXPECT_TRUE(vxIsA(s.get(), "string"));

  // A column of chars is not a row; the UTF-16 reader takes any char array.
  const vxSize dims[2] = {2, 1};
  unique_vxArray column = from_vantel(vxCreateCharArray(2, dims));
  vxGetChars(column.get())[0] = u'o';
  vxGetChars(column.get())[1] = u'k';
  EXPECT_THROW(vxArrayToStdString(column.get()), foundation::core::except::Error);
  EXPECT_EQ(vxCreateCStrFromArray(column.get()), nullptr);
  EXPECT_EQ(matrix::get_ustring(column.get()), u"ok");

  unique_vxArray pair = from_vantel(vxCreateStringArray(1, 2));
  EXPECT_THROW(vxArrayToStdString(pair.get()), foundation::core::except::Error);
}

TEST(StringArrays, ElementsAreTextOrMissingAndCopyOnWrite) {
  unique_vxArray a = from_vantel(vxCreateStringArray(2, 1));
  EXPECT_FALSE(vxGetStringElement(a.get(), 0).has_value());
  vxSetStringElement(a.get(), 1, u"x");
  unique_vxArray b = from_vantel(vxCreateSharedDataCopy(a.get()));
  vxSetStringElement(b.get(), 1, std::nullopt);
  EXPECT_EQ(vxGetStringElement(a.get(), 1), u"x");
  EXPECT_FALSE(vxGetStringElement(b.get(), 1).has_value());
}
