// The hand-written half of ThemeChangedData: taking the two themes.
#include "sgutils/objects/ThemeChangedData.gen.h"

namespace graphics::eventdata {

void ThemeChangedData::assign(const ThemeChangedDataImpl& change) {
  theme_ = change.theme;
  previousTheme_ = change.previousTheme;
}

}  // namespace graphics::eventdata
