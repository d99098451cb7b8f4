// The parser: statements, blocks and function definitions, and expressions
// by precedence climbing written out as one function per level.
#include "sgsh/Parser.h"

#include <foundation/core/except/Error.h>

#include "eval/ObjectBridge.h"
#include "sgsh/Lexer.h"

namespace sgsh {

using foundation::core::except::Error;

namespace {

std::shared_ptr<Node> make(NodeKind kind, const Token& at) { return std::make_shared<Node>(kind, at.line); }

std::shared_ptr<Node> binary(Op op, NodePtr l, NodePtr r, int line) {
  auto n = std::make_shared<Node>(NodeKind::Binary, line);
  n->op = op;
  n->kids = {std::move(l), std::move(r)};
  return n;
}

std::shared_ptr<Node> unary(Op op, NodePtr operand, int line) {
  auto n = std::make_shared<Node>(NodeKind::Unary, line);
  n->op = op;
  n->kids = {std::move(operand)};
  return n;
}

// A place that can take a value: a name, possibly indexed or with fields.
bool isAssignable(const Node& n) {
  switch (n.kind) {
    case NodeKind::Name:
      return true;
    case NodeKind::Paren:
    case NodeKind::Brace:
    case NodeKind::Field:
    case NodeKind::DynField:
      return isAssignable(*n.kids[0]);
    default:
      return false;
  }
}

}  // namespace

Program Parser::parse(std::string_view source) {
  return Parser(Lexer(source).tokenize(), source).parseProgram();
}

const Token& Parser::next(std::size_t ahead) const noexcept {
  const std::size_t i = pos_ + ahead;
  return i < toks_.size() ? toks_[i] : toks_.back();
}

bool Parser::accept(TokenKind k) {
  if (!at(k)) return false;
  ++pos_;
  return true;
}

const Token& Parser::expect(TokenKind k) {
  if (!at(k)) fail(cur());
  return toks_[pos_++];
}

void Parser::fail(const Token& t) const {
  std::string what = t.kind == TokenKind::Identifier || t.kind == TokenKind::Number ? t.text
                     : t.kind == TokenKind::Char                                   ? "'" + t.text + "'"
                     : t.kind == TokenKind::String                                 ? "\"" + t.text + "\""
                                                                                   : tokenKindText(t.kind);
  throw Error("VANTEL:sgsh:Syntax", what, t.line, t.column);
}

class Parser::Nest {
 public:
  explicit Nest(Parser& p, int levels = 1) : p_(p) {
    for (int i = 0; i < levels; ++i) deeper();
  }
  ~Nest() { p_.nesting_ -= levels_; }
  void deeper() {
    ++levels_;
    if (++p_.nesting_ > kMaxNesting) {
      const Token& t = p_.cur();
      throw Error("VANTEL:sgsh:TooDeeplyNested", kMaxNesting, t.line, t.column);
    }
  }
  Nest(const Nest&) = delete;
  Nest& operator=(const Nest&) = delete;

