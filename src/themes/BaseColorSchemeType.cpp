// The data type of the base colour style of themes.
#include "sgutils/themes/BaseColorSchemeType.h"

#include "sgdatatypes/Enumeration.h"
#include "sgdatatypes/Registration.h"

namespace sgutils {
namespace {

constexpr const char* kNames[] = {"light", "dark", "white"};
// White is valid but not listed.
constexpr graphics::datatype::EnumerationDescription kDescription{"BaseColorSchemeType", kNames, 3, 2};

}  // namespace

const graphics::datatype::EnumerationDescription& BaseColorSchemeType::description() noexcept { return kDescription; }

void registerBaseColorSchemeType() {
  graphics::datatype::register_enumeration(BaseColorSchemeType::kTypeName, kDescription);
}

}  // namespace sgutils
