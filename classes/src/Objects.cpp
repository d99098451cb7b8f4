// Making graphics objects below a parent and finding the current ones.
#include "sgclasses/Objects.h"

#include <cstring>
#include <iterator>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/lifecycle/ConstructionStep.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/objects/Root.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FaultInjection.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {

// The id of a class name, interned once per name a caller passes: callers
// pass the constants of ClassNames.h, so a few entries serve them all; the
// text is compared too, so a reused buffer with another name misses.
COSID classIdOf(const char* className) {
  struct Entry {
    const char* name = nullptr;
    COSID id;
  };
  static thread_local Entry cache[8];
  static thread_local std::size_t next = 0;
  for (const Entry& e : cache)
    if (e.name == className && std::strcmp(e.id.c_str(), className) == 0) return e.id;
  Entry& e = cache[next++ % std::size(cache)];
  e = {className, COSID(className)};
  return e.id;
}

// Hooks the new object under the parent at the place a "Parent" pair given
// first would be set (ConstructionStep.h). A set that nothing observes goes
// to the node's reparent directly, with its checks, defaults and theme; any
// other (a listener, a custom set, a class that is no node) takes the
// client path by name, as the pair did.
void connectParent(void* context, const COSInterfacePtr& object) {
  COSInterface* parent = static_cast<COSInterface*>(context);
  static const COSID parentId("Parent");
  COSPropInfo* property = object->getClass()->findPropertyExact(parentId);
  auto* node = sgutils::blockOf<GraphicsNode>(object.get(), GraphicsNode::classID());
  COSCustomMetaClass* customSet = nullptr;
  if (node && property && property->getDefiningClass() == GraphicsNode::getClassInstance() &&
      object->isUnobservedPublicSet(property, customSet) && !customSet) {
    // The same fault point as a set through the client path.
    vcos::fault::at(vcos::fault::Point::PropertySet);
    node->reparent(object.get(), parent);
    return;
  }
  matrix::unique_vxArray value(omCreateVCOSScalar(COSInterfacePtr(parent)));
  SGHandle::setProperty(COSGetPublicClient(), object, "Parent", value.get());
}

}  // namespace

COSInterfacePtr create(const char* className, const COSInterfacePtr& parent, std::span<const vxArray* const> pairs) {
  COSClass* cls = COSClass::getClass(classIdOf(className));
  if (!cls) throw foundation::core::except::Error("VANTEL:vcos:UnknownClass", className);
  // The caller's pairs go to the constructor as they are; the parent is
  // hooked before them, so the ancestors' defaults come before the caller's
  // values.
  constexpr std::size_t kInline = 8;
  COSValue inline_[kInline];
  std::vector<COSValue> heap(pairs.size() > kInline ? pairs.size() : 0);
  COSValue* words = heap.empty() ? inline_ : heap.data();
  for (std::size_t i = 0; i < pairs.size(); ++i) words[i] = COSValue(pairs[i]);
  const COSClient* client = COSGetPublicClient();
  if (!parent) return cls->createInstance(client, static_cast<int>(pairs.size()), words);
  sgutils::ScopedConstructionStep step(cls, &connectParent, parent.get());
  COSInterfacePtr object = cls->createInstance(client, static_cast<int>(pairs.size()), words);
  // A class whose constructor runs no stages never took the step: the
  // parent is set by name once it is made.
  if (!step.taken()) connectParent(parent.get(), object);
  return object;
}

COSInterfacePtr currentFigure(bool make) {
  COSInterfacePtr top = root();
  COSInterfacePtr figure = sgutils::blockOf<Root>(top.get(), Root::classID())->currentFigure();
  if (!figure && make) figure = create(kFigureClass, top);
  return figure;
}

COSInterfacePtr currentAxes(bool make) {
  COSInterfacePtr figure = currentFigure(make);
  if (!figure) return {};
  COSInterfacePtr axes = sgutils::blockOf<Figure>(figure.get(), Figure::classID())->plotTarget();
  if (!axes && make) axes = create(kAxesClass, figure);
  return axes;
}

void makeCurrent(const COSInterfacePtr& object) {
  if (!object || object->isDestroyed()) throw foundation::core::except::Error("VANTEL:sg:DeletedObject");
  COSInterface* parent = object->getOwnerObject();
  if (isOfClass(object.get(), {kFigureClass}) && parent && isOfClass(parent, {kRootClass})) {
    sgutils::blockOf<Root>(parent, Root::classID())->setCurrentFigure(object);
  } else if (isOfClass(object.get(), {kAxesClass}) && parent && isOfClass(parent, {kFigureClass})) {
    sgutils::blockOf<Figure>(parent, Figure::classID())->setCurrentAxes(object);
    makeCurrent(COSInterfacePtr(parent));
  }
}

}  // namespace sgclasses
