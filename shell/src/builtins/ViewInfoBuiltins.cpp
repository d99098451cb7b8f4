// viewinfo: the update information drawnow hands a view with an object.
#include "builtins/ViewInfoBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "sgclasses/ViewInfo.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

Value rowOf(std::initializer_list<double> values) {
  vxArray* a = vxCreateDoubleMatrix(1, values.size(), vxREAL);
  double* p = vxGetPr(a);
  for (double v : values) *p++ = v;
  return Value(a);
}

// s = viewinfo(h): ScreenResolution, RefFrame [x y width height] in pixels,
// Color, Visible and DrawnowSyncable, as the next drawnow tells a view.
void bViewinfo(Interpreter&, int, Out& out, Args in) {
  checkArgs("viewinfo", in, 1, 1);
  static const COSID graphics("vantel.graphics.Graphics");
  const vxArray* arg = in[0].get();
  COSInterfacePtr object;
  if (vxIsObject(arg) && vxGetNumberOfElements(arg) == 1) object = omGetArrayElement(arg, 0);
  if (object && (object->isDestroyed() || object->isBeingDestroyed())) throw Error("VANTEL:sg:DeletedObject");
  if (!object || !object->getClass()->isSubclassOf(graphics)) throw Error("VANTEL:sgsh:NotGraphicsObject", "viewinfo");

  const sgutils::UpdateViewInfo info = sgclasses::updateViewInfoFor(object.get());
  const gui_objects::Rectangle2d frame = info.getRefFrame();
  const graphics::datatype::RGBAColor& color = info.getColor();
  const char* names[] = {"ScreenResolution", "RefFrame", "Color", "Visible", "DrawnowSyncable"};
  Value s(vxCreateStructMatrix(1, 1, 5, names));
  vxSetFieldByNumber(s.mut(), 0, 0, Value(vxCreateDoubleScalar(info.getScreenResolution())).release());
  vxSetFieldByNumber(s.mut(), 0, 1, rowOf({frame.x, frame.y, frame.width, frame.height}).release());
  vxSetFieldByNumber(s.mut(), 0, 2, rowOf({color.red(), color.green(), color.blue()}).release());
  vxSetFieldByNumber(s.mut(), 0, 3, Value(vxCreateLogicalScalar(info.getIsInVisibleHierarchy())).release());
  vxSetFieldByNumber(s.mut(), 0, 4, Value(vxCreateLogicalScalar(info.isInDrawnowSyncableHierarchy())).release());
  out.push_back(std::move(s));
}

}  // namespace

void registerViewInfoBuiltins() {
  BuiltinRegistry::instance().add<bViewinfo>(
      "viewinfo", "s = viewinfo(h)",
      "What drawnow tells a view of h's surroundings: ScreenResolution (pixels per inch), RefFrame (the "
      "[x y width height] in pixels h is placed in: a figure's Position, a figure's extent, or an axes' box), "
      "Color (the background h lies on), Visible (h and all its ancestors are visible) and DrawnowSyncable "
      "(h is in a figure of the root).");
}

}  // namespace sgsh::builtins