 private:
  Parser& p_;
  int levels_ = 0;
};

void Parser::skipSeparators() {
  while (at(TokenKind::Newline) || at(TokenKind::Semicolon) || at(TokenKind::Comma)) ++pos_;
}

bool Parser::atBlockEnd() const noexcept {
  switch (cur().kind) {
    case TokenKind::KwEnd:
    case TokenKind::KwElse:
    case TokenKind::KwElseif:
    case TokenKind::KwCatch:
    case TokenKind::KwFunction:
    case TokenKind::End:
      return true;
    default:
      return false;
  }
}

Program Parser::parseProgram() {
  Program prog;
  auto body = std::make_shared<Node>(NodeKind::Block, 1);
  for (;;) {
    skipSeparators();
    if (at(TokenKind::End)) break;
    if (at(TokenKind::KwFunction)) {
      prog.functions.push_back(parseFunction());
      continue;
    }
    if (atBlockEnd()) fail(cur());  // a stray end, else or catch
    body->kids.push_back(parseStatement());
  }
  prog.body = std::move(body);
  prog.openFunction = openFunction_;
  return prog;
}

NodePtr Parser::parseBlock() {
  auto block = make(NodeKind::Block, cur());
  for (;;) {
    skipSeparators();
    if (atBlockEnd()) break;
    block->kids.push_back(parseStatement());
  }
  return block;
}

NodePtr Parser::finishStatement(std::shared_ptr<Node> stmt) {
  if (accept(TokenKind::Semicolon)) {
    stmt->show = false;
  } else if (accept(TokenKind::Comma) || accept(TokenKind::Newline) || at(TokenKind::End) || atBlockEnd()) {
    stmt->show = true;
  } else {
    fail(cur());
  }
  return stmt;
}

NodePtr Parser::parseStatement() {
  Nest nest(*this);
  const Token& t = cur();
  switch (t.kind) {
    case TokenKind::KwIf:
      return parseIf();
    case TokenKind::KwFor:
      return parseFor();
    case TokenKind::KwWhile:
      return parseWhile();
    case TokenKind::KwTry:
      return parseTry();
    case TokenKind::KwBreak:
    case TokenKind::KwContinue:
    case TokenKind::KwReturn: {
      ++pos_;
      auto n = make(t.kind == TokenKind::KwBreak      ? NodeKind::Break
                    : t.kind == TokenKind::KwContinue ? NodeKind::Continue
                                                      : NodeKind::Return,
                    t);
      return finishStatement(n);
    }
    case TokenKind::Identifier:
      if (next().kind == TokenKind::CommandWord) return parseCommand();
      break;
    default:
      break;
  }
  NodePtr lhs = parseExpr();
  if (accept(TokenKind::Assign)) {
    if (lhs->kind == NodeKind::Matrix) {
      // [a, b] = f(...): one row of assignable places or ~.
      if (lhs->kids.size() != 1) fail(t);
      auto multi = make(NodeKind::MultiAssign, t);
      for (const NodePtr& target : lhs->kids[0]->kids) {
        if (target->kind != NodeKind::Ignore && !isAssignable(*target)) fail(t);
        multi->kids.push_back(target);
      }
      if (multi->kids.empty()) fail(t);
      multi->kids.push_back(parseExpr());
      return finishStatement(multi);
    }
    if (!isAssignable(*lhs)) fail(t);
    auto assign = make(NodeKind::Assign, t);
    assign->kids = {lhs, parseExpr()};
    return finishStatement(assign);
  }
  auto stmt = make(NodeKind::ExprStmt, t);
  stmt->kids = {lhs};
  return finishStatement(stmt);
}

// name word word...: the words become char arguments. The same text read as
// an expression is kept beside them when it parses as one, for the case
// that the name is a variable when the statement runs ("a -1").
NodePtr Parser::parseCommand() {
  const Token& name = cur();
  auto n = make(NodeKind::Command, name);
  n->text = name.text;
  ++pos_;
  std::size_t end = name.offset + name.length;
  while (at(TokenKind::CommandWord)) {
    n->names.push_back(cur().text);
    end = cur().offset + cur().length;
    ++pos_;
  }
  const std::string_view text = src_.substr(name.offset, end - name.offset);
  try {
    Parser sub(Lexer(text, name.line, Lexer::CommandSyntax::Ignored).tokenize(), text);
    NodePtr expr = sub.parseExpr();
    if (sub.at(TokenKind::End)) n->kids.push_back(std::move(expr));
  } catch (const foundation::core::except::IMsgIDException&) {
    // Not an expression: the statement can only be a command.
  }
  return finishStatement(n);
}

NodePtr Parser::parseIf() {
  auto n = make(NodeKind::If, expect(TokenKind::KwIf));
  n->kids.push_back(parseExpr());
  n->kids.push_back(parseBlock());
  for (;;) {
    if (accept(TokenKind::KwElseif)) {
      n->kids.push_back(parseExpr());
      n->kids.push_back(parseBlock());
    } else if (accept(TokenKind::KwElse)) {
      n->kids.push_back(parseBlock());
      expect(TokenKind::KwEnd);
      return n;
    } else {
      expect(TokenKind::KwEnd);
      return n;
    }
  }
}

NodePtr Parser::parseFor() {
  auto n = make(NodeKind::For, expect(TokenKind::KwFor));
  const bool paren = accept(TokenKind::LParen);
  const Token& var = expect(TokenKind::Identifier);
  auto target = make(NodeKind::Name, var);
  target->text = var.text;
  expect(TokenKind::Assign);
  n->kids.push_back(target);
  n->kids.push_back(parseExpr());
  if (paren) expect(TokenKind::RParen);
  n->kids.push_back(parseBlock());
  expect(TokenKind::KwEnd);
  return n;
}

NodePtr Parser::parseWhile() {
  auto n = make(NodeKind::While, expect(TokenKind::KwWhile));
  n->kids.push_back(parseExpr());
  n->kids.push_back(parseBlock());
  expect(TokenKind::KwEnd);
  return n;
}

NodePtr Parser::parseTry() {
  auto n = make(NodeKind::TryCatch, expect(TokenKind::KwTry));
  n->kids.push_back(parseBlock());
  if (accept(TokenKind::KwCatch)) {
    // "catch err" names the error only when the name ends the line.
    if (at(TokenKind::Identifier) &&
        (next().kind == TokenKind::Newline || next().kind == TokenKind::Semicolon ||
         next().kind == TokenKind::Comma || next().kind == TokenKind::End)) {
      n->text = cur().text;
      ++pos_;
    }
    n->kids.push_back(parseBlock());
  } else {
    n->kids.push_back(std::make_shared<Node>(NodeKind::Block, cur().line));
  }
  expect(TokenKind::KwEnd);
  return n;
}

NodePtr Parser::parseFunction() {
  auto n = make(NodeKind::Function, expect(TokenKind::KwFunction));
  if (accept(TokenKind::LBracket)) {
    while (!accept(TokenKind::RBracket)) {
      n->outputs.push_back(expect(TokenKind::Identifier).text);
      accept(TokenKind::Comma);
    }
    expect(TokenKind::Assign);
    n->text = expect(TokenKind::Identifier).text;
  } else {
    std::string first = expect(TokenKind::Identifier).text;
    if (accept(TokenKind::Assign)) {
      n->outputs.push_back(std::move(first));
      n->text = expect(TokenKind::Identifier).text;
    } else {
      n->text = std::move(first);
    }
  }
  if (accept(TokenKind::LParen)) {
    while (!accept(TokenKind::RParen)) {
      if (accept(TokenKind::Tilde))
        n->names.emplace_back("~");
      else
        n->names.push_back(expect(TokenKind::Identifier).text);
      if (!at(TokenKind::RParen)) expect(TokenKind::Comma);
    }
  }
  n->kids.push_back(parseBlock());
  // The end of a function is optional in a file.
  openFunction_ = !accept(TokenKind::KwEnd) && at(TokenKind::End);
  return n;
}

// ---- expressions ---------------------------------------------------------

NodePtr Parser::parseExpr() {
  Nest nest(*this);
  return parseOrOr();
}

NodePtr Parser::parseOrOr() {
  NodePtr l = parseAndAnd();
  while (at(TokenKind::BarBar)) {
    const int line = toks_[pos_++].line;
    auto n = std::make_shared<Node>(NodeKind::ShortCircuit, line);
    n->op = Op::OrOr;
    n->kids = {l, parseAndAnd()};
    l = n;
  }
  return l;
}

NodePtr Parser::parseAndAnd() {
  NodePtr l = parseOr();
  while (at(TokenKind::AmpAmp)) {
    const int line = toks_[pos_++].line;
    auto n = std::make_shared<Node>(NodeKind::ShortCircuit, line);
    n->op = Op::AndAnd;
    n->kids = {l, parseOr()};
    l = n;
  }
  return l;
}

NodePtr Parser::parseOr() {
  NodePtr l = parseAnd();
  while (at(TokenKind::Bar)) {
    const int line = toks_[pos_++].line;
    l = binary(Op::Or, l, parseAnd(), line);
  }
  return l;
}

NodePtr Parser::parseAnd() {
  NodePtr l = parseComparison();
  while (at(TokenKind::Amp)) {
    const int line = toks_[pos_++].line;
    l = binary(Op::And, l, parseComparison(), line);
  }
  return l;
}

NodePtr Parser::parseComparison() {
  NodePtr l = parseRange();
  for (;;) {
    Op op;
    switch (cur().kind) {
      case TokenKind::EqEq: op = Op::Eq; break;
      case TokenKind::NotEq: op = Op::Ne; break;
      case TokenKind::Less: op = Op::Lt; break;
      case TokenKind::LessEq: op = Op::Le; break;
      case TokenKind::Greater: op = Op::Gt; break;
      case TokenKind::GreaterEq: op = Op::Ge; break;
      default: return l;
    }
    const int line = toks_[pos_++].line;
    l = binary(op, l, parseRange(), line);
  }
}

NodePtr Parser::parseRange() {
  NodePtr first = parseAdditive();
  if (!at(TokenKind::Colon)) return first;
  auto n = make(NodeKind::Range, toks_[pos_++]);
  n->kids.push_back(first);
  n->kids.push_back(parseAdditive());
  if (accept(TokenKind::Colon)) n->kids.push_back(parseAdditive());
  return n;
}

NodePtr Parser::parseAdditive() {
  NodePtr l = parseMultiplicative();
  for (;;) {
    Op op;
    if (at(TokenKind::Plus)) op = Op::Add;
    else if (at(TokenKind::Minus)) op = Op::Sub;
    else return l;
    const int line = toks_[pos_++].line;
    l = binary(op, l, parseMultiplicative(), line);
  }
}

NodePtr Parser::parseMultiplicative() {
  NodePtr l = parseUnary();
  for (;;) {
    Op op;
    switch (cur().kind) {
      case TokenKind::Star: op = Op::MatMul; break;
      case TokenKind::Slash: op = Op::MatDiv; break;
      case TokenKind::Backslash: op = Op::MatLeftDiv; break;
      case TokenKind::DotStar: op = Op::Mul; break;
      case TokenKind::DotSlash: op = Op::Div; break;
      case TokenKind::DotBackslash: op = Op::LeftDiv; break;
      default: return l;
    }
    const int line = toks_[pos_++].line;
    l = binary(op, l, parseUnary(), line);
  }
}

NodePtr Parser::parseUnary() {
  const Token& t = cur();
  if (t.kind == TokenKind::Minus || t.kind == TokenKind::Plus || t.kind == TokenKind::Tilde) {
    // "~" alone before , or ] is an ignored output, not a negation.
    if (t.kind == TokenKind::Tilde && matrixDepth_ > 0 &&
        (next().kind == TokenKind::Comma || next().kind == TokenKind::RBracket)) {
      ++pos_;
      return make(NodeKind::Ignore, t);
    }
    ++pos_;
    const Op op = t.kind == TokenKind::Minus ? Op::Neg : t.kind == TokenKind::Plus ? Op::Plus : Op::Not;
    Nest nest(*this);
    return unary(op, parseUnary(), t.line);
  }
  return parsePower();
}

// Power and transpose share a level and group to the left: a^b' is (a^b)'.
NodePtr Parser::parsePower() {
  NodePtr l = parsePostfix();
  Nest transposes(*this, 0);  // each wraps the tree once more
  for (;;) {
    const Token& t = cur();
    switch (t.kind) {
      case TokenKind::Quote:
        transposes.deeper();
        ++pos_;
        l = unary(Op::CTranspose, l, t.line);
        break;
      case TokenKind::DotQuote:
        transposes.deeper();
        ++pos_;
        l = unary(Op::Transpose, l, t.line);
        break;
      case TokenKind::Caret:
      case TokenKind::DotCaret:
        ++pos_;
        l = binary(t.kind == TokenKind::Caret ? Op::MatPow : Op::Pow, l, parsePowerOperand(), t.line);
        break;
      default:
        return l;
    }
  }
}

// The exponent may carry prefix signs: 2^-1.
NodePtr Parser::parsePowerOperand() {
  const Token& t = cur();
  if (t.kind == TokenKind::Minus || t.kind == TokenKind::Plus || t.kind == TokenKind::Tilde) {
    ++pos_;
    const Op op = t.kind == TokenKind::Minus ? Op::Neg : t.kind == TokenKind::Plus ? Op::Plus : Op::Not;
    Nest nest(*this);
    return unary(op, parsePowerOperand(), t.line);
  }
  return parsePostfix();
}

NodePtr Parser::parsePostfix() {
  NodePtr base = parsePrimary();
  // Each index or field wraps the tree once more: a.b.c... 10,000 long
  // would nest as deep as 10,000 brackets.
  Nest links(*this, 0);
  for (;;) {
    links.deeper();
    const bool indexable = base->kind == NodeKind::Name || base->kind == NodeKind::Paren ||
                           base->kind == NodeKind::Brace || base->kind == NodeKind::Field ||
                           base->kind == NodeKind::DynField;
    if (!indexable) return base;
    const Token& t = cur();
    if (t.kind == TokenKind::LParen || t.kind == TokenKind::LBrace) {
      ++pos_;
      auto n = make(t.kind == TokenKind::LParen ? NodeKind::Paren : NodeKind::Brace, t);
      n->kids.push_back(base);
      for (NodePtr& arg : parseArguments(t.kind == TokenKind::LParen ? TokenKind::RParen : TokenKind::RBrace))
        n->kids.push_back(std::move(arg));
      base = n;
    } else if (t.kind == TokenKind::Dot && next().kind == TokenKind::Identifier) {
      pos_ += 2;
      auto n = make(NodeKind::Field, t);
      n->text = toks_[pos_ - 1].text;
      ObjectBridge::keyOf(n->text);  // the name is interned now, not when it is used
      n->kids.push_back(base);
      base = n;
    } else if (t.kind == TokenKind::Dot && next().kind == TokenKind::LParen) {
      pos_ += 2;
      auto n = make(NodeKind::DynField, t);
      n->kids.push_back(base);
      const int saved = indexDepth_;
      indexDepth_ = 0;
      n->kids.push_back(parseExpr());
      indexDepth_ = saved;
      expect(TokenKind::RParen);
      base = n;
    } else {
      return base;
    }
  }
}

std::vector<NodePtr> Parser::parseArguments(TokenKind close) {
  std::vector<NodePtr> args;
  ++indexDepth_;
  const int savedMatrix = matrixDepth_;
  matrixDepth_ = 0;
  if (!accept(close)) {
    for (;;) {
      args.push_back(parseArgument());
      if (accept(close)) break;
      expect(TokenKind::Comma);
    }
  }
  matrixDepth_ = savedMatrix;
  --indexDepth_;
  return args;
}

NodePtr Parser::parseArgument() {
  if (at(TokenKind::Colon) && (next().kind == TokenKind::Comma || next().kind == TokenKind::RParen ||
                               next().kind == TokenKind::RBrace)) {
    return make(NodeKind::Colon, toks_[pos_++]);
  }
  return parseExpr();
}

NodePtr Parser::parseMatrix(TokenKind close, NodeKind kind) {
  auto n = make(kind, toks_[pos_ - 1]);
  ++matrixDepth_;
  auto row = make(NodeKind::Row, cur());
  for (;;) {
    if (accept(close)) break;
    if (at(TokenKind::Semicolon) || at(TokenKind::Newline)) {
      ++pos_;
      if (!row->kids.empty()) n->kids.push_back(row);
      row = make(NodeKind::Row, cur());
      continue;
    }
    if (accept(TokenKind::Comma)) continue;
    if (at(TokenKind::End)) fail(cur());
    row->kids.push_back(parseExpr());
    if (!at(TokenKind::Comma) && !at(TokenKind::Semicolon) && !at(TokenKind::Newline) && !at(close)) fail(cur());
  }
  if (!row->kids.empty()) n->kids.push_back(row);
  --matrixDepth_;
  return n;
}

NodePtr Parser::parseLambda(const Token& atTok) {
  auto n = make(NodeKind::Lambda, atTok);
  expect(TokenKind::LParen);
  while (!accept(TokenKind::RParen)) {
    if (accept(TokenKind::Tilde))
      n->names.emplace_back("~");
    else
      n->names.push_back(expect(TokenKind::Identifier).text);
    if (!at(TokenKind::RParen)) expect(TokenKind::Comma);
  }
  const int savedIndex = indexDepth_, savedMatrix = matrixDepth_;
  indexDepth_ = 0;
  matrixDepth_ = 0;
  n->kids.push_back(parseExpr());
  indexDepth_ = savedIndex;
  matrixDepth_ = savedMatrix;
  const Token& last = toks_[pos_ - 1];
  n->text = std::string(src_.substr(atTok.offset, last.offset + last.length - atTok.offset));
  return n;
}

NodePtr Parser::parsePrimary() {
  const Token& t = cur();
  switch (t.kind) {
    case TokenKind::Number: {
      ++pos_;
      auto n = make(NodeKind::Number, t);
      n->number = t.number;
      n->imaginary = t.imaginary;
      n->text = t.text;
      return n;
    }
    case TokenKind::Char:
    case TokenKind::String: {
      ++pos_;
      auto n = make(t.kind == TokenKind::Char ? NodeKind::CharLit : NodeKind::StringLit, t);
      n->text = t.text;
      return n;
    }
    case TokenKind::Identifier: {
      ++pos_;
      auto n = make(NodeKind::Name, t);
      n->text = t.text;
      return n;
    }
    case TokenKind::LParen: {
      ++pos_;
      const int savedMatrix = matrixDepth_;
      matrixDepth_ = 0;
      NodePtr inner = parseExpr();
      matrixDepth_ = savedMatrix;
      expect(TokenKind::RParen);
      return inner;
    }
    case TokenKind::LBracket:
      ++pos_;
      return parseMatrix(TokenKind::RBracket, NodeKind::Matrix);
    case TokenKind::LBrace:
      ++pos_;
      return parseMatrix(TokenKind::RBrace, NodeKind::CellLit);
    case TokenKind::At: {
      ++pos_;
      if (at(TokenKind::LParen)) return parseLambda(t);
      auto n = make(NodeKind::FuncHandle, t);
      n->text = expect(TokenKind::Identifier).text;
      while (at(TokenKind::Dot) && next().kind == TokenKind::Identifier) {
        n->text += "." + next().text;
        pos_ += 2;
      }
      return n;
    }
    case TokenKind::KwEnd:
      if (indexDepth_ > 0) {
        ++pos_;
        return make(NodeKind::EndValue, t);
      }
      break;
    default:
      break;
  }
  fail(t);
}

}  // namespace sgsh
