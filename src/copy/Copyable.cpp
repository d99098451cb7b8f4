// The Copyable mixin: the copy test, the classification of properties, and
// the default copyElement, connectCopyToTree and copy.
#include "sgutils/copy/Copyable.h"

#include <array>
#include <cstring>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgutils/copy/CopyContextImpl.h"
#include "sgutils/copy/ParentConnector.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "src/copy/ArrayValue.h"
#include "src/copy/ClassCopyPlan.h"
#include "src/copy/CopyClient.h"
#include "src/copy/CopyElement.h"
#include "src/copy/NamedChildCopyPolicy.h"
#include "src/copy/ReconnectHandleCopyPolicy.h"
#include "src/copy/ShallowCopyPolicy.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FaultInjection.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace sgutils {

COSID Copyable::classID() {
  static const COSID id("vantel.graphics.mixin.internal.Copyable");
  return id;
}

CopyableData* Copyable::dataOf(const COSInterface* object) noexcept {
  return object ? static_cast<CopyableData*>(object->getInstanceData(classID())) : nullptr;
}

bool Copyable::isCopyable(const COSInterface* object) noexcept {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return false;
  if (!object->getClass() || !object->getClass()->isSubclassOf(classID())) return false;
  const CopyableData* data = dataOf(object);
  return data && data->copyable;
}

PropertyCopyKind Copyable::classify(const COSPropInfo* property, const COSInterface* object) {
  if (property->isDependent()) return PropertyCopyKind::Leave;
  if (!property->isCopyAllowed()) return PropertyCopyKind::Leave;
  const SGCustomMetaProperty* meta = SGCustomMetaProperty::of(property);
  if (meta && meta->getReconnectOnCopy()) return PropertyCopyKind::Reconnect;
  static const COSID graphics("vantel.graphics.Graphics");
  if (const auto* handle = static_cast<const SGHandle*>(object ? object->getInstanceData(graphics) : nullptr))
    if (handle->isChildProperty(property->getName())) return PropertyCopyKind::DeepCopy;
  if (meta && meta->getDeepCopy()) return PropertyCopyKind::DeepCopy;
  const char* name = property->getName();
  if (std::strcmp(name, "Parent") == 0 || std::strcmp(name, "Children") == 0) return PropertyCopyKind::Leave;
  return PropertyCopyKind::Value;
}

void Copyable::makeObjectsInArrayNonCopyable(const vxArray* array) {
  if (!array || !omIsVCOS(array)) return;
  const std::size_t n = vxGetNumberOfElements(array);
  for (std::size_t i = 0; i < n; ++i) {
    const COSInterfacePtr element = omGetLiveArrayElement(array, i);
    if (CopyableData* data = dataOf(element.get())) data->copyable = false;
  }
}

