// What a view and the pointer see of the object tree: the view properties of
// an object still to be sent (viewdirty), a hit reported on an object (hit)
// and a hit at a point of an axes (pick).
#include "builtins/ViewBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "sgclasses/Picking.h"
#include "sgclasses/ViewUpdates.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

// One live graphics object given to `fn`.
COSInterfacePtr graphicsArg(const char* fn, const Value& v) {
  static const COSID graphics("vantel.graphics.Graphics");
  if (vxIsObject(v.get()) && vxGetNumberOfElements(v.get()) == 1) {
    COSInterfacePtr object = omGetArrayElement(v.get(), 0);
    if (object && (object->isDestroyed() || object->isBeingDestroyed())) throw Error("VANTEL:sg:DeletedObject");
    if (object && object->getClass()->isSubclassOf(graphics)) return object;
  }
  throw Error("VANTEL:sgsh:NotGraphicsObject", fn);
}

Value objectOrEmpty(const COSInterfacePtr& object) {
  return object ? Value(omCreateVCOSScalar(object)) : Value::emptyDouble();
}

// A point of two or three real numbers.
std::array<double, 3> pointArg(const char* fn, const Value& v) {
  const vxArray* a = v.get();
  const std::size_t n = vxGetNumberOfElements(a);
  if (!vxIsDouble(a) || vxIsComplex(a) || (n != 2 && n != 3)) throw Error("VANTEL:sgsh:BadPoint", fn);
  const double* p = vxGetPr(a);
  return {p[0], p[1], n == 3 ? p[2] : 0.0};
}

// names = viewdirty(h): the view properties of h set since the last drawnow.
void bViewdirty(Interpreter&, int, Out& out, Args in) {
  checkArgs("viewdirty", in, 1, 1);
  const std::vector<std::string> names = sgclasses::pendingViewProperties(graphicsArg("viewdirty", in[0]).get());
  vxArray* row = vxCreateStringArray(1, names.size());
  for (std::size_t i = 0; i < names.size(); ++i)
    vxSetStringElement(row, i, std::u16string(names[i].begin(), names[i].end()));
  out.push_back(Value(row));
}

// target = hit(h), hit(h, point), hit(h, point, button).
void bHit(Interpreter&, int, Out& out, Args in) {
  checkArgs("hit", in, 1, 3);
  COSInterfacePtr object = graphicsArg("hit", in[0]);
  graphics::eventdata::HitImpl hit;
  if (in.size() > 1) hit.intersectionPoint = pointArg("hit", in[1]);
  if (in.size() > 2) hit.button = static_cast<std::int32_t>(scalarArg("hit", in[2]));
  out.push_back(objectOrEmpty(sgclasses::reportHit(object.get(), hit)));
}

// [target, primitive] = pick(ax, [x y]).
void bPick(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("pick", in, 2, 2);
  COSInterfacePtr axes = graphicsArg("pick", in[0]);
  static const COSID axesClass("vantel.graphics.axis.Axes");
  if (!axes->getClass()->isSubclassOf(axesClass)) throw Error("VANTEL:sgsh:NotAxes", "pick");
  const std::array<double, 3> at = pointArg("pick", in[1]);
  graphics::eventdata::HitImpl hit;
  COSInterfacePtr primitive = sgclasses::pickInAxes(axes.get(), at[0], at[1], hit.intersectionPoint);
  hit.primitive = primitive;
  out.push_back(objectOrEmpty(sgclasses::reportHit(primitive.get(), hit)));
  if (nargout > 1) out.push_back(objectOrEmpty(primitive));
}

}  // namespace

void registerViewBuiltins() {
  BuiltinRegistry& r = BuiltinRegistry::instance();
  r.add<bViewdirty>("viewdirty", "names = viewdirty(h)",
                    "The view properties of h set since the last drawnow, as a string row, in the order "
                    "the view is told them.");
  r.add<bHit>("hit", "target = hit(h)\ntarget = hit(h, point)\ntarget = hit(h, point, button)",
              "Reports a pointer hit on h: the hit goes to h or its nearest ancestor that takes hits "
              "(HitTest, PickableParts, Visible), which becomes its figure's CurrentObject and runs its "
              "ButtonDownFcn. Returns that object, or [] when none takes it.");
  r.add<bPick>("pick", "target = pick(ax, [x y])\n[target, primitive] = pick(ax, [x y])",
               "Finds the topmost line, patch or text of the axes at the point (data coordinates; a "
               "line or outline within 1% of the axes' extent, inside a patch's face or a text's box), "
               "or the axes itself, and reports a hit on it as hit does.");
}

}  // namespace sgsh::builtins
