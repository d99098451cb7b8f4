// The hand-written half of GraphicsNode. "Parent" reads the owner in the
// object tree (an empty double without one). Setting it takes a graphics
// object or its number, or an empty value to unhook; a deleted parent or
// one of a class that may not hold this object is refused before anything
// changes. A new parent hands its ancestors' defaults to the object.
#include "sgutils/objects/GraphicsNode.gen.h"

#include "sgclasses/Theming.h"

#include "foundation/core/except/Error.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgutils/copy/ParentConnector.h"
#include "sgutils/objects/CurrentAxes.gen.h"
#include "sgutils/objects/GraphicsUIProperties.gen.h"
#include "sgutils/objects/Layoutable.gen.h"
#include "sgutils/objects/Legacy.gen.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/objects/Themeable.gen.h"
#include "sgutils/objects/ViewPropertiesManager.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/PropertyRouteEpoch.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"

namespace sgclasses {

using foundation::core::except::Error;

namespace {

// The parent a value names: null for an empty value.
COSInterfacePtr parentOf(const vxArray* array) {
  if (!array || vxIsEmpty(array)) return {};
  if (omIsVCOS(array)) {
    if (vxGetNumberOfElements(array) != 1) throw Error("VANTEL:sgclasses:ParentNotScalar");
    return omGetArrayElement(array, 0);
  }
  if (vxIsDouble(array) && vxGetNumberOfElements(array) == 1) {
    if (COSInterface* object = graphics::datatype::HandleNumberTable::entryFor(vxGetScalar(array)))
      return COSInterfacePtr(object);
    throw Error("VANTEL:sg:DeletedObject");
  }
  throw Error("VANTEL:sgclasses:InvalidParentValue", vxGetClassName(array));
}

// An object that takes part in layouts hears of its new parent: under a
// layout kind it keeps its Layout, elsewhere it leaves the layout.
void tellLayoutableOfParent(COSInterface* object, COSInterface* parent) {
  if (void* slot = object->getInstanceData(graphics::mixin::Layoutable::classID()))
    static_cast<graphics::mixin::Layoutable*>(static_cast<SGReference*>(slot))->layoutableValidateParentAndState(parent);
}

}  // namespace

bool GraphicsNode::acceptsParent(COSInterface*) const { return false; }

void GraphicsNode::parentChanged(COSInterface*, COSInterface*) {}

COSValue GraphicsNode::getParentImpl(COSPropInfo*, const COSClient*, COSInterface* object) {
  COSInterface* owner = object->getOwnerObject();
  return COSValue(owner ? omCreateVCOSScalar(COSInterfacePtr(owner)) : vxCreateDoubleMatrix(0, 0, vxREAL));
}

void GraphicsNode::setParentImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  reparent(object, parentOf(value.asPointer<const vxArray>()).get());
}

bool GraphicsNode::acceptsParentOfClass(const COSInterface* object, COSInterface* parent) const {
  // The answer of the last pair of classes asked, kept while the property
  // route epoch stays (a class that goes moves it, so a class made later at
  // the same address is asked anew). Interpreter thread only.
  struct Kept {
    const COSClass* cls = nullptr;
    const COSClass* parentClass = nullptr;
    std::uint64_t epoch = 0;
    bool answer = false;
  };
  static Kept kept;
  const COSClass* cls = object->getClass();
  const COSClass* parentClass = parent->getClass();
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  if (kept.cls == cls && kept.parentClass == parentClass && kept.epoch == epoch && cls) return kept.answer;
  const bool answer = acceptsParent(parent);
  kept = {cls, parentClass, epoch, answer};
  return answer;
}

void GraphicsNode::reparent(COSInterface* object, COSInterface* parent) {
  if (!parent) {
    object->unhookFromOwner();
    tellLayoutableOfParent(object, nullptr);
    return;
  }
  if (parent->isDestroyed() || parent->isBeingDestroyed()) throw Error("VANTEL:sg:DeletedObject");
  if (!acceptsParentOfClass(object, parent))
    throw Error("VANTEL:sgclasses:InvalidParent", object->getClass()->getName(), parent->getClass()->getName());
  // The new parent must not lie below the object.
  for (COSInterface* up = parent; up; up = up->getOwnerObject())
    if (up == object) throw Error("VANTEL:sgclasses:ParentCycle");
  if (object->getOwnerObject() == parent) return;
  object->unhookFromOwner();
  parent->hookChild(object);
  tellLayoutableOfParent(object, parent);
  applyDefaultProperties(COSInterfacePtr(parent), false);
  parentChanged(object, parent);
  // After the defaults: a themed property whose mode a default made manual
  // keeps the default.
  applyThemeFromAncestors(object);
}

