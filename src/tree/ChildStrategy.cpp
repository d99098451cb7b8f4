// The rules for lists of children (ChildStrategy) and the strategy that
// every manager starts with (DefaultChildStrategy).
#include "sgutils/tree/ChildStrategy.h"

#include <algorithm>
#include <cstdint>
#include <typeinfo>
#include <unordered_set>

#include "foundation/core/except/Error.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "src/classinfo/GraphicsPropertyKinds.h"
#include "sgutils/services/FormbenchFigureUtils.h"
#include "sgutils/tree/ChildManager.h"
#include "sgutils/tree/DefaultChildStrategy.h"
#include "sgutils/tree/RootInstance.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/DynamicProperties.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/PropertyRouteEpoch.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSPropT.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"
#include "vx/vxError.h"
#include "vx/vxObjectStorage.h"

namespace sgutils {

namespace {

using foundation::core::except::Error;

const COSID& placeholderId() {
  static const COSID id("vantel.graphics.GraphicsPlaceholder");
  return id;
}

[[noreturn]] void raiseBadChildren() { throw Error("VANTEL:sg:BadChildren"); }

// The visibility properties of the classes seen last, so a walk looks the
// names up once per run of objects of a class; the class tables live for
// the process.
struct VisibilityProps {
  const COSClass* cls = nullptr;
  const COSPropInfo* handleVisibility = nullptr;
  const COSPropInfo* internal = nullptr;
  // The indexes of the data blocks the two reads touch in the class's
  // instances (-1: none), for the prefetch and the direct reads.
  int handleVisibilitySlot = -1, internalSlot = -1;
  // Direct reads of the two, where the class's properties are the ones whose
  // storage is known (else null / false: the property is read as usual).
  ChildStrategy::HandleVisibilityReader readHandleVisibility = nullptr;
  bool internalOnGraphicsBlock = false;
  // Both reads direct, each from a block found by its index.
  bool direct = false;
  // The class's block table was complete when the answers were made.
  bool complete = false;
};

// The one reader installed; a process has one library defining HandleVisibility.
struct HandleVisibilityReaderEntry {
  COSID definingClass;
  ChildStrategy::HandleVisibilityReader read = nullptr;
};
HandleVisibilityReaderEntry handleVisibilityReader;
// Bumped when the reader changes, so the per-class answers are made again.
unsigned readerGeneration = 0;

// The Internal property of the Graphics block: a flag read through the block.
using GraphicsInternalPI = LogicalAccessorPI<SGHandle, &SGHandle::getInternal, &SGHandle::setInternal>;

// The class whose block a property reads, where the kind of property tells.
COSID blockClassOf(const COSPropInfo* property) {
  if (!property) return {};
  if (auto* p = dynamic_cast<const PropInfoBase*>(property)) return p->getClassID();
  if (auto* p = dynamic_cast<const COSPropT*>(property)) return p->getClassID();
  return {};
}

const COSID& handleVisibilityName() {
  static const COSID id("HandleVisibility");
  return id;
}
const COSID& internalName() {
  static const COSID id("Internal");
  return id;
}

const VisibilityProps& visibilityPropsOf(const COSClass* cls) {
  // One thread runs the class-object system. A few entries, picked by the
  // class's address, so that the prefetch a few children ahead and the
  // test of a container of mixed classes do not evict each other.
  // The property route epoch moves when a class goes, so a class made
  // later at the same address is not answered from its predecessor.
  static VisibilityProps cache[8];
  static unsigned generation[8];
  static std::uint64_t epochs[8];
  const std::size_t at = (reinterpret_cast<std::uintptr_t>(cls) >> 6) & 7;
  VisibilityProps& last = cache[at];
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  // A class whose block table is not complete yet (it holds its own block
  // once it is) is asked again at the next call.
  if (cls != last.cls || generation[at] != readerGeneration || epochs[at] != epoch || !last.complete) {
    last.cls = cls;
    generation[at] = readerGeneration;
    epochs[at] = epoch;
    last.handleVisibility = cls ? cls->findPropertyExact(handleVisibilityName()) : nullptr;
    last.internal = cls ? cls->findPropertyExact(internalName()) : nullptr;
    last.handleVisibilitySlot = vcos::blockSlotOf(cls, blockClassOf(last.handleVisibility));
    last.internalSlot = vcos::blockSlotOf(cls, blockClassOf(last.internal));
    // Only the exact property kinds whose storage the direct reads know.
    last.readHandleVisibility = nullptr;
    if (auto* p = dynamic_cast<const PropInfoBase*>(last.handleVisibility);
        p && handleVisibilityReader.read && p->getClassID() == handleVisibilityReader.definingClass)
      last.readHandleVisibility = handleVisibilityReader.read;
    last.internalOnGraphicsBlock = last.internal && typeid(*last.internal) == typeid(GraphicsInternalPI);
    last.complete = cls && vcos::blockSlotOf(cls, cls->getID()) >= 0;
    last.direct = last.readHandleVisibility && last.internalOnGraphicsBlock && last.handleVisibilitySlot >= 0 &&
                  last.internalSlot >= 0;
  }
  return last;
}

const VisibilityProps& visibilityPropsOf(const COSInterface* object) { return visibilityPropsOf(object->getClass()); }

// A property of the object: the class's, else one added to the instance.
const COSPropInfo* propertyOf(const COSInterface* object, const COSPropInfo* ofClass, const COSID& (*name)()) {
  if (ofClass) return ofClass;
  if (!vcos::hasDynamicProperties(object)) return nullptr;
  COSInterfacePtr dynamic;
  object->findDynamicProperty(dynamic, name());
  return dynamic ? cosiToProp(dynamic.get()) : nullptr;
}

// The raw word of a property read through its information, given back.
template <class Read>
auto readRaw(COSInterface* object, const COSPropInfo* property, Read read) {
  COSValue value = property->getValue(object);
  auto result = read(value);
  property->releaseValue(object, value);
  return result;
}

// Whether a callback runs: the root's "CallbackObject" is set. Without a
// root a callback counts as running.
bool callbackRunning() {
  COSInterfacePtr root = RootInstance::getRootInstance(NullTolerance::Tolerate);
  if (!root) return true;
  static const COSID name("CallbackObject");
  const COSPropInfo* property = root->findPropertyInfo(name);
  if (!property) return false;
  return readRaw(root.get(), property, [&](COSValue v) {
    if (v.isEmpty()) return false;
    const COSDataTypePtr type = property->getDataType();
    if (type && type->isVANTELArrayType()) return !vxIsEmpty(v.asPointer<const vxArray>());
    return true;
  });
}

bool contains(const ChildList& list, const COSInterfacePtr& object) {
  return std::find(list.begin(), list.end(), object) != list.end();
}

}  // namespace

ChildStrategy::~ChildStrategy() = default;

std::shared_ptr<ChildStrategy> ChildStrategy::createDefaultChildStrategy() {
  return std::make_shared<DefaultChildStrategy>();
}

namespace {

void fetchVisibility(const COSInterface* child, const VisibilityProps& props) noexcept {
  if (props.handleVisibilitySlot >= 0) __builtin_prefetch(vcos::instanceDataAt(child, props.handleVisibilitySlot));
  if (props.internalSlot >= 0) __builtin_prefetch(vcos::instanceDataAt(child, props.internalSlot));
}

// The visibility test of a live child whose class's answers are `props`.
bool visibleWith(COSInterface* child, const VisibilityProps& given) {
  const VisibilityProps* kept = &given;
  if (vcos::hasDynamicProperties(child)) {
    if (FormbenchFigureUtils::hasFormbenchFigureProperty(COSInterfacePtr(child))) return false;
    kept = &visibilityPropsOf(child);  // the check may have met other classes
  }
  const VisibilityProps& props = *kept;
  // The common case: both properties of the class, each read straight from
  // its member in the block found by its index (the same values their
  // getValue gives, with no calls through the property and nothing to give
  // back). Blocks are stored as SGReference pointers.
  if (props.direct) {
    const void* graphics = vcos::instanceDataAt(child, props.internalSlot);
    if (graphics && static_cast<const SGHandle*>(static_cast<const SGReference*>(graphics))->getInternal()) return false;
    if (ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag()) return true;
    const void* node = vcos::instanceDataAt(child, props.handleVisibilitySlot);
    const unsigned char visibility = node ? props.readHandleVisibility(node) : 0;
    if (visibility == 0) return true;
    return visibility == 1 && callbackRunning();
  }
  // Copies: a property read below may run code that looks at another class.
  const COSPropInfo* handleVisibility = propertyOf(child, props.handleVisibility, &handleVisibilityName);
  const COSPropInfo* internal = propertyOf(child, props.internal, &internalName);
  if (!handleVisibility) return false;
  if (internal && readRaw(child, internal, [](COSValue v) { return v.word() != 0; })) return false;
  if (ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag()) return true;
  const unsigned char visibility = readRaw(child, handleVisibility, [](COSValue v) {
    const auto* byte = v.asPointer<const unsigned char>();
    return byte ? *byte : static_cast<unsigned char>(0);
  });
  if (visibility == 0) return true;
  // The root is asked only for a child that shows during callbacks.
  return visibility == 1 && callbackRunning();
}

}  // namespace

bool ChildStrategy::visibilityBlockSlots(const COSClass* cls, int& internalSlot, int& handleVisibilitySlot) noexcept {
  if (!cls) return false;
  const VisibilityProps& props = visibilityPropsOf(cls);
  // The reader must still be the one installed when the answer is used.
  if (!props.direct || props.readHandleVisibility != handleVisibilityReader.read) return false;
  internalSlot = props.internalSlot;
  handleVisibilitySlot = props.handleVisibilitySlot;
  return true;
}

int ChildStrategy::visibilityOfBlocks(const void* graphics, const void* node, bool showHidden) noexcept {
  // The direct reads of visibleWith; a child shown only during callbacks is
  // left to the full test, which asks the root.
  if (graphics && static_cast<const SGHandle*>(static_cast<const SGReference*>(graphics))->getInternal()) return 0;
  if (showHidden || ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag()) return 1;
  const unsigned char visibility = node ? handleVisibilityReader.read(node) : 0;
  return visibility == 0 ? 1 : visibility == 1 ? -1 : 0;
}

void ChildStrategy::prefetchVisibility(const COSInterface* child) noexcept {
  if (!child || child->isDestroyed()) return;
  fetchVisibility(child, visibilityPropsOf(child));
}

bool ChildStrategy::isChildHandleVisibleFetching(COSInterface* child, const COSInterface* ahead) {
  const VisibilityProps* props = nullptr;
  if (ahead && !ahead->isDestroyed()) {
    const VisibilityProps& a = visibilityPropsOf(ahead);
    fetchVisibility(ahead, a);
    if (child && a.cls == child->getClass()) props = &a;
  }
  if (!child || child->isDestroyed()) return false;
  return visibleWith(child, props ? *props : visibilityPropsOf(child));
}

bool ChildStrategy::isChildHandleVisible(const COSInterfacePtr& child) { return isChildHandleVisible(child.get()); }

void ChildStrategy::setHandleVisibilityReader(COSID definingClass, HandleVisibilityReader reader) noexcept {
  handleVisibilityReader = {definingClass, reader};
  ++readerGeneration;
}

bool ChildStrategy::isChildHandleVisible(COSInterface* child) {
  if (!child || child->isDestroyed()) return false;
  return visibleWith(child, visibilityPropsOf(child));
}

bool ChildStrategy::isChildSerializable(const COSInterfacePtr& child) {
  static const COSID name("Serializable");
  const COSPropInfo* property = child->findPropertyInfo(name);
  if (!property) return false;
  return readRaw(child.get(), property, [](COSValue v) { return v.word() != 0; });
}

bool ChildStrategy::isChildGBTObject(const COSInterfacePtr& child) {
  static const COSID component("vantel.ui.control.Component");
  return child && child->getClass() && child->getClass()->isSubclassOf(component);
}

bool ChildStrategy::isChildNotGBTObject(const COSInterfacePtr& child) { return child && !isChildGBTObject(child); }

bool ChildStrategy::isValidPermutation(const ChildList& newList, const ChildList& oldList) {
  // Membership by identity; long lists are looked up through hash sets so
  // that a reorder stays linear.
  constexpr std::size_t kLinear = 32;
  if (newList.size() <= kLinear && oldList.size() <= kLinear) {
    for (const COSInterfacePtr& old : oldList)
      if (isChildHandleVisible(old) && !contains(newList, old)) return false;
    for (const COSInterfacePtr& item : newList)
      if (!contains(oldList, item)) return false;
    return true;
  }
  auto setOf = [](const ChildList& list) {
    std::unordered_set<const COSInterface*> set(list.size() * 2);
    for (const COSInterfacePtr& o : list) set.insert(o.get());
    return set;
  };
  const auto inNew = setOf(newList);
  for (const COSInterfacePtr& old : oldList)
    if (isChildHandleVisible(old) && !inNew.contains(old.get())) return false;
  const auto inOld = setOf(oldList);
  for (const COSInterfacePtr& item : newList)
    if (!inOld.contains(item.get())) return false;
  return true;
}

bool ChildStrategy::isScreenPermittedPermutation(const ChildList& newList) {
  const auto firstOther = std::find_if(newList.begin(), newList.end(), isChildNotGBTObject);
  const std::size_t firstOtherIndex = static_cast<std::size_t>(firstOther - newList.begin());
  const auto lastComponent = std::find_if(newList.rbegin(), newList.rend(), isChildGBTObject);
  const std::size_t behindLastComponent = static_cast<std::size_t>(newList.rend() - lastComponent);
  return behindLastComponent < firstOtherIndex + 1;
}

Mprotected_vxArray ChildStrategy::convertToCOSArray(const vxArray* array) {
  if (!array) raiseBadChildren();
  if (vxIsEmpty(array)) return Mprotected_vxArray(omCreateVCOSEmpty(placeholderId()), true);
  static const COSID from("double"), to("vantel.graphics.datatype.COSInterface");
  const COSTypeConversion* conversion = COSTypeRepository::getConversion(from, to);
  if (!vxIsDouble(array)) {
    if (omIsVCOS(array)) return Mprotected_vxArray(vxCreateSharedDataCopy(array), true);
    raiseBadChildren();
  }
  // Numbers: each one the object of a numeric handle.
  auto objectOf = [&](double number) {
    if (!conversion) raiseBadChildren();
    auto* found = conversion->convert(COSValue::fromDouble(number)).asPointer<COSInterface>();
    COSInterfacePtr object(found);
    if (found) found->releaseReference(COSStrongReference);  // the conversion's own reference
    if (!object) raiseBadChildren();
    return object;
  };
  const std::size_t n = vxGetNumberOfElements(array);
  const double* numbers = vxGetPr(array);
  if (!numbers) raiseBadChildren();
  COSID cls("vantel.graphics.Graphics");
  if (n == 1) {
    COSInterfacePtr only = objectOf(numbers[0]);
    if (only->isDestroyed() || !only->getClass()) raiseBadChildren();
    cls = only->getClass()->getID();
  }
  Mprotected_vxArray result(omCreateVCOSMatrix(1, n, cls), true);
  for (std::size_t i = 0; i < n; ++i) omSetArrayElement(result.get(), i, objectOf(numbers[i]));
  return result;
}

vxArray* ChildStrategy::createVxArrayFromCOSInterfaceVector(const ChildList& list) {
  if (list.empty()) return omCreateVCOSEmpty(placeholderId());
  matrix::unique_vxArray result(omCreateVCOSMatrix(list.size(), 1, placeholderId()));
  COSInterfacePtr* out = vxGetObjectElements(result.get());
  std::copy(list.begin(), list.end(), out);
  omSetClassOfHeterogeneousArray(result.get());
  return result.release();
}

ChildList ChildStrategy::pushVxArrayEntriesIntoVector(const vxArray* array) {
  ChildList list;
  if (!array || vxIsEmpty(array)) return list;
  if (!omIsVCOS(array)) raiseBadChildren();
  list.reserve(vxGetNumberOfElements(array));
  for (std::size_t i = 0; i < vxGetNumberOfElements(array); ++i) list.push_back(omGetArrayElement(array, i));
  return list;
}

// ---- DefaultChildStrategy

DefaultChildStrategy::~DefaultChildStrategy() = default;

void DefaultChildStrategy::processNewListOfChildren(ChildManager* manager, const ChildList& newList,
                                                    const ChildList& oldList) {
  if (!isValidPermutation(newList, oldList)) throw Error("VANTEL:sg:BadChildrenPermutation");
  if (!isScreenPermittedPermutation(newList)) {
    vxWarningMsgId(i18n::Message::fromParts("VANTEL:sg:default_child_strategy", "IllegalPermutation"));
    return;
  }
  if (!preValidate(manager)) return;
  try {
    unhookChildrenFromTree(manager, newList);
    rehookChildrenToParent(manager, newList);
  } catch (...) {
    // A move that fails half way (a listener or a default that raises while
    // a child is hooked again) would leave the children unhooked after it:
    // every child of the old list goes back, in the old order.
    try {
      unhookChildrenFromTree(manager, oldList);
      rehookChildrenToParent(manager, oldList);
    } catch (...) {
      // The first error is the one to report.
    }
    throw;
  }
  postProcess(manager);
}

bool DefaultChildStrategy::isShowHiddenHandlesOn() {
  COSInterfacePtr root = RootInstance::getRootInstance(NullTolerance::Refuse);
  static const COSID name("ShowHiddenHandles");
  const COSPropInfo* property = root->findPropertyInfo(name);
  if (!property) return false;
  return readRaw(root.get(), property, [](COSValue v) { return v.word() != 0; });
}

namespace {

// The value that unhooks a child: an empty placeholder array, made once
// (it holds no object, and a setter only borrows it).
const vxArray* unhookedValue() {
  static vxArray* const value = [] {
    vxArray* a = omCreateVCOSEmpty(placeholderId());
    vxSetArrayScope(a, vxSCOPE_PERSISTENT);
    return a;
  }();
  return value;
}

// The owner value of the rehooking under way, made once per pass rather
// than once per child.
struct OwnerValue {
  const COSInterface* owner = nullptr;
  const vxArray* value = nullptr;
};
OwnerValue currentOwner;

class OwnerValueScope {
 public:
  explicit OwnerValueScope(const COSInterfacePtr& owner)
      : saved_(currentOwner), value_(owner ? omCreateVCOSScalar(owner) : nullptr) {
    if (value_) currentOwner = {owner.get(), value_.get()};
  }
  ~OwnerValueScope() { currentOwner = saved_; }
  OwnerValueScope(const OwnerValueScope&) = delete;
  OwnerValueScope& operator=(const OwnerValueScope&) = delete;

