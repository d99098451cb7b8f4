// Recursive-descent parser from tokens to the syntax tree. Precedence, from
// loosest to tightest: || ; && ; | ; & ; comparisons ; ':' ; + - ; * / \ and
// their element forms ; prefix - + ~ ; ^ .^ ; postfix ' .' and indexing.
#pragma once

#include <string_view>
#include <vector>

#include "sgsh/Node.h"
#include "sgsh/Program.h"
#include "sgsh/Token.h"

namespace sgsh {

class Parser {
 public:
  // Brackets, blocks, prefix operators and postfix chains (a.b(1){2}')
  // nest at most this deep; deeper input is a syntax error
  // (VANTEL:sgsh:TooDeeplyNested), so neither parsing nor evaluating it can
  // exhaust the stack. Flat chains of binary operators are not nesting.
  static constexpr int kMaxNesting = 256;

  Parser(std::vector<Token> tokens, std::string_view source) : toks_(std::move(tokens)), src_(source) {}

  // Lexes and parses a whole source. Raises VANTEL:sgsh:Syntax (and the
  // lexer's errors) with the line of the fault.
  static Program parse(std::string_view source);

  Program parseProgram();

 private:
  const Token& cur() const noexcept { return toks_[pos_]; }
  const Token& next(std::size_t ahead = 1) const noexcept;
  bool at(TokenKind k) const noexcept { return cur().kind == k; }
  bool accept(TokenKind k);
  const Token& expect(TokenKind k);
  [[noreturn]] void fail(const Token& at) const;
  // One level deeper for the guard's lifetime; raises past kMaxNesting.
  class Nest;

  void skipSeparators();
  bool atBlockEnd() const noexcept;
  NodePtr parseBlock();
  NodePtr parseStatement();
  NodePtr parseFunction();
  NodePtr parseCommand();
  NodePtr parseIf();
  NodePtr parseFor();
  NodePtr parseWhile();
  NodePtr parseTry();
  NodePtr finishStatement(std::shared_ptr<Node> stmt);

  NodePtr parseExpr();
  NodePtr parseOrOr();
  NodePtr parseAndAnd();
  NodePtr parseOr();
  NodePtr parseAnd();
  NodePtr parseComparison();
  NodePtr parseRange();
  NodePtr parseAdditive();
  NodePtr parseMultiplicative();
  NodePtr parseUnary();
  NodePtr parsePower();
  NodePtr parsePowerOperand();
  NodePtr parsePostfix();
  NodePtr parsePrimary();
  NodePtr parseMatrix(TokenKind close, NodeKind kind);
  NodePtr parseLambda(const Token& at);
  std::vector<NodePtr> parseArguments(TokenKind close);
  NodePtr parseArgument();

  std::vector<Token> toks_;
  std::string_view src_;  // the source, for the text of function handles
  std::size_t pos_ = 0;
  int indexDepth_ = 0;   // > 0 while inside ( ) or { } of an index: 'end' and ':' are values
  int matrixDepth_ = 0;  // > 0 inside [ ] or { } literals
  bool openFunction_ = false;
  int nesting_ = 0;
};

}  // namespace sgsh
