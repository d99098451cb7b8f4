// The two themes of a change of a container's theme, as the native side
// hands them on: the new one and the one before it; null stands for none.
#pragma once

#include <utility>

#include "vcos/COSInterfacePtr.h"

namespace graphics::eventdata {

struct ThemeChangedDataImpl {
  ThemeChangedDataImpl(COSInterfacePtr newTheme, COSInterfacePtr oldTheme)
      : theme(std::move(newTheme)), previousTheme(std::move(oldTheme)) {}
  COSInterfacePtr theme;
  COSInterfacePtr previousTheme;
};

}  // namespace graphics::eventdata
