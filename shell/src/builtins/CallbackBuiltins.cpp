// Built-ins of running callbacks: gcbo (the object whose callback runs, and
// its figure), gcbf (that figure), and notify (sends an event of an object,
// as the picking layer does with "Hit").
#include "builtins/CallbackBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "sgdatatypes/CallbackContext.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

using graphics::datatype::CallbackContext;

Value objectOrEmpty(const COSInterfacePtr& object) {
  return object ? Value(omCreateVCOSScalar(object)) : Value::emptyDouble();
}

COSInterfacePtr figureOf(const COSInterfacePtr& object) {
  return object ? graphics::internal::GraphicsCoreProperties::getParentFigure(object.get()) : COSInterfacePtr();
}

// [object, figure] = gcbo: empty when no callback runs.
void bGcbo(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("gcbo", in, 0, 0);
  const COSInterfacePtr object = CallbackContext::currentObject();
  out.push_back(objectOrEmpty(object));
  if (nargout > 1) out.push_back(objectOrEmpty(figureOf(object)));
}

void bGcbf(Interpreter&, int, Out& out, Args in) {
  checkArgs("gcbf", in, 0, 0);
  out.push_back(objectOrEmpty(figureOf(CallbackContext::currentObject())));
}

// notify(h, eventName): sends the event from each object of h, with no data,
// as the public client (the event's send access applies).
void bNotify(Interpreter&, int, Out&, Args in) {
  checkArgs("notify", in, 2, 2);
  const vxArray* objects = in[0].get();
  if (!omIsVCOS(objects)) throw Error("VANTEL:sgsh:NotGraphicsObject", "notify");
  const COSID event(textArg("notify", in[1]).c_str());
  std::vector<COSInterfacePtr> sources;
  for (std::size_t i = 0, n = vxGetNumberOfElements(objects); i < n; ++i) {
    COSInterfacePtr object = omGetArrayElement(objects, i);
    if (!object || object->isDestroyed() || object->isBeingDestroyed()) throw Error("VANTEL:sg:DeletedObject");
    sources.push_back(std::move(object));
  }
  for (const COSInterfacePtr& object : sources)
    if (!object->isDestroyed()) object->notifyEvent(COSGetPublicClient(), event, nullptr);
}

}  // namespace

void registerCallbackBuiltins() {
  BuiltinRegistry& r = BuiltinRegistry::instance();
  r.add<bGcbo>("gcbo", "h = gcbo", "The object whose callback is running; empty outside callbacks.");
  r.add<bGcbf>("gcbf", "f = gcbf", "The figure of the object whose callback is running; empty outside callbacks.");
  r.add<bNotify>("notify", "notify(h, eventName)",
                 "Sends the named event from each object, running its listeners and callbacks.");
}

}  // namespace sgsh::builtins
