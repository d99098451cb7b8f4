// The lexer of the command language: characters to tokens, with the context
// rules for quotes, blanks inside brackets, continuation and comments.
#include "sgsh/Lexer.h"

#include <cctype>
#include <cstdlib>

#include <foundation/core/except/Error.h>

namespace sgsh {

using foundation::core::except::Error;

const char* tokenKindText(TokenKind kind) noexcept {
  switch (kind) {
#define SGSH_X(name, text) \
  case TokenKind::name:    \
    return text;
    SGSH_TOKEN_KINDS(SGSH_X)
#undef SGSH_X
  }
  return "?";
}

namespace {

bool isIdentStart(char c) noexcept { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool isIdentChar(char c) noexcept { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }
bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

struct Keyword {
  std::string_view word;
  TokenKind kind;
};
constexpr Keyword kKeywords[] = {
    {"if", TokenKind::KwIf},         {"elseif", TokenKind::KwElseif},     {"else", TokenKind::KwElse},
    {"end", TokenKind::KwEnd},       {"for", TokenKind::KwFor},           {"while", TokenKind::KwWhile},
    {"break", TokenKind::KwBreak},   {"continue", TokenKind::KwContinue}, {"return", TokenKind::KwReturn},
    {"try", TokenKind::KwTry},       {"catch", TokenKind::KwCatch},       {"function", TokenKind::KwFunction},
};

}  // namespace

char Lexer::peek(std::size_t ahead) const noexcept {
  return pos_ + ahead < src_.size() ? src_[pos_ + ahead] : '\0';
}

void Lexer::advance(std::size_t n) noexcept {
  for (std::size_t i = 0; i < n && pos_ < src_.size(); ++i, ++pos_) {
    if (src_[pos_] == '\n') {
      ++line_;
      column_ = 1;
    } else {
      ++column_;
    }
  }
}

bool Lexer::lastEndsValue() const noexcept {
  if (out_.empty()) return false;
  switch (out_.back().kind) {
    case TokenKind::Number:
    case TokenKind::Char:
    case TokenKind::String:
    case TokenKind::Identifier:
    case TokenKind::RParen:
    case TokenKind::RBracket:
    case TokenKind::RBrace:
    case TokenKind::Quote:
    case TokenKind::DotQuote:
      return true;
    case TokenKind::KwEnd:
      return !groups_.empty();  // "end" inside an index is a value
    default:
      return false;
  }
}

// Inside brackets, after a blank: does the next character begin a new element?
bool Lexer::startsElement() const noexcept {
  const char c = peek();
  if (isIdentStart(c) || isDigit(c)) return true;
  switch (c) {
    case '\'': case '"': case '(': case '[': case '{': case '@':
      return true;
    case '.':
      return isDigit(peek(1));
    case '~': case '!':
      return peek(1) != '=';
    case '+': case '-': {
      // "[1 -2]" is two elements, "[1 - 2]" and "[1 -= 2]" are not.
      const char n = peek(1);
      return n != ' ' && n != '\t' && n != '=' && n != '\n' && n != '\r' && n != '\0';
    }
    default:
      return false;
  }
}

void Lexer::push(TokenKind kind, std::size_t start, int line, int column, std::string text) {
  Token t;
  t.kind = kind;
  t.text = std::move(text);
  t.line = line;
  t.column = column;
  t.offset = start;
  t.length = pos_ > start ? pos_ - start : 0;
  out_.push_back(std::move(t));
  blankBefore_ = false;
  lambdaParamsClosed_ = false;
}

bool Lexer::atLineStartBlockComment(char second) const noexcept {
  // "%{" or "%}" alone on its line (blanks allowed around it).
  for (std::size_t i = pos_; i > 0; --i) {
    const char c = src_[i - 1];
    if (c == '\n') break;
    if (c != ' ' && c != '\t') return false;
  }
  if (peek() != '%' || peek(1) != second) return false;
  for (std::size_t i = pos_ + 2; i < src_.size() && src_[i] != '\n'; ++i)
    if (src_[i] != ' ' && src_[i] != '\t' && src_[i] != '\r') return false;
  return true;
}

void Lexer::skipBlockComment() {
  int depth = 0;
  while (pos_ < src_.size()) {
    if (atLineStartBlockComment('{')) ++depth;
    else if (atLineStartBlockComment('}')) --depth;
    while (pos_ < src_.size() && peek() != '\n') advance();
    if (depth == 0) return;
    advance();  // the line feed
  }
}

void Lexer::lexNumber() {
  const std::size_t start = pos_;
  const int line = line_, column = column_;
  while (isDigit(peek())) advance();
  if (peek() == '.') {
    const char n = peek(1);
    // "1.*2" is 1 .* 2; "1." alone is a number.
    const bool elementOp = n == '*' || n == '/' || n == '\\' || n == '^' || n == '\'';
    if (!elementOp) {
      advance();
      while (isDigit(peek())) advance();
    }
  }
  if ((peek() == 'e' || peek() == 'E') &&
      (isDigit(peek(1)) || ((peek(1) == '+' || peek(1) == '-') && isDigit(peek(2))))) {
    advance(2);
    while (isDigit(peek())) advance();
  }
  const std::string digits(src_.substr(start, pos_ - start));
  bool imaginary = false;
  if ((peek() == 'i' || peek() == 'j') && !isIdentChar(peek(1))) {
    imaginary = true;
    advance();
  }
  if (isIdentChar(peek()))
    throw Error("VANTEL:sgsh:BadNumber", line, column);
  push(TokenKind::Number, start, line, column, digits);
  out_.back().number = std::strtod(digits.c_str(), nullptr);
  out_.back().imaginary = imaginary;
}

void Lexer::lexQuoted(char quote) {
  const std::size_t start = pos_;
  const int line = line_, column = column_;
  advance();
  std::string text;
  for (;;) {
    const char c = peek();
    // The end of the source, not a NUL: text may hold NUL characters.
    if (pos_ >= src_.size() || c == '\n')
      throw Error("VANTEL:sgsh:UnterminatedText", line, column);
    advance();
    if (c == quote) {
      if (peek() != quote) break;
      advance();  // a doubled quote stands for one
    }
    text.push_back(c);
  }
  push(quote == '"' ? TokenKind::String : TokenKind::Char, start, line, column, std::move(text));
}

void Lexer::lexWord() {
  const std::size_t start = pos_;
  const int line = line_, column = column_;
  while (isIdentChar(peek())) advance();
  std::string_view word = src_.substr(start, pos_ - start);
  // After a dot a keyword is a field name: s.end is legal.
  const bool afterDot = !out_.empty() && out_.back().kind == TokenKind::Dot;
  if (!afterDot) {
    for (const Keyword& k : kKeywords) {
      if (k.word == word) {
        push(k.kind, start, line, column, std::string(word));
        return;
      }
    }
  }
  const bool statementStart = atStatementStart();
  push(TokenKind::Identifier, start, line, column, std::string(word));
  if (statementStart && commandFollows()) lexCommandWords();
}

bool Lexer::atStatementStart() const noexcept {
  if (commands_ == CommandSyntax::Ignored || !groups_.empty()) return false;
  if (out_.empty()) return true;
  switch (out_.back().kind) {
    case TokenKind::Newline:
    case TokenKind::Semicolon:
    case TokenKind::Comma:
    case TokenKind::KwElse:
    case TokenKind::KwTry:
      return true;
    default:
      return false;
  }
}

// After a name at the start of a statement: is the rest command words? It
// is when a blank follows and then neither the end of the statement, '(',
// '=' (an assignment) nor a binary operator that has a blank after it:
// "hold on" and "a -1" are commands, "a - 1", "a == b" and "f (x)" are not.
// Whether a command stays one is decided when it runs (a variable's name is
// never a command).
bool Lexer::commandFollows() const noexcept {
  std::size_t p = pos_;
  while (p < src_.size() && (src_[p] == ' ' || src_[p] == '\t')) ++p;
  if (p == pos_) return false;
  auto at = [&](std::size_t i) { return i < src_.size() ? src_[i] : '\0'; };
  const char c = at(p), n = at(p + 1);
  std::size_t opLength = 0;
  switch (c) {
    case '\0': case '\n': case '\r': case ';': case ',': case '%': case '(':
      return false;
    case '=':
      if (n != '=') return false;  // an assignment
      opLength = 2;
      break;
    case '.':
      if (n != '*' && n != '/' && n != '\\' && n != '^' && n != '\'') return true;  // "cd .." or ".5"
      opLength = 2;
      break;
    case '~': case '!':
      if (n != '=') return true;  // "a ~b": a word, not a comparison
      opLength = 2;
      break;
    case '<': case '>':
      opLength = n == '=' ? 2 : 1;
      break;
    case '&': case '|':
      opLength = n == c ? 2 : 1;
      break;
    case '+': case '-': case '*': case '/': case '\\': case '^': case ':':
      opLength = 1;
      break;
    default:
      return true;
  }
  const char after = at(p + opLength);
  return !(after == ' ' || after == '\t' || after == '\n' || after == '\r' || after == '\0');
}

// The words of a command up to the end of the statement: a line break, or
// ';', ',' or '%' outside quotes.
void Lexer::lexCommandWords() {
  for (;;) {
    while (peek() == ' ' || peek() == '\t' || peek() == '\r') advance();
    const char c = peek();
    if (c == '\0' || c == '\n' || c == ';' || c == ',' || c == '%') return;
    const std::size_t start = pos_;
    const int line = line_, column = column_;
    std::string word;
    bool quoted = false;
    for (;;) {
      const char d = peek();
      if (quoted) {
        if (pos_ >= src_.size() || d == '\n') throw Error("VANTEL:sgsh:UnterminatedText", line, column);
        advance();
        if (d == '\'') {
          if (peek() != '\'') {
            quoted = false;
            continue;
          }
          advance();  // a doubled quote stands for one
        }
        word.push_back(d);
        continue;
      }
      if (d == '\0' || d == '\n' || d == ' ' || d == '\t' || d == '\r' || d == ';' || d == ',' || d == '%') break;
      advance();
      if (d == '\'') quoted = true;
      else word.push_back(d);
    }
    push(TokenKind::CommandWord, start, line, column, std::move(word));
  }
}

void Lexer::lexOperator() {
  const std::size_t start = pos_;
  const int line = line_, column = column_;
  const char c = peek(), n = peek(1);
  auto two = [&](TokenKind kind) {
    advance(2);
    push(kind, start, line, column);
  };
  auto one = [&](TokenKind kind) {
    advance();
    push(kind, start, line, column);
  };
  switch (c) {
    case '.':
      if (n == '*') return two(TokenKind::DotStar);
      if (n == '/') return two(TokenKind::DotSlash);
      if (n == '\\') return two(TokenKind::DotBackslash);
      if (n == '^') return two(TokenKind::DotCaret);
      if (n == '\'') return two(TokenKind::DotQuote);
      return one(TokenKind::Dot);
    case '=': return n == '=' ? two(TokenKind::EqEq) : one(TokenKind::Assign);
    case '~':
    case '!': return n == '=' ? two(TokenKind::NotEq) : one(TokenKind::Tilde);
    case '<': return n == '=' ? two(TokenKind::LessEq) : one(TokenKind::Less);
    case '>': return n == '=' ? two(TokenKind::GreaterEq) : one(TokenKind::Greater);
    case '&': return n == '&' ? two(TokenKind::AmpAmp) : one(TokenKind::Amp);
    case '|': return n == '|' ? two(TokenKind::BarBar) : one(TokenKind::Bar);
    case '+': return one(TokenKind::Plus);
    case '-': return one(TokenKind::Minus);
    case '*': return one(TokenKind::Star);
    case '/': return one(TokenKind::Slash);
    case '\\': return one(TokenKind::Backslash);
    case '^': return one(TokenKind::Caret);
    case ':': return one(TokenKind::Colon);
    case ',': return one(TokenKind::Comma);
    case ';': return one(TokenKind::Semicolon);
    case '@': return one(TokenKind::At);
    case '(': {
      const bool lambda = !out_.empty() && out_.back().kind == TokenKind::At;
      groups_.push_back(lambda ? Group::LambdaParams : Group::Paren);
      return one(TokenKind::LParen);
    }
    case '[':
      groups_.push_back(Group::Bracket);
      return one(TokenKind::LBracket);
    case '{':
      groups_.push_back(Group::Brace);
      return one(TokenKind::LBrace);
    case ')':
    case ']':
    case '}': {
      const bool closesLambda = !groups_.empty() && groups_.back() == Group::LambdaParams;
      if (!groups_.empty()) groups_.pop_back();
      one(c == ')' ? TokenKind::RParen : c == ']' ? TokenKind::RBracket : TokenKind::RBrace);
      lambdaParamsClosed_ = closesLambda;
      return;
    }
    default:
      throw Error("VANTEL:sgsh:BadCharacter", std::string(1, c), line, column);
  }
}

std::vector<Token> Lexer::tokenize() {
  while (pos_ < src_.size()) {
    const char c = peek();
    if (c == ' ' || c == '\t' || c == '\r') {
      advance();
      blankBefore_ = true;
      continue;
    }
    if (c == '.' && peek(1) == '.' && peek(2) == '.') {
      // Continuation: the rest of the line is a comment and the line goes on.
      while (pos_ < src_.size() && peek() != '\n') advance();
      advance();
      blankBefore_ = true;
      continue;
    }
    if (c == '%') {
      if (atLineStartBlockComment('{')) {
        skipBlockComment();
      } else {
        while (pos_ < src_.size() && peek() != '\n') advance();
      }
      continue;
    }
    if (c == '\n') {
      const int line = line_, column = column_;
      const std::size_t start = pos_;
      advance();
      if (groups_.empty()) {
        push(TokenKind::Newline, start, line, column);
      } else if (inMatrix()) {
        push(TokenKind::Semicolon, start, line, column);  // a line break ends a row
      } else {
        blankBefore_ = true;  // inside ( ) a line break is a blank
      }
      continue;
    }
    // Inside brackets a blank between two values separates elements.
    if (inMatrix() && blankBefore_ && !lambdaParamsClosed_ && lastEndsValue() && startsElement()) {
      push(TokenKind::Comma, pos_, line_, column_);
    }
    if (c == '\'') {
      const bool transpose = lastEndsValue() && !(blankBefore_ && inMatrix());
      if (transpose) {
        const int line = line_, column = column_;
        const std::size_t start = pos_;
        advance();
        push(TokenKind::Quote, start, line, column);
      } else {
        lexQuoted('\'');
      }
      continue;
    }
    if (c == '"') {
      lexQuoted('"');
      continue;
    }
    if (isDigit(c) || (c == '.' && isDigit(peek(1)))) {
      lexNumber();
      continue;
    }
    if (isIdentStart(c)) {
      lexWord();
      continue;
    }
    lexOperator();
  }
  push(TokenKind::End, pos_, line_, column_);
  return std::move(out_);
}

}  // namespace sgsh
