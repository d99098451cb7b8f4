// The data of the event "ThemeChanged" of a theme container: the new theme
// and the previous one. fireThemeChangedEvent sends it; listeners in C++
// read the pair from here, language callbacks a ThemeChangedData object.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/themes/ThemeChangedDataImpl.h"
#include "vcos/COSEventData.h"

namespace graphics::eventdata {

class SGUTILS_API ThemeChangedEventData : public COSEventData {
 public:
  ThemeChangedEventData(COSInterface* source, ThemeChangedDataImpl change);
  ~ThemeChangedEventData() override;
  const ThemeChangedDataImpl& change() const noexcept { return change_; }

 private:
  ThemeChangedDataImpl change_;
};

// Sends "ThemeChanged" from `object` with the two themes, as the public
// client. A null object, or one deleted or being deleted, gets nothing.
SGUTILS_API void fireThemeChangedEvent(const COSInterfacePtr& object, const ThemeChangedDataImpl& change);

}  // namespace graphics::eventdata
