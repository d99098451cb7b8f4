// Comparison and streaming of update tokens.
#include "sgutils/view/CompletionToken.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <ostream>

namespace sgutils {

bool operator==(const CompletionToken& a, const CompletionToken& b) noexcept {
  const std::string& x = a.identifier_;
  const std::string& y = b.identifier_;
  return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size()) == 0;
}

bool operator<(const CompletionToken& a, const CompletionToken& b) noexcept {
  const std::string& x = a.identifier_;
  const std::string& y = b.identifier_;
  // memcmp compares as unsigned char, whatever the signedness of char.
  const int order = std::memcmp(x.data(), y.data(), std::min(x.size(), y.size()));
  return order != 0 ? order < 0 : x.size() < y.size();
}

std::ostream& operator<<(std::ostream& out, const CompletionToken& token) {
  return out << token.convertToString();
}

std::istream& operator>>(std::istream& in, CompletionToken& token) {
  std::string identifier;
  if (in >> identifier) token = CompletionToken(std::move(identifier));
  return in;
}

}  // namespace sgutils