 private:
  OwnerValue saved_;
  matrix::unique_vxArray value_;
};

}  // namespace

void DefaultChildStrategy::unhookChildrenFromTree(const ChildManager* manager, const ChildList& list) {
  const COSInterfacePtr owner = manager->getOwnerObject();  // held for the whole step
  for (const COSInterfacePtr& child : list)
    if (child && !child->isDestroyed()) processChildUnhooking(manager, child);
}

void DefaultChildStrategy::processChildUnhooking(const ChildManager*, const COSInterfacePtr& child) {
  if (!child || child->isDestroyed()) return;
  static const COSID parent("Parent");
  COSPropInfo* property = child->findPropertyInfo(parent);
  if (!property) return;
  property->setValue(child.get(), COSValue(unhookedValue()));
}

void DefaultChildStrategy::processChildRehooking(const ChildManager* manager, const COSInterfacePtr& child) {
  if (!child || child->isDestroyed()) return;
  static const COSID parent("Parent");
  const COSInterfacePtr owner = manager->getOwnerObject();
  Mprotected_vxArray made;
  const vxArray* value = currentOwner.value;
  if (!value || currentOwner.owner != owner.get()) {
    made.reset(omCreateVCOSScalar(owner));
    value = made.get();
  }
  child->findPropertyInfo(parent)->setValue(child.get(), COSValue(value));
}

bool DefaultChildStrategy::preValidate(const ChildManager* manager) { return manager->validate(); }

void DefaultChildStrategy::postProcess(const ChildManager*) {}

void DefaultChildStrategy::rehookChildrenToParent(const ChildManager* manager, const ChildList& list) {
  const OwnerValueScope ownerValue(manager->getOwnerObject());
  for (auto it = list.rbegin(); it != list.rend(); ++it) processChildRehooking(manager, *it);
}

void DefaultChildStrategy::partitionSGObjects(const ChildList& list, ChildList& components, ChildList& others) {
  const auto split = std::find_if(list.begin(), list.end(), isChildNotGBTObject);
  components.assign(list.begin(), split);
  others.assign(split, list.end());
}

}  // namespace sgutils
