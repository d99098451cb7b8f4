// The figure's theme in a file. A theme chosen for the figure (ThemeMode
// manual) is kept as its base colour style, "light" or "dark", and set again
// on load through the public Theme, which makes ThemeMode manual; a figure
// that follows the settings (ThemeMode auto) keeps nothing and follows them
// after load too. A theme's own values (a saved theme object) take this
// place once themes can be saved whole.
#include "sgclasses/FigureFile.h"

#include "sgclasses/ClassNames.h"
#include "sgutils/persistence/SavedFieldsExtension.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {

constexpr char kThemeField[] = "Theme";

void saveTheme(const COSInterfacePtr& figure, std::vector<vxNamedValue>& fields) {
  matrix::unique_vxArray self(omCreateVCOSScalar(figure));
  matrix::unique_vxArray mode(vxGetProperty(self.get(), 0, "ThemeMode"));
  if (!mode || vxArrayToStdString(mode.get()) != "manual") return;
  matrix::unique_vxArray theme(vxGetProperty(self.get(), 0, "Theme"));
  if (!theme || !omIsVCOS(theme.get()) || vxGetNumberOfElements(theme.get()) != 1) return;
  matrix::unique_vxArray style(vxGetProperty(theme.get(), 0, "BaseColorStyle"));
  if (style) fields.push_back({kThemeField, std::move(style)});
}

bool loadTheme(const COSInterfacePtr& figure, const vxNamedValue& field) {
  if (field.name != kThemeField) return false;
  const std::string style = vxIsChar(field.value.get()) ? vxArrayToStdString(field.value.get()) : std::string();
  // A style this build does not know leaves the figure's theme to the settings.
  if (style != "light" && style != "dark") return true;
  matrix::unique_vxArray self(omCreateVCOSScalar(figure));
  vxSetProperty(self.get(), 0, "Theme", field.value.get());
  return true;
}

}  // namespace

void registerFigureSavedFields() { sgutils::SavedFieldsExtension::add(kFigureClass, &saveTheme, &loadTheme); }

}  // namespace sgclasses