namespace copy {
namespace {

// Sets what each policy has onto the copy.
template <class Policy>
void apply(Policy& policy, const COSInterfacePtr& target) {
  if (!policy.hasValue()) return;
  COSValue value;
  policy.getValue(value);
  if (policy.hasValue()) vcos::omCopyPropertyWithNoPermissionCheck(target, policy.property, value);
}

// Whether the target already holds `value` in the property, as its type
// compares. The target is a new object: a write of what it holds would only
// tell observers and views of a change that is none.
bool holds(const PropertyCopyEntry& entry, const COSInterfacePtr& target, COSValue value) {
  if (!entry.type) return false;
  COSPropInfo* property = const_cast<COSPropInfo*>(entry.property);
  const COSValue current = property->getValue(target.get());
  const bool same = entry.type->isEqual(current, value);
  property->releaseValue(target.get(), current);
  return same;
}

// The source's and the target's block of one class; both null when either
// side lacks it.
struct BlockPair {
  const SGReference* from = nullptr;
  SGReference* to = nullptr;
};

void copyProperties(const ClassCopyPlan& plan, const std::vector<PropertyCopyEntry>& entries,
                    const COSInterfacePtr& source, const COSInterfacePtr& target, const COSClient* client,
                    bool valuesOnly) {
  COSInterface* const from = source.get();
  COSInterface* const to = target.get();
  // Both objects of the plan's class (as nearly always): their blocks are
  // found by the indexes kept with the plan, not by class id.
  const bool bySlot = from->getClass() == plan.cls && to->getClass() == plan.cls;
  if (bySlot) plan.learnRoom(from);
  // Both with their blocks at the class's offsets (as nearly always): each
  // block is the object's address plus the offset the plan learnt.
  const bool byOffset = bySlot && plan.offsetsKnown && vcos::hasFixedBlocks(from) && vcos::hasFixedBlocks(to);
  const auto blockOf = [&](const COSInterface* object, std::size_t b) -> void* {
    if (byOffset) {
      const std::int32_t offset = plan.blockOffsets[b];
      return offset ? const_cast<char*>(reinterpret_cast<const char*>(object)) + offset : nullptr;
    }
    if (!bySlot) return object->getInstanceData(plan.blockClasses[b]);
    const int slot = plan.blockSlots[b];
    return slot < 0 ? nullptr : vcos::instanceDataAt(object, slot);
  };
  const auto copyableDataOf = [&](const COSInterface* object) -> const CopyableData* {
    if (byOffset) {
      return plan.copyableOffset
                 ? reinterpret_cast<const CopyableData*>(reinterpret_cast<const char*>(object) + plan.copyableOffset)
                 : nullptr;
    }
    if (bySlot && plan.copyableSlot >= 0)
      return static_cast<const CopyableData*>(vcos::instanceDataAt(object, plan.copyableSlot));
    return Copyable::dataOf(object);
  };
  // Every block the plan names, looked up once per side before the values
  // (a class's faces mostly reach all of them); a pair with a side missing
  // sends its faces the general way.
  std::array<BlockPair, ClassCopyPlan::kMaxBlocks> blocks;
  const std::size_t blockCount = plan.blockClasses.size();
  for (std::size_t b = 0; b < blockCount; ++b) {
    const auto* fromBlock = static_cast<const SGReference*>(blockOf(from, b));
    auto* toBlock = static_cast<SGReference*>(blockOf(to, b));
    if (fromBlock && toBlock) blocks[b] = {fromBlock, toBlock};
  }
  for (const PropertyCopyEntry& entry : entries) {
    if (PropInfoBase* face = entry.face) {
      const BlockPair& pair = blocks[static_cast<std::size_t>(entry.block)];
      if (pair.from) {
        face->copyBetweenBlocks(from, pair.from, pair.to, to);
        continue;
      }
    }
    if (entry.copyableFlag) {
      // Equal flags (a copied object and its new copy are both copyable):
      // nothing to write, as holds() would find through two reads.
      const CopyableData* fromData = copyableDataOf(from);
      const CopyableData* toData = copyableDataOf(to);
      if (fromData && toData && fromData->copyable == toData->copyable) continue;
    }
    if (entry.kind == PropertyCopyKind::Value) {
      ShallowCopyPolicy policy(entry.property, from);
      COSValue value;
      policy.getValue(value);
      if (!holds(entry, target, value))
        vcos::omCopyPropertyWithNoPermissionCheck(target, entry.property, value);
    } else if (!valuesOnly) {
      NamedChildCopyPolicy policy(entry.property, source, client);
      apply(policy, target);
    }
  }
}

// Pushes the task on the source's active tasks for the scope of its
// copyElement, so that the default copyElement finds it.
class ActiveTaskScope {
 public:
  ActiveTaskScope(const COSInterfacePtr& source, CopyTask* task) noexcept
      : data_(source && !source->isDestroyed() ? Copyable::dataOf(source.get()) : nullptr) {
    if (data_) data_->activeTasks.push_back(task);
  }
  ~ActiveTaskScope() {
    if (data_) {
      data_->activeTasks.pop_back();
      if (data_->activeTasks.empty()) data_->activeTasks.shrink_to_fit();
    }
  }
  ActiveTaskScope(const ActiveTaskScope&) = delete;
  ActiveTaskScope& operator=(const ActiveTaskScope&) = delete;

