// The tokens of the command language: one closed list of kinds, written once,
// and the token record the lexer hands to the parser.
#pragma once

#include <cstdint>
#include <string>

namespace sgsh {

// Every token kind, with its spelling for error messages.
#define SGSH_TOKEN_KINDS(X)                                                   \
  X(End, "end of input")                                                      \
  X(Newline, "end of line")                                                   \
  X(Comma, ",")                                                               \
  X(Semicolon, ";")                                                           \
  X(Number, "number")                                                         \
  X(Char, "char literal")                                                     \
  X(String, "string literal")                                                 \
  X(Identifier, "name")                                                       \
  X(CommandWord, "command argument")                                          \
  X(KwIf, "if")                                                               \
  X(KwElseif, "elseif")                                                       \
  X(KwElse, "else")                                                           \
  X(KwEnd, "end")                                                             \
  X(KwFor, "for")                                                             \
  X(KwWhile, "while")                                                         \
  X(KwBreak, "break")                                                         \
  X(KwContinue, "continue")                                                   \
  X(KwReturn, "return")                                                       \
  X(KwTry, "try")                                                             \
  X(KwCatch, "catch")                                                         \
  X(KwFunction, "function")                                                   \
  X(Plus, "+")                                                                \
  X(Minus, "-")                                                               \
  X(Star, "*")                                                                \
  X(Slash, "/")                                                               \
  X(Backslash, "\\")                                                          \
  X(Caret, "^")                                                               \
  X(DotStar, ".*")                                                            \
  X(DotSlash, "./")                                                           \
  X(DotBackslash, ".\\")                                                      \
  X(DotCaret, ".^")                                                           \
  X(Quote, "'")                                                               \
  X(DotQuote, ".'")                                                           \
  X(EqEq, "==")                                                               \
  X(NotEq, "~=")                                                              \
  X(Less, "<")                                                                \
  X(LessEq, "<=")                                                             \
  X(Greater, ">")                                                             \
  X(GreaterEq, ">=")                                                          \
  X(Amp, "&")                                                                 \
  X(Bar, "|")                                                                 \
  X(AmpAmp, "&&")                                                             \
  X(BarBar, "||")                                                             \
  X(Tilde, "~")                                                               \
  X(Assign, "=")                                                              \
  X(Colon, ":")                                                               \
  X(LParen, "(")                                                              \
  X(RParen, ")")                                                              \
  X(LBracket, "[")                                                            \
  X(RBracket, "]")                                                            \
  X(LBrace, "{")                                                              \
  X(RBrace, "}")                                                              \
  X(Dot, ".")                                                                 \
  X(At, "@")

enum class TokenKind : std::uint8_t {
#define SGSH_X(name, text) name,
  SGSH_TOKEN_KINDS(SGSH_X)
#undef SGSH_X
};

// The spelling of a kind, for messages ("')'", "end of line").
const char* tokenKindText(TokenKind kind) noexcept;

struct Token {
  TokenKind kind = TokenKind::End;
  std::string text;      // identifier name, literal contents (escapes resolved)
  double number = 0;     // value of a Number
  bool imaginary = false;  // a Number written with an i or j suffix
  int line = 1;
  int column = 1;
  std::size_t offset = 0;  // byte offset of the token in the source
  std::size_t length = 0;  // bytes it covers in the source
};

}  // namespace sgsh
