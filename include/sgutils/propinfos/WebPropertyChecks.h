// The two process-wide checks that stand in front of property access for
// the web side: one for gets and one for sets. A check raises when the web
// graphics cannot support the property and returns otherwise. Both start as
// a function that does nothing; the properties skip the call (and the name
// string it needs) while the default is in place.
#pragma once

#include <functional>
#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

using WebPropertyCheck = std::function<void(COSInterfacePtr, std::string, COSValue)>;

namespace BoardUpUnimplementedWebFunctionality {
// The default check: every property is supported.
struct CheckWebPropertySupportDefault {
  void operator()(const COSInterfacePtr&, const std::string&, COSValue) const noexcept {}
};
inline constexpr CheckWebPropertySupportDefault checkWebPropertySupportDefault{};
}  // namespace BoardUpUnimplementedWebFunctionality

SGUTILS_API WebPropertyCheck getCheckWebPropertyGetSupportFunctor();
SGUTILS_API WebPropertyCheck getCheckWebPropertySetSupportFunctor();
// The first argument guards sets, the second gets.
SGUTILS_API void registerCheckWebPropertySupportFunctor(WebPropertyCheck setCheck, WebPropertyCheck getCheck);
SGUTILS_API void clearCheckWebPropertySupportFunctor();

namespace detail {
struct WebChecks {
  WebPropertyCheck get;
  WebPropertyCheck set;
};
SGUTILS_API WebChecks& webChecks() noexcept;
// True while a check other than the default is in place: plain flags, so
// that a property get or set tests one byte before anything else.
SGUTILS_API extern bool webGetCheckActive;
SGUTILS_API extern bool webSetCheckActive;
SGUTILS_API void runWebCheck(const WebPropertyCheck& check, COSInterface* instance, const char* name, COSValue value);
}  // namespace detail

// Runs the set check for `name`; a no-op while the default is in place.
inline void checkWebPropertySet(COSInterface* instance, const char* name, COSValue value) {
  if (detail::webSetCheckActive) detail::runWebCheck(detail::webChecks().set, instance, name, value);
}
inline void checkWebPropertyGet(COSInterface* instance, const char* name) {
  if (detail::webGetCheckActive) detail::runWebCheck(detail::webChecks().get, instance, name, COSValue());
}

}  // namespace sgutils
