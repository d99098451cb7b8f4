// The parser: precedence and grouping, 'end' and ':' inside nested indexing,
// statements and their display flag, and syntax errors.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>

#include "sgsh/Parser.h"

namespace sgsh {
namespace {

// The first statement of the source, written back with full parentheses.
std::string expr(std::string_view src) {
  Program p = Parser::parse(src);
  return toSource(*p.body->kids.at(0));
}

std::string syntaxError(std::string_view src) {
  try {
    Parser::parse(src);
  } catch (const foundation::core::except::Error& e) {
    return e.identifier();
  }
  return "none";
}

TEST(ParserTest, ArithmeticPrecedence) {
  EXPECT_EQ(expr("1 + 2 * 3"), "(1 + (2 * 3))");
  EXPECT_EQ(expr("1 - 2 - 3"), "((1 - 2) - 3)");
  EXPECT_EQ(expr("-2 ^ 2"), "(-(2 ^ 2))");
  EXPECT_EQ(expr("2 ^ -1"), "(2 ^ (-1))");
  EXPECT_EQ(expr("2 ^ 3 ^ 2"), "((2 ^ 3) ^ 2)");
  EXPECT_EQ(expr("a .* b ./ c"), "((a .* b) ./ c)");
  EXPECT_EQ(expr("a ^ b'"), "((a ^ b)')");
  EXPECT_EQ(expr("-a'"), "(-(a'))");
  EXPECT_EQ(expr("~a == b"), "((~a) == b)");
}

TEST(ParserTest, RangeComparisonAndLogicPrecedence) {
  EXPECT_EQ(expr("1:n+1"), "(1:(n + 1))");
  EXPECT_EQ(expr("0:0.5:2"), "(0:0.5:2)");
  EXPECT_EQ(expr("1:3 == x"), "((1:3) == x)");
  EXPECT_EQ(expr("a < b & c | d"), "(((a < b) & c) | d)");
  EXPECT_EQ(expr("a || b && c"), "(a || (b && c))");
  EXPECT_EQ(expr("a | b && c | d"), "((a | b) && (c | d))");
}

TEST(ParserTest, EndAndColonInsideNestedIndexing) {
  EXPECT_EQ(expr("x(end)"), "x(end)");
  EXPECT_EQ(expr("x(end - 1, :)"), "x((end - 1), :)");
  EXPECT_EQ(expr("x(y(end), end)"), "x(y(end), end)");
  EXPECT_EQ(expr("c{end}(2:end)"), "c{end}((2:end))");
  EXPECT_EQ(expr("x([1 end])"), "x([1, end])");
  EXPECT_EQ(expr("s.a(end).b"), "s.a(end).b");
  EXPECT_EQ(expr("s.(name)(1)"), "s.(name)(1)");
  // Outside an index 'end' closes a block and cannot be a value.
  EXPECT_EQ(syntaxError("y = end"), "VANTEL:sgsh:Syntax");
  // A lambda body inside an index starts afresh.
  EXPECT_EQ(syntaxError("x(@() end)"), "VANTEL:sgsh:Syntax");
}

TEST(ParserTest, MatricesCellsAndHandles) {
  EXPECT_EQ(expr("[1, 2; 3 4]"), "[1, 2; 3, 4]");
  EXPECT_EQ(expr("[1 2\n 3 4\n]"), "[1, 2; 3, 4]");
  EXPECT_EQ(expr("[]"), "[]");
  EXPECT_EQ(expr("{1, 'a'; [], {}}"), "{1, 'a'; [], {}}");
  EXPECT_EQ(expr("@sin"), "@sin");
  EXPECT_EQ(expr("@(x, y) x + y * k"), "@(x, y) (x + (y * k))");
  EXPECT_EQ(expr("f(@(s, e) disp(s), 2)"), "f(@(s, e) disp(s), 2)");
  Program p = Parser::parse("f = @(x)  x.^2 + 1;");
  EXPECT_EQ(p.body->kids[0]->kids[1]->text, "@(x)  x.^2 + 1");
}

TEST(ParserTest, StatementsAndDisplayFlag) {
  Program p = Parser::parse("a = 1; b = 2, c = 3\nd(2).e{3} = 4");
  ASSERT_EQ(p.body->kids.size(), 4u);
  EXPECT_FALSE(p.body->kids[0]->show);
  EXPECT_TRUE(p.body->kids[1]->show);
  EXPECT_TRUE(p.body->kids[2]->show);
  EXPECT_TRUE(p.body->kids[3]->show);
  EXPECT_EQ(toSource(*p.body->kids[3]), "d(2).e{3} = 4");

  Program m = Parser::parse("[a, ~, c{2}] = f(1);");
  const Node& multi = *m.body->kids[0];
  ASSERT_EQ(multi.kind, NodeKind::MultiAssign);
  ASSERT_EQ(multi.kids.size(), 4u);
  EXPECT_EQ(multi.kids[1]->kind, NodeKind::Ignore);

  Program c = Parser::parse("if a, b, elseif c\n d; else e, end\nfor (i = 1:3) x; end\ntry, t; catch err\n u; end");
  ASSERT_EQ(c.body->kids.size(), 3u);
  EXPECT_EQ(c.body->kids[0]->kids.size(), 5u);  // cond, block, cond, block, else block
  EXPECT_EQ(c.body->kids[2]->text, "err");
}

TEST(ParserTest, FunctionsWithAndWithoutEnd) {
  Program p = Parser::parse(
      "y = f(2);\n"
      "function [a, b] = f(x, ~)\n  a = x; if x, b = 1; end\nend\n"
      "function g\n  disp(1)\n"
      "function h(x)\n  x\n");
  ASSERT_EQ(p.functions.size(), 3u);
  EXPECT_EQ(p.functions[0]->text, "f");
  EXPECT_EQ(p.functions[0]->outputs, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(p.functions[0]->names, (std::vector<std::string>{"x", "~"}));
  EXPECT_EQ(p.functions[1]->text, "g");
  EXPECT_TRUE(p.functions[1]->names.empty());
  EXPECT_EQ(p.functions[2]->names, (std::vector<std::string>{"x"}));
  // The session reads on while a function is still open.
  EXPECT_TRUE(p.openFunction);
  EXPECT_FALSE(Parser::parse("function f\n  disp(1)\nend\n").openFunction);
  EXPECT_TRUE(Parser::parse("function f\n  if 1, disp(1), end\n").openFunction);
}

TEST(ParserTest, SyntaxErrors) {
  EXPECT_EQ(syntaxError("x = (1 + 2"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("1 + = 2"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("3 = x"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("if x\n y"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("end"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("[a b] = 1 2"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("x = [1 2"), "VANTEL:sgsh:Syntax");
}

}  // namespace
}  // namespace sgsh

namespace sgsh {
namespace {

TEST(ParserTest, SeparatorsCommentsAndContinuationInsideConstructs) {
  // Commas, semicolons and line breaks all end statements; only ';' hides.
  Program p = Parser::parse("a = 1, b = 2; c = 3 % comment\n\n d = [1, ... more\n 2]");
  ASSERT_EQ(p.body->kids.size(), 4u);
  EXPECT_TRUE(p.body->kids[0]->show);
  EXPECT_FALSE(p.body->kids[1]->show);
  EXPECT_EQ(toSource(*p.body->kids[3]), "d = [1, 2]");
  // A comment inside brackets ends the row like a line break.
  EXPECT_EQ(toSource(*Parser::parse("m = [1 2 % first row\n 3 4];").body->kids[0]), "m = [1, 2; 3, 4]");
  // Transposes inside brackets: after a value with no blank.
  EXPECT_EQ(toSource(*Parser::parse("[a' b']").body->kids[0]), "[(a'), (b')]");
  EXPECT_EQ(toSource(*Parser::parse("[a', 'b']").body->kids[0]), "[(a'), 'b']");
  // A lambda inside a cell keeps its whole body.
  EXPECT_EQ(toSource(*Parser::parse("{@(t) 2 * t, @(u) -u}").body->kids[0]), "{@(t) (2 * t), @(u) (-u)}");
  // Keywords after a dot are field names; end after a dot is not the block end.
  EXPECT_EQ(toSource(*Parser::parse("s.end = s.if + 1").body->kids[0]), "s.end = (s.if + 1)");
}

// How the first statement reads: "name|word|word" for a command, followed
// by " || expression" when the same text also reads as an expression; any
// other statement as its source.
std::string command(std::string_view src) {
  Program p = Parser::parse(src);
  const Node& s = *p.body->kids.at(0);
  if (s.kind != NodeKind::Command) return "not a command: " + toSource(s);
  std::string r = s.text;
  for (const std::string& w : s.names) r += "|" + w;
  if (!s.kids.empty()) r += " || " + toSource(*s.kids[0]);
  return r;
}

TEST(ParserTest, CommandSyntaxNeedsABlankThenAWordNotAnOperator) {
  EXPECT_EQ(command("hold on"), "hold|on");
  EXPECT_EQ(command("  clear x y*"), "clear|x|y*");
  EXPECT_EQ(command("cd .."), "cd|..");
  EXPECT_EQ(command("disp hi % a comment"), "disp|hi");
  EXPECT_EQ(command("disp 'two words' it''s"), "disp|two words|its");
  EXPECT_EQ(command("disp 'it''s'"), "disp|it's");
  // An operator with a blank after it is binary; without, it begins a word
  // and the expression reading is kept for a variable of that name.
  EXPECT_EQ(command("a -1"), "a|-1 || (a - 1)");
  EXPECT_EQ(command("a ==b"), "a|==b || (a == b)");
  EXPECT_EQ(command("x .^2"), "x|.^2 || (x .^ 2)");
  EXPECT_EQ(command("a - 1"), "not a command: (a - 1)");
  EXPECT_EQ(command("a-1"), "not a command: (a - 1)");
  EXPECT_EQ(command("a == b"), "not a command: (a == b)");
  EXPECT_EQ(command("a = 1"), "not a command: a = 1");
  EXPECT_EQ(command("f (x)"), "not a command: f(x)");
  EXPECT_EQ(command("a"), "not a command: a");
}

TEST(ParserTest, CommandSyntaxEndsWithTheStatement) {
  Program p = Parser::parse("hold on; disp a, x = 1\nif x, hold off, end");
  ASSERT_EQ(p.body->kids.size(), 4u);
  EXPECT_EQ(p.body->kids[0]->kind, NodeKind::Command);
  EXPECT_FALSE(p.body->kids[0]->show);
  EXPECT_EQ(p.body->kids[1]->kind, NodeKind::Command);
  EXPECT_TRUE(p.body->kids[1]->show);
  EXPECT_EQ(p.body->kids[2]->kind, NodeKind::Assign);
  const Node& block = *p.body->kids[3]->kids[1];
  ASSERT_EQ(block.kids.size(), 1u);
  EXPECT_EQ(toSource(*block.kids[0]), "hold 'off'");
  // Inside an expression the words are not commands.
  EXPECT_EQ(syntaxError("y = hold on"), "VANTEL:sgsh:Syntax");
  EXPECT_EQ(syntaxError("disp 'open"), "VANTEL:sgsh:UnterminatedText");
}

}  // namespace
}  // namespace sgsh
