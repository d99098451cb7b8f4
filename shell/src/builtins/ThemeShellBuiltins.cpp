// theme: reads or sets the theme of figures through their Theme property.
#include "builtins/ThemeShellBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "eval/ObjectBridge.h"

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

}  // namespace

void registerThemeShellBuiltins() {
  BuiltinRegistry::instance().add<bTheme>(
      "theme", "t = theme(f)\ntheme(f, t)",
      "Reads the theme of a figure, or sets it: a theme object, 'light' or 'dark', or empty for none. "
      "Themed colours whose mode is auto follow the theme; values set by hand stay.");
}

}  // namespace sgsh::builtins
