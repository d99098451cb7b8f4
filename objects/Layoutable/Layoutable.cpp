// The hand-written half of Layoutable: the Layout property, its observers,
// the check of a new parent and the position strategy, and the methods that
// reach them from the language.
#include "sgutils/objects/Layoutable.gen.h"

#include <algorithm>
#include <array>

#include "sgdatatypes/HandleOrEmpty.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/objects/MixinMethod.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace graphics::mixin {

using graphics::datatype::LayoutOrEmpty;

COSValue Layoutable::getLayoutImpl(COSPropInfo* property, const COSClient*, COSInterface*) {
  // The caller releases what a get gives.
  return property->getDataType()->copy(COSValue(&layout_));
}

void Layoutable::setLayoutImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  setLayout(object, value.isEmpty() ? LayoutOrEmpty() : *value.asPointer<const LayoutOrEmpty>());
}

void Layoutable::setLayout(COSInterface* object, LayoutOrEmpty value) {
  // The check runs before the store, so a refused value leaves Layout as it was.
  validateLayoutPropertyValue(value);
  LayoutOrEmpty old = std::exchange(layout_, std::move(value));
  notifyLayoutChangeObservers(object, old);
  if (!(old == layout_)) markLayoutForViews(object);
}

void Layoutable::markLayoutForViews(COSInterface* object) {
  // The views hear of a new Layout as of any other property: through the
  // object's own doPostSet, where a concrete graphics object writes the
  // name down and queues itself for the next drawnow. Layout's data lies in
  // a block of its own, so the stub row's doPostSet reaches only this one.
  if (!object || object->isBeingDestroyed() || object->isDestroyed()) return;
  using graphics::internal::GraphicsCoreProperties;
  auto* core = sgutils::blockOf<GraphicsCoreProperties>(object, GraphicsCoreProperties::classID());
  if (!core) return;
  static const COSID layoutName("Layout");
  if (COSPropInfo* property = object->getClass()->findPropertyExact(layoutName))
    core->doPostSet(object, property, /*limitsDirty=*/false, /*objectDirty=*/true);
}

void Layoutable::validateLayoutPropertyValue(LayoutOrEmpty) {}

void Layoutable::notifyLayoutChangeObservers(COSInterface* object, const LayoutOrEmpty& old) {
  if (observers_.empty()) return;
  static const COSID method("handleChildLayoutPropChanged");
  // An observer may add or remove observers while it is told: walk a copy.
  const std::vector<COSInterfacePtr> observers = observers_;
  vxArray* self = omCreateVCOSScalar(COSInterfacePtr(object));
  vxArray* oldLayout = old.toArray();
  try {
    for (const COSInterfacePtr& observer : observers) {
      if (!observer || observer->isDestroyed() || observer->isBeingDestroyed()) continue;
      vxArray* target = omCreateVCOSScalar(observer);
      const std::array<const vxArray*, 3> inputs{target, self, oldLayout};
      std::array<vxArray*, 1> outputs{nullptr};
      COSClass* cls = observer->getClass();
      try {
        omCallMethod(cls->getID(), method, cls->getPrivateClient(), 0, outputs.data(), 3, inputs.data(), false);
      } catch (...) {
        vxDestroyArray(target);
        throw;
      }
      vxDestroyArray(target);
      if (outputs[0]) vxDestroyArray(outputs[0]);
    }
  } catch (...) {
    vxDestroyArray(self);
    vxDestroyArray(oldLayout);
    throw;
  }
  vxDestroyArray(self);
  vxDestroyArray(oldLayout);
}

void Layoutable::setLayoutFromLayoutContainer(const vxArray* layout) {
  layout_ = LayoutOrEmpty::fromArray(layout);
  markLayoutPropertyDirty();
}

void Layoutable::resetLayout(COSInterface* object) { setLayout(object, LayoutOrEmpty()); }

void Layoutable::setStrategy(std::unique_ptr<sgutils::PositionReportStrategy> strategy) {
  strategy_ = std::move(strategy);
}

void Layoutable::resetPositionReportStrategy() { setStrategy(std::make_unique<sgutils::PositionReportStrategy>()); }

