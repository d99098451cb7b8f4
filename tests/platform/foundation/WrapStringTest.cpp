// Line wrapping: breaks at blanks, every line within the width, long words
// split, characters counted rather than bytes, and the cut form for labels.
#include <gtest/gtest.h>

#include <sstream>

#include <foundation/io/Printing.h>

namespace {

std::string wrap(std::string_view text, std::size_t width, int flags = services::io::kWrapLines,
                 bool desktop = false) {
  return ioWrapString(text.data(), text.size(), width, flags, desktop);
}

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::stringstream ss(text);
  for (std::string line; std::getline(ss, line);) out.push_back(line);
  return out;
}

std::size_t chars(std::string_view s) {
  std::size_t n = 0;
  for (char c : s) n += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return n;
}

}  // namespace

TEST(WrapString, BreaksAtBlanksAndKeepsEveryLineWithinTheWidth) {
  std::string text = "The quick brown fox jumps over the lazy dog and keeps running far away";
  for (std::size_t width : {7u, 9u, 10u, 16u, 30u}) {
    std::string out = wrap(text, width);
    std::string rejoined;
    for (const auto& line : lines(out)) {
      EXPECT_LE(chars(line), width) << "width " << width << ": '" << line << "'";
      EXPECT_FALSE(line.empty());
      EXPECT_NE(line.front(), ' ');
      EXPECT_NE(line.back(), ' ');
      rejoined += (rejoined.empty() ? "" : " ") + line;
    }
    EXPECT_EQ(rejoined, text) << "no word lost or split at width " << width;
  }
  EXPECT_EQ(wrap("aaa bbb ccc", 7), "aaa bbb\nccc");
}

TEST(WrapString, SplitsWordsLongerThanTheWidth) {
  EXPECT_EQ(wrap("abcdefghij xy", 4), "abcd\nefgh\nij\nxy");
  EXPECT_EQ(wrap("abcdefgh", 4), "abcd\nefgh") << "no empty line after an exact split";
}

TEST(WrapString, CountsCharactersNotBytes) {
  // Five two-byte characters fit a width of five and are never cut in half.
  EXPECT_EQ(wrap("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9 x", 5), "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\nx");
  EXPECT_EQ(wrap("\xC3\xA9\xC3\xA9\xC3\xA9", 2), "\xC3\xA9\xC3\xA9\n\xC3\xA9");
  EXPECT_EQ(utStrlen("\xC3\xA9 \xF0\x9F\x8E\xA8x"), 4u);
}

TEST(WrapString, KeepsLineBreaksInnerBlanksAndIndentation) {
  EXPECT_EQ(wrap("a  b\n\n  c d e", 5), "a  b\n\n  c d\ne");
}

TEST(WrapString, CutFormGivesTheFirstLineEvenOnTheDesktop) {
  EXPECT_EQ(wrap("first part of a label", 10, services::io::kCutToWidth), "first part");
  EXPECT_EQ(wrap("first part of a label", 10, services::io::kCutToWidth, /*desktop=*/true), "first part");
  EXPECT_EQ(wrap("averyveryverylongword", 6, services::io::kCutToWidth), "averyv");
  EXPECT_EQ(wrap("one\ntwo", 10, services::io::kCutToWidth), "one");
}

TEST(WrapString, DesktopWrapsItselfAndZeroWidthMeansNoLimit) {
  std::string text = "a b c d e f";
  EXPECT_EQ(wrap(text, 3, services::io::kWrapLines, /*desktop=*/true), text);
  EXPECT_EQ(wrap(text, 0), text);
}

TEST(WrapString, ReadsOnlyTheGivenLength) {
  const char* text = "abc def ghi";
  EXPECT_EQ(ioWrapString(text, 7, 3, services::io::kWrapLines, false), "abc\ndef");
  EXPECT_EQ(ioWrapString(nullptr, 0, 3, services::io::kWrapLines, false), "");
}
