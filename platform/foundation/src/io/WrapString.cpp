// Line wrapping of command-line text at blanks, counting UTF-8 characters.
#include <string_view>
#include <vector>

#include "foundation/io/Printing.h"

namespace {

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::size_t charCount(std::string_view s) {
  std::size_t n = 0;
  for (char c : s) n += isContinuation(c) ? 0 : 1;
  return n;
}

// Byte offset after the first `chars` characters of `s`.
std::size_t byteOffset(std::string_view s, std::size_t chars) {
  std::size_t i = 0;
  while (i < s.size() && chars > 0) {
    ++i;
    while (i < s.size() && isContinuation(s[i])) ++i;
    --chars;
  }
  return i;
}

// Wraps one paragraph (no line feeds) into `lines`; an empty paragraph
// gives one empty line.
void wrapParagraph(std::string_view text, std::size_t width, std::vector<std::string>& lines) {
  std::string line;
  std::size_t lineChars = 0;
  bool lineEmpty = true;
  bool firstLine = true;

  // Starts a line with `word`; a word longer than the width is split into
  // pieces of the width, all but the last on lines of their own.
  auto startLine = [&](std::string_view lead, std::string_view word) {
    std::size_t wordChars = charCount(word);
    if (lead.size() + wordChars <= width) {
      line.assign(lead).append(word);
      lineChars = lead.size() + wordChars;
    } else {
      while (wordChars > width) {
        std::size_t cut = byteOffset(word, width);
        lines.emplace_back(word.substr(0, cut));
        word.remove_prefix(cut);
        wordChars -= width;
      }
      line.assign(word);
      lineChars = wordChars;
    }
    lineEmpty = false;
  };

  std::size_t i = 0;
  while (true) {
    std::size_t gapStart = i;
    while (i < text.size() && text[i] == ' ') ++i;
    std::string_view gap = text.substr(gapStart, i - gapStart);
    if (i >= text.size()) break;  // blanks at the end of a paragraph are dropped
    std::size_t wordStart = i;
    while (i < text.size() && text[i] != ' ') ++i;
    std::string_view word = text.substr(wordStart, i - wordStart);

    if (lineEmpty) {
      // Blanks before the first word are indentation: kept when they fit.
      startLine(firstLine ? gap : std::string_view(), word);
    } else if (lineChars + gap.size() + charCount(word) <= width) {
      line.append(gap).append(word);
      lineChars += gap.size() + charCount(word);
    } else {
      lines.push_back(std::move(line));
      line.clear();
      firstLine = false;
      startLine({}, word);
    }
  }
  lines.push_back(std::move(line));
}

}  // namespace

std::string ioWrapString(const char* text, std::size_t length, std::size_t width, int flags, bool desktop) {
  std::string_view input(text ? text : "", text ? length : 0);
  const bool cut = (flags & services::io::kCutToWidth) != 0;
  if (width == 0 || (!cut && desktop)) return std::string(input);

  std::vector<std::string> lines;
  while (true) {
    auto eol = input.find('\n');
    wrapParagraph(input.substr(0, eol), width, lines);
    if (cut || eol == std::string_view::npos) break;
    input.remove_prefix(eol + 1);
  }
  if (cut) return lines.front();

  std::string out;
  const std::string_view newline = GetNewline();
  for (std::size_t k = 0; k < lines.size(); ++k) {
    if (k) out.append(newline);
    out.append(lines[k]);
  }
  return out;
}
