// Turns source text into tokens. The language's context rules live here: a
// quote after a value is a transpose, elsewhere it opens a char literal;
// inside [ ] and { } a blank between two values separates elements and a
// line break separates rows; "..." continues a line; % starts a comment and
// a line holding only %{ ... %} brackets a block comment. A name that
// starts a statement and is followed by a blank and then a word, rather than
// a binary operator with blanks around it, an assignment or a parenthesis,
// begins command syntax: the rest of the statement becomes CommandWord
// tokens, split at blanks, with '...' quoting ('' stands for one quote).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sgsh/Token.h"

namespace sgsh {

class Lexer {
 public:
  enum class CommandSyntax : bool { Ignored, Recognised };

  explicit Lexer(std::string_view source, int firstLine = 1, CommandSyntax commands = CommandSyntax::Recognised)
      : src_(source), line_(firstLine), commands_(commands) {}

  // All tokens up to and including TokenKind::End. Raises
  // VANTEL:sgsh:UnterminatedText or VANTEL:sgsh:BadCharacter.
  std::vector<Token> tokenize();

 private:
  enum class Group : char { Paren, LambdaParams, Bracket, Brace };

  char peek(std::size_t ahead = 0) const noexcept;
  void advance(std::size_t n = 1) noexcept;
  bool lastEndsValue() const noexcept;
  bool inMatrix() const noexcept {
    return !groups_.empty() && (groups_.back() == Group::Bracket || groups_.back() == Group::Brace);
  }
  bool startsElement() const noexcept;
  bool atLineStartBlockComment(char second) const noexcept;
  void skipBlockComment();
  void push(TokenKind kind, std::size_t start, int line, int column, std::string text = {});
  void lexNumber();
  void lexQuoted(char quote);
  void lexWord();
  void lexOperator();
  bool atStatementStart() const noexcept;
  bool commandFollows() const noexcept;
  void lexCommandWords();

  std::string_view src_;
  std::size_t pos_ = 0;
  int line_;
  int column_ = 1;
  std::vector<Token> out_;
  std::vector<Group> groups_;
  bool blankBefore_ = false;  // whitespace between the last token and here
  bool lambdaParamsClosed_ = false;  // the last token closed @( ... ): a body follows, not an element
  CommandSyntax commands_;
};

}  // namespace sgsh