graphics::datatype::Position Layoutable::getRelativePosition(COSInterface*, const graphics::datatype::Position& position,
                                                             std::optional<graphics::datatype::Units> units,
                                                             const COSInterfacePtr& target) {
  if (!strategy_) resetPositionReportStrategy();
  return strategy_->getRelativePosition(target, position, units);
}

void Layoutable::addLayoutPropertyValueChangeObserver(COSInterfacePtr observer) {
  observers_.push_back(std::move(observer));
}

void Layoutable::removeLayoutPropertyValueChangeObserver(const COSInterfacePtr& observer) {
  const auto found = std::find_if(observers_.begin(), observers_.end(), [&](const COSInterfacePtr& o) {
    return o && !o->isDestroyed() && !o->isBeingDestroyed() && o == observer;
  });
  if (found != observers_.end()) observers_.erase(found);
}

void Layoutable::layoutableValidateParentAndState(COSInterface* parent) {
  if (!parent) {
    manualPositionAllowed_ = true;
    return;
  }
  static const COSID layoutKinds[] = {COSID("vantel.ui.container.internal.model.LayoutContainer"),
                                      COSID("vantel.graphics.layout.Layout"),
                                      COSID("vantel.graphics.shape.internal.AxesLayoutManager")};
  const COSClass* cls = parent->getClass();
  if (std::any_of(std::begin(layoutKinds), std::end(layoutKinds), [&](COSID id) { return cls->isSubclassOf(id); })) {
    manualPositionAllowed_ = false;
    return;
  }
  // Any other parent: the object leaves the layout.
  manualPositionAllowed_ = true;
  if (!layout_.isEmpty()) layout_ = LayoutOrEmpty();
  setStrategy(std::make_unique<sgutils::PositionReportStrategy>());
}

namespace {

// The block of the method's object (its first input), or null.
Layoutable* selfBlock(int nrhs, const COSValue* prhs, COSInterfacePtr& object) {
  if (nrhs < 1) return nullptr;
  const vxArray* self = prhs[0].asPointer<const vxArray>();
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return nullptr;
  object = omGetLiveArrayElement(self, 0);
  if (!object) return nullptr;
  void* slot = object->getInstanceData(Layoutable::classID());
  return slot ? static_cast<Layoutable*>(static_cast<SGReference*>(slot)) : nullptr;
}

COSInterfacePtr handleInput(int nrhs, const COSValue* prhs, int index) {
  if (nrhs <= index) return {};
  return graphics::datatype::HandleOrEmpty::fromArray(prhs[index].asPointer<const vxArray>()).get();
}

void addObserverMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (Layoutable* block = selfBlock(nrhs, prhs, object))
    block->addLayoutPropertyValueChangeObserver(handleInput(nrhs, prhs, 1));
}

void removeObserverMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (Layoutable* block = selfBlock(nrhs, prhs, object))
    block->removeLayoutPropertyValueChangeObserver(handleInput(nrhs, prhs, 1));
}

void allowManualPositionSetMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Layoutable* block = selfBlock(nrhs, prhs, object);
  nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(block ? block->allowManualPositionSet() : true));
}

void validateParentMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (Layoutable* block = selfBlock(nrhs, prhs, object))
    block->layoutableValidateParentAndState(handleInput(nrhs, prhs, 1).get());
}

void setLayoutFromContainerMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Layoutable* block = selfBlock(nrhs, prhs, object);
  if (block && nrhs > 1) block->setLayoutFromLayoutContainer(prhs[1].asPointer<const vxArray>());
}

void getRelativePositionMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Layoutable* block = selfBlock(nrhs, prhs, object);
  if (!block || nrhs < 2) return;
  const auto position = graphics::datatype::Position::fromArray(prhs[1].asPointer<const vxArray>());
  // Units are converted here, so a strategy is handed a checked value and a
  // name that is none of them raises before any strategy runs; an empty
  // array is units not given.
  const vxArray* unitsArg = nrhs > 2 ? prhs[2].asPointer<const vxArray>() : nullptr;
  std::optional<graphics::datatype::Units> units;
  if (unitsArg && !vxIsEmpty(unitsArg))
    units = graphics::datatype::enumerationFromArray<graphics::datatype::Units>(unitsArg);
  const COSInterfacePtr target = handleInput(nrhs, prhs, 3);
  nlhs = 1;
  plhs[0] = COSValue(block->getRelativePosition(object.get(), position, units, target).toArray());
}

void isInGridLayoutMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Layoutable* block = selfBlock(nrhs, prhs, object);
  nlhs = 1;
  plhs[0] = COSValue(vxCreateString(block && block->isInGridLayout() ? "on" : "off"));
}

void markLayoutDirtyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (Layoutable* block = selfBlock(nrhs, prhs, object)) block->markLayoutPropertyDirty();
}

void resetLayoutMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (Layoutable* block = selfBlock(nrhs, prhs, object)) block->resetLayout(object.get());
}

void resetStrategyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  if (Layoutable* block = selfBlock(nrhs, prhs, object)) block->resetPositionReportStrategy();
}

void setupStrategyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Layoutable* block = selfBlock(nrhs, prhs, object);
  if (block) block->setupPositionReportStrategy(nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr);
}

// The four access lists of the registration, each for the restricted
// methods of one side of a layout: the observers of Layout (containers, grid
// controls, the test observer), what places an object by hand, what parents
// components, and what hands an object its options. The list adds these
// classes to Layoutable and its subclasses, which are always admitted.
const ExtendedMemberAccess& observerAccess() {
  static const ExtendedMemberAccess list{
      COSID("vantel.ui.container.internal.model.LayoutContainer"),
      COSID("vantel.graphics.interaction.graphicscontrol.layoutable.GridLayoutableControl"),
      COSID("sg2utils.MockLayoutObserver")};
  return list;
}
const ExtendedMemberAccess& positionAccess() {
  static const ExtendedMemberAccess list{COSID("vantel.ui.internal.mixin.Positionable")};
  return list;
}
const ExtendedMemberAccess& parentAccess() {
  static const ExtendedMemberAccess list{COSID("vantel.ui.control.Component"),
                                         COSID("vantel.graphics.mixin.UIParentable")};
  return list;
}
const ExtendedMemberAccess& containerAccess() {
  static const ExtendedMemberAccess list{COSID("vantel.ui.container.internal.model.LayoutContainer"),
                                         COSID("vantel.graphics.interaction.graphicscontrol.ControlManager"),
                                         COSID("sg2utils.MockLayoutObserver")};
  return list;
}

}  // namespace

void Layoutable::addMethods(COSClass* cls, COSID classId) {
  using sgutils::addMixinMethod;
  using sgutils::addRestrictedMixinMethod;
  addRestrictedMixinMethod(cls, classId, "addLayoutPropertyValueChangeObserver", &addObserverMethod,
                           {"object", "observer"}, {}, observerAccess());
  addRestrictedMixinMethod(cls, classId, "removeLayoutPropertyValueChangeObserver", &removeObserverMethod,
                           {"object", "observer"}, {}, observerAccess());
  addRestrictedMixinMethod(cls, classId, "allowManualPositionSet", &allowManualPositionSetMethod, {"object"},
                           {"result"}, positionAccess());
  addRestrictedMixinMethod(cls, classId, "layoutableValidateParentAndState", &validateParentMethod,
                           {"object", "parent"}, {}, parentAccess());
  addRestrictedMixinMethod(cls, classId, "setLayoutFromLayoutContainer", &setLayoutFromContainerMethod,
                           {"object", "layout"}, {}, containerAccess());
  addMixinMethod(cls, classId, "getRelativePosition", &getRelativePositionMethod,
                 {"object", "position", "units", "target"}, {"position"});
  addMixinMethod(cls, classId, "isInGridLayout", &isInGridLayoutMethod, {"object"}, {"result"});
  addMixinMethod(cls, classId, "markLayoutPropertyDirty", &markLayoutDirtyMethod, {"object"}, {});
  addMixinMethod(cls, classId, "resetLayout", &resetLayoutMethod, {"object"}, {});
  addMixinMethod(cls, classId, "resetPositionReportStrategy", &resetStrategyMethod, {"object"}, {});
  addMixinMethod(cls, classId, "setupPositionReportStrategy", &setupStrategyMethod, {"object", "strategy"}, {});
}

}  // namespace graphics::mixin
