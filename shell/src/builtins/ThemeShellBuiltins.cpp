// theme: reads or sets the theme of figures through their Theme property.
#include "builtins/ThemeShellBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "eval/ObjectBridge.h"
#include "foundation/settings/Settings.h"
#include "sgclasses/Theming.h"
#include "sgutils/objects/ThemeContainer.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

// theme(f) gives f.Theme; theme(f, t) sets it to a theme object or to
// 'light' or 'dark' (any case), or takes it away with an empty value.
void bTheme(Interpreter&, int, Out& out, Args in) {
  checkArgs("theme", in, 1, 2);
  Value figures = in[0];
  if (!vxIsObject(figures.get()) || !ObjectBridge::current().hasProperty(figures.get(), "Theme"))
    throw Error("VANTEL:graphics:themes:InvalidThemeContainer");
  if (in.size() == 1) {
    out.push_back(ObjectBridge::current().getProperty(figures.get(), "Theme"));
    return;
  }
  ObjectBridge::current().setProperty(figures.mut(), "Theme", in[1].get());
}

// The setting an appearance name stands for.
foundation::settings::SettingsGroup appearanceGroup(const std::string& name) {
  if (name == "CurrentTheme") return getSettingsRoot().group("vantel.appearance");
  if (name == "GraphicsTheme") return getSettingsRoot().group("vantel.appearance.figure");
  throw Error("VANTEL:sgsh:BadAppearanceSetting", name);
}

// appearance(name) reads, appearance(name, value) writes "CurrentTheme" (the
// desktop's theme) or "GraphicsTheme" (the figures' own); after a write every
// figure in automatic ThemeMode answers the settings.
void bAppearance(Interpreter&, int, Out& out, Args in) {
  checkArgs("appearance", in, 1, 2);
  const std::string name = textArg("appearance", in[0]);
  const foundation::settings::SettingsGroup group = appearanceGroup(name);
  if (in.size() == 1) {
    out.push_back(Value(vxCreateString(group.get(name, "").c_str())));
    return;
  }
  group.set(name, textArg("appearance", in[1]));
  sgclasses::figuresRespondToThemePreferences();
}

// figureUseDesktopTheme(f) or figureUseDesktopTheme(f, flag): the figure
// follows the desktop's theme alone (true, the default) or stops doing so.
void bFigureUseDesktopTheme(Interpreter&, int, Out&, Args in) {
  checkArgs("figureUseDesktopTheme", in, 1, 2);
  const vxArray* figures = in[0].get();
  COSInterfacePtr figure =
      omIsVCOS(figures) && vxGetNumberOfElements(figures) == 1 ? omGetLiveArrayElement(figures, 0) : nullptr;
  graphics::mixin::ThemeContainer* block = graphics::mixin::ThemeContainer::fromObject(figure.get());
  if (!block || figure->isBeingDestroyed()) throw Error("VANTEL:graphics:themes:InvalidThemeContainer");
  bool flag = true;
  if (in.size() == 2) {
    const vxArray* value = in[1].get();
    if (!vxIsLogical(value) || vxGetNumberOfElements(value) != 1)
      throw Error("VANTEL:graphics:themes:InvalidThemeContainer");
    flag = vxIsLogicalScalarTrue(value);
  }
  block->alwaysUseDesktopTheme(flag);
}

}  // namespace

void registerThemeShellBuiltins() {
  BuiltinRegistry::instance().add<bFigureUseDesktopTheme>(
      "figureUseDesktopTheme", "figureUseDesktopTheme(f)\nfigureUseDesktopTheme(f, flag)",
      "Makes a figure follow the desktop's theme setting alone (flag true, the default), or stops it.");

  BuiltinRegistry::instance().add<bTheme>(
      "theme", "t = theme(f)\ntheme(f, t)",
      "Reads the theme of a figure, or sets it: a theme object, 'light' or 'dark', or empty for none. "
      "Themed colours whose mode is auto follow the theme; values set by hand stay.");
  BuiltinRegistry::instance().add<bAppearance>(
      "appearance", "v = appearance(name)\nappearance(name, value)",
      "Reads or writes the appearance setting 'CurrentTheme' or 'GraphicsTheme' ('light', 'dark' or 'auto'); "
      "figures in automatic ThemeMode follow a change when automatic figure themes are on.");
}

}  // namespace sgsh::builtins
