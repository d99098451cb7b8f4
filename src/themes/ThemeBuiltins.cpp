// The built-in functions of theme objects.
#include "sgutils/themes/ThemeBuiltins.h"

#include <string>

#include "foundation/core/except/Error.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "src/builtins/TextArgument.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

using foundation::core::except::Error;
using graphics::theme::GraphicsTheme;

namespace {

// The theme of a non-empty scalar object array, or the error.
GraphicsTheme& themeArgument(const vxArray* value) {
  if (value && omIsVCOS(value) && vxGetNumberOfElements(value) == 1)
    if (GraphicsTheme* theme = GraphicsTheme::fromObject(omGetLiveArrayElement(value, 0))) return *theme;
  throw Error("VANTEL:graphics:themes:InvalidThemeObject");
}

void checkCounts(int nlhs, int nrhs, int inputs) {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs > inputs) matrix::detail::error_maxrhs();
  if (nrhs < inputs) matrix::detail::error_minrhs();
}

// A new theme with the same values, modes and override: the input is never
// changed.
vxArray* copyOfTheme(const GraphicsTheme& source) {
  matrix::unique_vxArray copy(omConstructObjectWithClient(GraphicsTheme::classID(), 0, nullptr, COSGetPublicClient()));
  GraphicsTheme* theme = GraphicsTheme::fromObject(omGetArrayElement(copy.get(), 0));
  if (theme) theme->copyStateFrom(source);
  return copy.release();
}

}  // namespace

extern "C" void lightThemeBuiltin(int nlhs, vxArray* plhs[], int nrhs, const vxArray*[]) {
  checkCounts(nlhs, nrhs, 0);
  plhs[0] = GraphicsTheme::builtinThemeFactory(false);
}

extern "C" void darkThemeBuiltin(int nlhs, vxArray* plhs[], int nrhs, const vxArray*[]) {
  checkCounts(nlhs, nrhs, 0);
  plhs[0] = GraphicsTheme::builtinThemeFactory(true);
}

extern "C" void getAttributeValue(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  checkCounts(nlhs, nrhs, 2);
  GraphicsTheme& theme = themeArgument(prhs[0]);
  const std::string name = sgutils::builtins::readTextArgument(prhs[1]);
  if (name.empty()) throw Error("VANTEL:graphics:themes:InvalidScalarTextInput", "Attribute name");
  plhs[0] = theme.getThemeAttributeValue(name);
}

extern "C" void singleColorOverride(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  checkCounts(nlhs, nrhs, 2);
  const GraphicsTheme& source = themeArgument(prhs[0]);
  const vxArray* value = prhs[1];
  const bool numeric = value && vxIsNumeric(value);
  if (!numeric) {
    // Only the exact text "remove" clears the override.
    std::string text;
    const bool oneString = value && vxIsString(value) && vxGetNumberOfElements(value) == 1 && vxGetStringElement(value, 0);
    if (value && (vxIsChar(value) || oneString)) text = vxArrayToStdString(value);
    if (text != "remove") throw Error("VANTEL:graphics:themes:InvalidSingleColorOverrideInput");
  } else if (vxGetNumberOfElements(value) != 3) {
    throw Error("VANTEL:graphics:themes:InvalidSingleColorOverrideInput");
  }
  matrix::unique_vxArray copy(copyOfTheme(source));
  GraphicsTheme* theme = GraphicsTheme::fromObject(omGetArrayElement(copy.get(), 0));
  if (!numeric) {
    theme->singleColorThemeOverride(nullptr);
  } else {
    static const COSID any("any"), rgba("vantel.graphics.datatype.RGBAColor");
    COSTypeConversion* c = COSTypeRepository::getConversion(any, rgba);
    if (!c) throw Error("VANTEL:vcos:ConversionFailed", "any", "vantel.graphics.datatype.RGBAColor");
    const COSValue color = c->convert(COSValue(value));
    const std::unique_ptr<const graphics::datatype::RGBAColor> owned(color.asPointer<const graphics::datatype::RGBAColor>());
    theme->singleColorThemeOverride(owned.get());
  }
  plhs[0] = copy.release();
}
