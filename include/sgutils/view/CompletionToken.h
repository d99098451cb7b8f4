// The name of one view update, so that its completion can be recognised when
// the view reports back. Tokens compare and stream by their identifier alone;
// the time stamps travel with a token but never decide anything about it.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <utility>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

// The moments of one update in milliseconds of timestamp(), zero while not
// reached. The view layer fills them as the update goes.
struct CompletionTokenTimeStamps {
  std::int64_t requested = 0;  // the update was asked for
  std::int64_t sent = 0;       // the data left for the view
  std::int64_t received = 0;   // the view had the data
  std::int64_t completed = 0;  // the view reported the update done
};

class SGUTILS_API CompletionToken {
 public:
  CompletionToken() = default;
  explicit CompletionToken(std::string identifier) : identifier_(std::move(identifier)) {}

  const std::string& convertToString() const noexcept { return identifier_; }
  // The empty identifier is the default token, the least of all.
  bool isDefaultToken() const noexcept { return identifier_.empty(); }

  CompletionTokenTimeStamps& getTimeStamps() noexcept { return timeStamps_; }
  const CompletionTokenTimeStamps& getTimeStamps() const noexcept { return timeStamps_; }

  // By identifier: equal length and bytes.
  friend SGUTILS_API bool operator==(const CompletionToken& a, const CompletionToken& b) noexcept;
  // By identifier as unsigned bytes; on a common prefix the shorter is less.
  friend SGUTILS_API bool operator<(const CompletionToken& a, const CompletionToken& b) noexcept;

 private:
  std::string identifier_;
  CompletionTokenTimeStamps timeStamps_;
};

// Writes the identifier as text, nothing more.
SGUTILS_API std::ostream& operator<<(std::ostream& out, const CompletionToken& token);
// Reads one whitespace-delimited string and takes the token made from it;
// the token is left alone when the read fails.
SGUTILS_API std::istream& operator>>(std::istream& in, CompletionToken& token);

}  // namespace sgutils
