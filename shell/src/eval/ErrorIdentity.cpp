// The identifiers under which exceptions reach scripts and the top level.
#include <cctype>
#include <new>
#include <stdexcept>

#include <foundation/core/except/IMsgIDException.h>
#include <foundation/i18n/Message.h>

#include "sgsh/ScriptError.h"

namespace sgsh {

namespace {

ErrorIdentity fromCatalog(const char* id, std::string detail = {}) {
  i18n::Message m = detail.empty() ? i18n::Message(id) : i18n::Message(id, std::move(detail));
  return {id, m.text()};
}

}  // namespace

ErrorIdentity identify(const std::exception& e) {
  if (const auto* m = dynamic_cast<const foundation::core::except::IMsgIDException*>(&e))
    return {m->identifier(), e.what()};
  if (dynamic_cast<const std::bad_alloc*>(&e)) return fromCatalog("VANTEL:vcos:OutOfMemory");
  if (dynamic_cast<const std::length_error*>(&e)) return fromCatalog("VANTEL:sgsh:LengthError", e.what());
  if (dynamic_cast<const std::out_of_range*>(&e)) return fromCatalog("VANTEL:sgsh:RangeError", e.what());
  return fromCatalog("VANTEL:sgsh:InternalError", e.what());
}

bool isWellFormedIdentifier(std::string_view id) noexcept {
  std::size_t components = 0;
  std::size_t i = 0;
  while (i <= id.size()) {
    const std::size_t end = std::min(id.find(':', i), id.size());
    if (end == i || !std::isalpha(static_cast<unsigned char>(id[i]))) return false;
    for (std::size_t k = i + 1; k < end; ++k) {
      const unsigned char c = static_cast<unsigned char>(id[k]);
      if (!std::isalnum(c) && c != '_' && c != '-') return false;
    }
    ++components;
    i = end + 1;
  }
  return components >= 2;
}

}  // namespace sgsh
