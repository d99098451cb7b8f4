// The visitors that sort properties for a copy, and the per-class plan
// built from them.
#include <algorithm>
#include <cstring>
#include <memory>
#include <unordered_map>

#include "src/copy/ArrayValue.h"
#include "src/copy/ClassCopyPlan.h"
#include "src/copy/CopyElement.h"
#include "src/copy/CopyElementWithCallbacksVisitor.h"
#include "src/copy/InsertCopyVisitor.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/PropertyRouteEpoch.h"

namespace sgutils::copy {

bool PropertyCopyVisitor::has(const COSPropInfo* property) const {
  const COSID name(property->getName());
  for (const COSID& n : names_)
    if (n == name) return true;
  return false;
}

void PropertyCopyVisitor::add(const COSPropInfo* property, PropertyCopyKind kind) {
  entries_.push_back({property, kind, property->getDataType(), nullptr, -1, property == copyableFlagProperty()});
  names_.emplace_back(property->getName());
}

bool CopyElementVisitor::visitProperty(COSClass*, COSPropInfo* property) {
  if (has(property)) return true;
  const PropertyCopyKind kind = Copyable::classify(property, object);
  if (kind == PropertyCopyKind::Value || kind == PropertyCopyKind::DeepCopy) add(property, kind);
  return true;
}

namespace {
bool isCallbackType(const COSDataTypePtr& type) {
  if (!type) return false;
  const char* name = type->getName();
  const std::size_t n = std::strlen(name);
  constexpr std::size_t k = sizeof("Callback") - 1;
  return std::strcmp(name, "Callback") == 0 || (n > k && name[n - k - 1] == '.' && std::strcmp(name + n - k, "Callback") == 0);
}
}  // namespace

bool CopyElementWithCallbacksVisitor::visitProperty(COSClass* definingClass, COSPropInfo* property) {
  CopyElementVisitor::visitProperty(definingClass, property);
  if (has(property) || Copyable::classify(property, object) != PropertyCopyKind::Leave) return true;
  if ((isCallbackType(property->getDataType()) || std::strcmp(property->getName(), "ApplicationData") == 0) &&
      !property->isDependent())
    add(property, PropertyCopyKind::Value);
  return true;
}

bool InsertCopyVisitor::visitProperty(COSClass*, COSPropInfo* property) {
  if (has(property)) return true;
  if (Copyable::classify(property, object) == PropertyCopyKind::Reconnect) add(property, PropertyCopyKind::Reconnect);
  return true;
}

namespace {
// Binds the value entries whose faces copy block to block to their block's
// class, each class once in `classes`.
void bindBlocks(std::vector<PropertyCopyEntry>& entries, std::vector<COSID>& classes) {
  for (PropertyCopyEntry& entry : entries) {
    if (entry.kind != PropertyCopyKind::Value) continue;
    auto* face = dynamic_cast<PropInfoBase*>(const_cast<COSPropInfo*>(entry.property));
    if (!face || !face->copiesBetweenBlocks()) continue;
    auto found = std::find(classes.begin(), classes.end(), face->getClassID());
    if (found == classes.end()) {
      if (classes.size() == ClassCopyPlan::kMaxBlocks) continue;
      found = classes.insert(classes.end(), face->getClassID());
    }
    entry.face = face;
    entry.block = static_cast<int>(found - classes.begin());
  }
}
}  // namespace

void ClassCopyPlan::refreshSlots() const {
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  if (slotsKnown && epoch == slotEpoch) return;
  blockSlots.resize(blockClasses.size());
  for (std::size_t b = 0; b < blockClasses.size(); ++b) blockSlots[b] = vcos::blockSlotOf(cls, blockClasses[b]);
  copyableSlot = vcos::blockSlotOf(cls, Copyable::classID());
  roomSpan = 0;  // learnt again from the next object, with the offsets
  offsetsKnown = false;
  layoutLearnt = false;
  slotEpoch = epoch;
  slotsKnown = true;
}

void ClassCopyPlan::learnRoom(const COSInterface* object) const {
  refreshSlots();
  if (layoutLearnt || !object || object->getClass() != cls || !vcos::hasFixedBlocks(object)) return;
  layoutLearnt = true;
  const auto* base = reinterpret_cast<const char*>(object);
  std::ptrdiff_t last = 0;
  bool fits = true;
  const auto reach = [&](int slot) -> std::int32_t {
    if (slot < 0) return 0;
    const auto* block = static_cast<const char*>(vcos::instanceDataAt(object, slot));
    if (!block) return 0;
    const std::ptrdiff_t offset = block - base;
    if (offset > 0) last = std::max(last, offset);
    if (offset <= 0 || offset > INT32_MAX) fits = false;
    return static_cast<std::int32_t>(offset);
  };
  blockOffsets.resize(blockSlots.size());
  for (std::size_t b = 0; b < blockSlots.size(); ++b) blockOffsets[b] = reach(blockSlots[b]);
  copyableOffset = reach(copyableSlot);
  // Blocks lie after the instance in its room; anything else is read by slot.
  offsetsKnown = fits;
  // A room of the usual few kilobytes; anything else is not fetched ahead.
  constexpr std::ptrdiff_t kLine = 64, kMaxRoom = 8192;
  if (last > 0 && last < kMaxRoom) roomSpan = static_cast<std::uint32_t>(last + kLine);
}

const ClassCopyPlan& ClassCopyPlan::of(const COSInterface* object) {
  // Interpreter thread only, as all class-system work; classes live for the
  // process, so a plan does too.
  static std::unordered_map<const COSClass*, std::unique_ptr<ClassCopyPlan>> plans;
  COSClass* cls = object->getClass();
  auto found = plans.find(cls);
  if (found != plans.end()) return *found->second;
  auto plan = std::make_unique<ClassCopyPlan>();
  plan->cls = cls;
  CopyElementVisitor element(object);
  cls->acceptPropertyVisitor(element);
  plan->element = element.entries();
  CopyElementWithCallbacksVisitor withCallbacks(object);
  cls->acceptPropertyVisitor(withCallbacks);
  plan->elementWithCallbacks = withCallbacks.entries();
  InsertCopyVisitor connect(object);
  cls->acceptPropertyVisitor(connect);
  plan->connect = connect.entries();
  bindBlocks(plan->element, plan->blockClasses);
  bindBlocks(plan->elementWithCallbacks, plan->blockClasses);
  static const COSID copyElementName("copyElement"), connectName("connectCopyToTree"), parentName("Parent"),
      childrenName("Children");
  plan->children = cls->findPropertyExact(childrenName);
  if (plan->children) plan->childrenPassArrays = passesArrays(plan->children->getDataType());
  // Without properties added to it, what the object's look-up finds is the
  // class's answer.
  else if (!vcos::hasDynamicProperties(object)) plan->noChildren = !object->findPropertyInfo(childrenName);
  plan->defaultCopyElement = cls->findMethod(copyElementName) == defaultCopyElementMethod();
  plan->defaultConnect = cls->findMethod(connectName) == defaultConnectMethod();
  // A property of the class itself, so the same for every object of it.
  if (COSPropInfo* parent = cls->findPropertyExact(parentName)) {
    plan->parent = parent;
    plan->parentTakesArray = passesArrays(parent->getDataType());
    plan->parentConnect = ParentConnector::find(parent);
  }
  return *plans.emplace(cls, std::move(plan)).first->second;
}

}  // namespace sgutils::copy
