// Message identifiers and argument texts.
#include "foundation/i18n/Message.h"

#include <cmath>
#include <cstdio>

#include "foundation/i18n/MessageCatalog.h"

namespace i18n {

std::string_view Message::catalog() const noexcept {
  auto pos = id_.rfind(':');
  return pos == std::string::npos ? std::string_view() : std::string_view(id_).substr(0, pos);
}

std::string_view Message::key() const noexcept {
  auto pos = id_.rfind(':');
  return pos == std::string::npos ? std::string_view(id_) : std::string_view(id_).substr(pos + 1);
}

std::string Message::text() const { return MessageCatalog::get_message(id_, args_); }

std::string Message::argumentText(double v) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v > 0 ? "Inf" : "-Inf";
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.15g", v);
  return buf;
}

}  // namespace i18n
