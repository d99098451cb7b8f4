// The themed value of single objects: the theme an object takes from its
// figure, and one property set back to its themed value.
#include "builtins/ThemeValueBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "sgclasses/Theming.h"
#include "sgutils/objects/Themeable.gen.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"

namespace sgsh::builtins {
namespace {

// The live graphics object of a 1-by-1 object array, else the error.
COSInterfacePtr graphicsObject(const vxArray* value) {
  static const COSID graphics("vantel.graphics.Graphics");
  COSInterfacePtr object =
      value && omIsVCOS(value) && vxGetNumberOfElements(value) == 1 ? omGetLiveArrayElement(value, 0) : nullptr;
  if (!object || object->isBeingDestroyed() || !object->getClass()->isSubclassOf(graphics))
    throw Error("VANTEL:graphics:themes:InvalidGraphicsInput");
  return object;
}

// t = getThemeFromParentBuiltin(h): the Theme of the nearest figure at or
// above h (an empty placeholder when it has none); [] without a figure.
void bGetThemeFromParent(Interpreter&, int, Out& out, Args in) {
  checkArgs("getThemeFromParentBuiltin", in, 1, 1);
  COSInterfacePtr container = sgclasses::themeContainerOf(graphicsObject(in[0].get()).get());
  if (!container || container->isBeingDestroyed()) {
    out.push_back(Value(vxCreateDoubleMatrix(0, 0, vxREAL)));
    return;
  }
  matrix::unique_vxArray figure(omCreateVCOSScalar(container));
  out.push_back(Value(vxGetProperty(figure.get(), 0, "Theme")));
}

// refreshThemedValue(h, name): the property takes the value its theme
// attribute has in h's theme; a manual property keeps its value.
void bRefreshThemedValue(Interpreter&, int, Out&, Args in) {
  checkArgs("refreshThemedValue", in, 2, 2);
  COSInterfacePtr object = graphicsObject(in[0].get());
  if (!graphics::mixin::Themeable::fromObject(object.get())) throw Error("VANTEL:graphics:themes:InvalidGraphicsInput");
  const std::string name = textArg("refreshThemedValue", in[1]);
  COSClass* cls = object->getClass();
  const COSPropInfo* property = cls->findPropertyExact(COSID(name.c_str()));
  if (!property || property->getMemberSetAccess() != PublicAccess)
    throw Error("VANTEL:graphics:themes:InvalidClassProperty", std::string(cls->getName()));
  sgutils::themes::setPropertyToThemedValue(object, name, false);
}

}  // namespace

void registerThemeValueBuiltins() {
  BuiltinRegistry::instance().add<bGetThemeFromParent>(
      "getThemeFromParentBuiltin", "t = getThemeFromParentBuiltin(h)",
      "The theme of the figure that holds a graphics object (an empty placeholder when the figure has no theme); "
      "an empty double when no figure is above it.");
  BuiltinRegistry::instance().add<bRefreshThemedValue>(
      "refreshThemedValue", "refreshThemedValue(h, name)",
      "Sets one property of a graphics object to its value in the theme of its figure. "
      "A property whose mode is manual keeps its value.");
}

}  // namespace sgsh::builtins