namespace {

// Where the blocks of the other lines lie in the instances of one class:
// found once per class, so a new object looks none of them up by class id.
struct OtherLines {
  static constexpr std::size_t kLines = 6;  // the last is the views' block
  const COSClass* cls = nullptr;
  std::uint64_t epoch = 0;
  int slots[kLines] = {};
};

OtherLines otherLinesOf(const COSClass* cls) {
  // The property route epoch moves when a class goes, so a class made later
  // at the same address is asked again; a class whose block table is not
  // complete yet (it holds its own block once it is) is asked each time.
  // Interpreter thread only.
  static OtherLines kept;
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  if (kept.cls == cls && kept.epoch == epoch) return kept;
  static const COSID lines[OtherLines::kLines] = {
      graphics::internal::GraphicsUIProperties::classID(), graphics::internal::Legacy::classID(),
      graphics::mixin::CurrentAxes::classID(),             graphics::mixin::Layoutable::classID(),
      graphics::mixin::Themeable::classID(),               graphics::mixin::ViewPropertiesManager::classID()};
  OtherLines found;
  for (std::size_t i = 0; i < OtherLines::kLines; ++i) found.slots[i] = vcos::blockSlotOf(cls, lines[i]);
  found.cls = cls;
  found.epoch = epoch;
  if (cls && vcos::blockSlotOf(cls, cls->getID()) >= 0) kept = found;
  return found;
}

}  // namespace

void GraphicsNode::runOtherLineSetups(COSInterfacePtr object) {
  // A copy: a Setup may make objects of other classes.
  const OtherLines lines = otherLinesOf(object->getClass());
  for (const int slot : lines.slots) {
    if (slot < 0) continue;
    auto* block = static_cast<SGReference*>(vcos::instanceDataAt(object.get(), slot));
    if (block && block != static_cast<SGReference*>(this)) block->runSetup(object);
  }
  // The view strategy is chosen when the object is made; the names a class
  // starts with go to the view at the next drawnow. The block is kept at
  // hand, so a set marks its name without looking the block up.
  const int views = lines.slots[OtherLines::kLines - 1];
  viewProperties_ = views < 0
                        ? nullptr
                        : static_cast<graphics::mixin::ViewPropertiesManager*>(
                              static_cast<SGReference*>(vcos::instanceDataAt(object.get(), views)));
  if (!viewProperties_) return;
  viewProperties_->setStrategy(object.get());
  if (viewProperties_->hasDirtyProperties()) queueForViews(object.get());
}

void GraphicsNode::queueForViews(COSInterface* object) {
  if (!std::exchange(dirty_, true)) markDirty(object);
}

void GraphicsNode::doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags) {
  GraphicsCoreProperties::doPostSet(object, property, flags);
  if (viewProperties_) viewProperties_->markViewPropertyDirty(object, property);
  queueForViews(object);
}

void GraphicsNode::doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  GraphicsCoreProperties::doPostSet(object, property, limitsDirty, objectDirty);
  if (viewProperties_) viewProperties_->markViewPropertyDirty(object, property);
  queueForViews(object);
}

namespace {

// markViewPropertiesDirty on a concrete object: the manager's method, then
// the object joins the next drawnow, so the names reach the views and are
// emptied there like those of a set.
void markViewPropertiesDirtyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  if (nrhs < 1) return;
  const vxArray* self = prhs[0].asPointer<const vxArray>();
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return;
  COSInterfacePtr object = omGetLiveArrayElement(self, 0);
  auto* node = object ? sgutils::blockOf<GraphicsNode>(object.get(), GraphicsNode::classID()) : nullptr;
  if (!node || !node->viewProperties()) return;
  node->viewProperties()->markViewPropertiesDirty(object.get(), nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr);
  if (node->viewProperties()->hasDirtyProperties()) node->queueForViews(object.get());
}

}  // namespace

unsigned char GraphicsNode::readHandleVisibility(const void* block) noexcept {
  // Blocks are stored as SGReference pointers.
  const auto* node = static_cast<const GraphicsNode*>(static_cast<const SGReference*>(block));
  return static_cast<unsigned char>(node->handleVisibility_);
}

namespace {

// Hooks a copy under its parent's copy as a set of Parent would (see
// ParentConnector); objects without the block are left to the set.
bool connectUnderParent(COSInterface* object, COSInterface* parent) {
  auto* node = sgutils::blockOf<GraphicsNode>(object, GraphicsNode::classID());
  if (!node) return false;
  node->reparent(object, parent);
  return true;
}

}  // namespace

void GraphicsNode::addMethods(COSClass* cls, COSID classId) {
  sgutils::copy::ParentConnector::set(classId, &connectUnderParent);
  sgutils::addMixinMethod(cls, classId, "markViewPropertiesDirty", &markViewPropertiesDirtyMethod, {"object", "names"},
                          {});
}

}  // namespace sgclasses