 private:
  CopyableData* data_;
};

const char* classNameOf(const vxArray* array) {
  COSClass* cls = array ? vcos::array::classOf(array) : nullptr;
  return cls ? cls->getName() : "";
}

// Deletes what the default copyElement made for a task whose copyElement
// failed, or returned something else: that copy never became the task's, so
// nothing else would.
void discardAllocatedCopy(CopyTask& task) noexcept {
  COSInterface* made = task.allocatedCopy.get();
  if (!made || made->isDestroyed() || made->isBeingDestroyed()) return;
  const COSInterfacePtr hold(made);
  try {
    made->deleteObject(contextClient());
  } catch (...) {
    // The first error is what the caller sees.
  }
}

}  // namespace

namespace {
const COSMethodInfo* gDefaultCopyElement = nullptr;
const COSMethodInfo* gDefaultConnect = nullptr;
const COSPropInfo* gCopyableFlag = nullptr;

const vxArray* sourceArrayOf(CopyTask& task) {
  if (!task.sourceArray) task.sourceArray.reset(omCreateVCOSScalar(task.source));
  return task.sourceArray.get();
}

// What the default copyElement does once the copy exists: the stored
// defaults and the values, by the class's plan.
void fillCopy(const COSInterfacePtr& source, const COSInterfacePtr& copy, const COSClient* client,
              bool withCallbacks, const ClassCopyPlan& plan) {
  // The defaults stored on the source go with it; the store is no property.
  if (const SGHandle* from = SGHandle::fromObject(source.get()); from && from->getDefaultProp())
    if (SGHandle* to = SGHandle::fromObject(copy.get())) to->setDefaultProp(from->getDefaultProp());
  copyProperties(plan, withCallbacks ? plan.elementWithCallbacks : plan.element, source, copy, client, false);
}

// The default copyElement for a task whose class keeps it: the same work as
// the method, without its arrays, its dispatch and the active-task stack.
void copyElementDirectly(CopyTask& task, const COSClient* client) {
  const COSInterfacePtr& source = task.source;
  source->checkValid();
  COSClass* cls = COSClass::getClass(source->getClass()->getID());
  if (!cls) throw Error("VANTEL:vcos:UnknownClass", source->getClass()->getID().str());
  COSInterfacePtr copy = cls->createInstance(client ? client : COSGetPublicClient(), 0, nullptr);
  task.allocatedCopy = COSInterfacePtr(copy.get(), COSWeakReference);
  // The task takes the copy only when it is filled: a failure leaves it to
  // discardAllocatedCopy.
  fillCopy(source, copy, client, task.context && task.context->getCopyCallbacks(), *task.plan);
  task.copy = std::move(copy);
  task.state = CopyTask::kCopied;
}

void callCopyElement(CopyTask& task, const COSClient* client) {
  if (task.plan && task.plan->defaultCopyElement) {
    copyElementDirectly(task, client);
    return;
  }
  bool performed = false;
  {
    ActiveTaskScope scope(task.source, &task);
    vxArray* out[1] = {nullptr};
    const vxArray* in[1] = {sourceArrayOf(task)};
    static const COSID method("copyElement");
    performed = omCallMethod(task.className, method, client, 1, out, 1, in, true);
    task.copyArray.reset(out[0]);
  }
  const vxArray* copy = task.copyArray.get();
  if (copy && performed && omIsVCOS(copy) && vxGetNumberOfElements(copy) == 1) {
    if (task.allocatedCopy && task.allocatedCopy.get() == omGetArrayElement(copy, 0).get()) {
      task.copy = task.allocatedCopy;
      task.state = CopyTask::kCopied;
      return;
    }
    throw Error("VANTEL:copyobj:IncorrectlyAllocatedCopy", classNameOf(sourceArrayOf(task)));
  }
  throw Error("VANTEL:copyobj:InvalidReturnType", classNameOf(sourceArrayOf(task)));
}

// Whether the source's value of a reconnected property may name an object
// that this transaction copies. A type that lists the objects of its values
// answers without an array being made: naming none of the copied objects
// (an empty menu, a menu outside the copied tree), the copy keeps its own
// value, as the policy would decide. Other types answer yes and the policy
// decides.
bool mayReferIntoCopy(const PropertyCopyEntry& entry, const COSInterfacePtr& source, const CopyContextImpl* context) {
  if (!context) return false;  // the policy finds no copy without a context
  const COSDataType* type = entry.type.get();
  if (!type || type->isVANTELArrayType() || !type->canContainInterfaces()) return true;
  auto* property = const_cast<COSPropInfo*>(entry.property);
  const COSValue value = property->getValue(source.get());
  std::vector<COSInterfacePtr> named;  // allocates only when the value names an object
  try {
    type->getInterfaces(value, named);
  } catch (...) {
    property->releaseValue(source.get(), value);
    throw;
  }
  property->releaseValue(source.get(), value);
  for (const COSInterfacePtr& object : named)
    if (context->isPlanned(object.get())) return true;
  return false;
}

// Hooks the copy under `parent` through the Parent family's connector
// where the set of Parent would be unobserved: the same checks and effects
// without the set's path and the conversion of the parent's array. False:
// not done.
bool connectDirectly(const COSInterfacePtr& copy, COSInterface* parent, const ClassCopyPlan& plan) {
  if (!plan.parentConnect || !parent) return false;
  COSCustomMetaClass* customSet = nullptr;
  if (!copy->isUnobservedPublicSet(plan.parent, customSet) || customSet) return false;
  vcos::fault::at(vcos::fault::Point::PropertySet);  // as the set would
  return plan.parentConnect(copy.get(), parent);
}

// Sets the copy's Parent to the parent's copy (none: left as it is),
// through the client path (its checks, listeners and defaults), then points
// the reconnected properties at the copies.
void connectCopy(const COSInterfacePtr& source, const COSInterfacePtr& copy, const vxArray* parent,
                 CopyContextImpl* context, const ClassCopyPlan& plan, const COSClient* client) {
  if (parent && !vxIsEmpty(parent)) {
    static const COSID parentName("Parent");
    COSPropInfo* property = plan.parent ? plan.parent : copy->findPropertyInfo(parentName);
    if (property) {
      if (plan.parent && plan.parentTakesArray) {
        // The set borrows its value: the parent's array goes as it is.
        copy->setPropertyValue(client, property, COSValue(parent));
      } else {
        const COSDataTypePtr type = property->getDataType();
        if (hasArrayForm(type)) {
          OwnedValue value(type, fromArray(type, parent));
          copy->setPropertyValue(client, property, value.get());
        }
      }
    }
  }
  for (const PropertyCopyEntry& entry : plan.connect) {
    if (!mayReferIntoCopy(entry, source, context)) continue;
    ReconnectHandleCopyPolicy policy(entry.property, source, client, context);
    apply(policy, copy);
  }
}
}  // namespace

void setDefaultMethods(const COSMethodInfo* copyElement, const COSMethodInfo* connect) noexcept {
  gDefaultCopyElement = copyElement;
  gDefaultConnect = connect;
}
const COSMethodInfo* defaultCopyElementMethod() noexcept { return gDefaultCopyElement; }
const COSMethodInfo* defaultConnectMethod() noexcept { return gDefaultConnect; }
void setCopyableFlagProperty(const COSPropInfo* property) noexcept { gCopyableFlag = property; }
const COSPropInfo* copyableFlagProperty() noexcept { return gCopyableFlag; }

const vxArray* copyArrayOf(CopyTask& task) {
  if (!task.copyArray)
    task.copyArray.reset(task.copy ? omCreateVCOSScalar(task.copy)
                                   : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
  return task.copyArray.get();
}

void runCopyElement(CopyTask& task, const COSClient* client) {
  if (!task.plan) task.plan = &ClassCopyPlan::of(task.source.get());
  try {
    callCopyElement(task, client);
  } catch (...) {
    discardAllocatedCopy(task);
    throw;
  }
}

void runConnect(CopyTask& task, const COSClient* client) {
  if (task.plan && task.plan->defaultConnect) {
    CopyTask& parentTask = *task.parentTask;
    COSInterface* parent = parentTask.copy && !parentTask.copy->isDestroyed() ? parentTask.copy.get() : nullptr;
    const bool hooked = connectDirectly(task.copy, parent, *task.plan);
    connectCopy(task.source, task.copy, hooked ? nullptr : copyArrayOf(parentTask), task.context, *task.plan, client);
  } else {
    static const COSID method("connectCopyToTree");
    const vxArray* in[4] = {sourceArrayOf(task), copyArrayOf(task), copyArrayOf(*task.parentTask),
                            task.context->getContextObject()};
    omCallMethod(task.className, method, client, 0, nullptr, 4, in, true);
  }
  task.state = CopyTask::kConnected;
}

void defaultCopyElement(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  if (nrhs < 1) return;
  const auto* input = prhs[0].asPointer<const vxArray>();
  const COSInterfacePtr source = omGetArrayElement(input, 0);
  source->checkValid();
  matrix::unique_vxArray made(omConstructObjectWithClient(source->getClass()->getID(), 0, nullptr, client));
  const COSInterfacePtr copy = omGetArrayElement(made.get(), 0);

  bool withCallbacks = false;
  if (CopyableData* data = Copyable::dataOf(source.get()); data && !data->activeTasks.empty()) {
    CopyTask* task = data->activeTasks.back();
    if (task && vxGetNumberOfElements(made.get()) == 1) {
      task->allocatedCopy = COSInterfacePtr(copy.get(), COSWeakReference);
      withCallbacks = task->context && task->context->getCopyCallbacks();
    }
  }
  fillCopy(source, copy, client, withCallbacks, ClassCopyPlan::of(source.get()));
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(made.release());
}

void defaultConnectCopyToTree(const COSClient* client, int&, COSValue*, int nrhs, const COSValue* prhs) {
  if (nrhs < 4) return;
  const COSInterfacePtr source = omGetArrayElement(prhs[0].asPointer<const vxArray>(), 0);
  const COSInterfacePtr copy = omGetArrayElement(prhs[1].asPointer<const vxArray>(), 0);
  const auto* parent = prhs[2].asPointer<const vxArray>();
  const COSInterfacePtr contextObject = omGetArrayElement(prhs[3].asPointer<const vxArray>(), 0);
  connectCopy(source, copy, parent, CopyContextImpl::of(contextObject.get()), ClassCopyPlan::of(source.get()),
              client);
}

void copyMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  const auto* input = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  if (!input || vxIsEmpty(input)) return;
  std::vector<COSInterfacePtr> parents;
  if (nrhs > 1) {
    const auto* parent = prhs[1].asPointer<const vxArray>();
    if (!parent || !omIsVCOS(parent) || vxGetNumberOfElements(parent) != 1)
      throw Error("VANTEL:copyobj:InvalidParentHandle");
    parents.push_back(omGetArrayElement(parent, 0));
  }
  std::vector<COSInterfacePtr> sources;
  const std::size_t n = vxGetNumberOfElements(input);
  sources.reserve(n);
  for (std::size_t i = 0; i < n; ++i) sources.push_back(omGetLiveArrayElement(input, i));
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(CopyContext::doCopyObjects(sources, parents, false));
}

}  // namespace copy

void Copyable::copyValueProperties(const COSInterfacePtr& source, const COSInterfacePtr& target,
                                   const COSClient* client) {
  const copy::ClassCopyPlan& plan = copy::ClassCopyPlan::of(source.get());
  copy::copyProperties(plan, plan.element, source, target, client, true);
}

}  // namespace sgutils
