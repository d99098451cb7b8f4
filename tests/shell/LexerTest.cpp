// The lexer's context rules: quote as transpose or text, blanks and line
// breaks inside brackets, continuation, comments, numbers.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>

#include "sgsh/Lexer.h"

namespace sgsh {
namespace {

// Kinds of all tokens but the final End, as their spellings.
std::string kinds(std::string_view src) {
  std::string s;
  for (const Token& t : Lexer(src).tokenize()) {
    if (t.kind == TokenKind::End) break;
    if (!s.empty()) s += ' ';
    s += t.kind == TokenKind::Identifier ? t.text
         : t.kind == TokenKind::Number   ? t.text + (t.imaginary ? "i" : "")
         : t.kind == TokenKind::Char     ? "<" + t.text + ">"
         : t.kind == TokenKind::String   ? "<<" + t.text + ">>"
                                         : tokenKindText(t.kind);
  }
  return s;
}

TEST(LexerTest, QuoteAfterValueIsTransposeElsewhereText) {
  EXPECT_EQ(kinds("a'"), "a '");
  EXPECT_EQ(kinds("a''"), "a ' '");
  EXPECT_EQ(kinds("x(1)' + b'"), "x ( 1 ) ' + b '");
  EXPECT_EQ(kinds("a.'"), "a .'");
  EXPECT_EQ(kinds("disp('it''s')"), "disp ( <it's> )");
  EXPECT_EQ(kinds("x = 'a'"), "x = <a>");
  EXPECT_EQ(kinds("[1 2]'"), "[ 1 , 2 ] '");
  // Inside brackets a blank before the quote opens text.
  EXPECT_EQ(kinds("[a 'b']"), "[ a , <b> ]");
  EXPECT_EQ(kinds("[a' 'b']"), "[ a ' , <b> ]");
  EXPECT_EQ(kinds("\"say \"\"hi\"\"\""), "<<say \"hi\">>");
}

TEST(LexerTest, BlanksInsideBracketsSeparateElements) {
  EXPECT_EQ(kinds("[1 -2]"), "[ 1 , - 2 ]");
  EXPECT_EQ(kinds("[1 - 2]"), "[ 1 - 2 ]");
  EXPECT_EQ(kinds("[1 -2 + 3]"), "[ 1 , - 2 + 3 ]");
  EXPECT_EQ(kinds("[a (1)]"), "[ a , ( 1 ) ]");
  EXPECT_EQ(kinds("[f(1, 2) 3]"), "[ f ( 1 , 2 ) , 3 ]");
  EXPECT_EQ(kinds("{1 'a' @sin}"), "{ 1 , <a> , @ sin }");
  // Inside parentheses blanks mean nothing, even inside brackets.
  EXPECT_EQ(kinds("[f(1 -2)]"), "[ f ( 1 - 2 ) ]");
  EXPECT_EQ(kinds("[1 ~x]"), "[ 1 , ~ x ]");
  EXPECT_EQ(kinds("[1 ~= 2]"), "[ 1 ~= 2 ]");
}

TEST(LexerTest, LineBreaksEndRowsInBracketsAndAreBlanksInParens) {
  EXPECT_EQ(kinds("[1 2\n3 4]"), "[ 1 , 2 ; 3 , 4 ]");
  EXPECT_EQ(kinds("f(1,\n2)"), "f ( 1 , 2 )");
  EXPECT_EQ(kinds("a\nb"), "a end of line b");
}

TEST(LexerTest, ContinuationAndComments) {
  EXPECT_EQ(kinds("x = 1 + ... a comment\n 2"), "x = 1 + 2");
  EXPECT_EQ(kinds("[1 2 ...\n 3]"), "[ 1 , 2 , 3 ]");
  EXPECT_EQ(kinds("x = 1 % 'not text\ny"), "x = 1 end of line y");
  EXPECT_EQ(kinds("a\n%{\nb c\n%}\nd"), "a end of line end of line d");
  EXPECT_EQ(kinds("s = '100%'"), "s = <100%>");
}

TEST(LexerTest, NumbersAndKeywords) {
  EXPECT_EQ(kinds("1.5e3 .5 3i 2.5j 1e-2"), "1.5e3 .5 3i 2.5i 1e-2");
  EXPECT_EQ(kinds("1.*2"), "1 .* 2");
  EXPECT_EQ(kinds("1./x"), "1 ./ x");
  EXPECT_EQ(kinds("if end1 end"), "if end1 end");
  EXPECT_EQ(kinds("s.end"), "s . end");  // a field may be named like a keyword
  std::vector<Token> toks = Lexer("1.5e3").tokenize();
  EXPECT_DOUBLE_EQ(toks[0].number, 1500.0);
}

TEST(LexerTest, BadInputRaisesWithIdentifier) {
  auto id = [](std::string_view src) {
    try {
      Lexer(src).tokenize();
    } catch (const foundation::core::except::Error& e) {
      return e.identifier();
    }
    return std::string("none");
  };
  EXPECT_EQ(id("x = 'abc"), "VANTEL:sgsh:UnterminatedText");
  EXPECT_EQ(id("x = \"abc\ny\""), "VANTEL:sgsh:UnterminatedText");
  EXPECT_EQ(id("x = 1 $ 2"), "VANTEL:sgsh:BadCharacter");
  EXPECT_EQ(id("x = 12abc"), "VANTEL:sgsh:BadNumber");
}

}  // namespace
}  // namespace sgsh
