// The copy transaction: planning, the two passes, getCopy and the result.
#include "sgutils/copy/CopyContextImpl.h"

#include <algorithm>
#include <cstdint>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/WarningChannel.h"
#include "foundation/i18n/Message.h"
#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableData.h"
#include "sgutils/defaults/DefaultWalkScope.h"
#include "sgutils/tree/ScopeShowHiddenHandlesOn.h"
#include "src/copy/ArrayValue.h"
#include "src/copy/ClassCopyPlan.h"
#include "src/copy/CopyClient.h"
#include "src/copy/CopyElement.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSPropInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace sgutils {

namespace {

const COSID& placeholderId() {
  static const COSID id("vantel.graphics.GraphicsPlaceholder");
  return id;
}
const COSID& contextClassId() {
  static const COSID id("vantel.graphics.internal.CopyContext");
  return id;
}

// The name looked up on an object whose class has no "Children" of its own.
const COSID& childrenName() {
  static const COSID id("Children");
  return id;
}

// The whole child list of an object, hidden children included (the caller
// holds ScopeShowHiddenHandlesOn), read once through `property`, its
// "Children". A value that is an array as it is (`passesArrays`) is used as
// read and given back at the end of the scope: no copy of it is made, which
// matters for the many leaves whose list is empty. Other values are
// converted to an array of their own.
class ChildrenRead {
 public:
  ChildrenRead(const COSClient* client, const COSInterfacePtr& object, COSPropInfo* property, bool passesArrays)
      : client_(client), object_(object.get()), property_(property) {
    if (passesArrays) {
      value_ = object->getPropertyValue(client, property);
      borrowed_ = true;
      array_ = value_.asPointer<const vxArray>();
      return;
    }
    const COSDataTypePtr type = property->getDataType();
    if (!copy::hasArrayForm(type)) return;
    const COSValue value = object->getPropertyValue(client, property);
    struct Release {
      const COSClient* c;
      COSInterface* o;
      const COSPropInfo* p;
      COSValue v;
      ~Release() { o->releasePropertyValue(c, p, v); }
    } release{client, object.get(), property, value};
    owned_ = copy::toArray(type, value);
    array_ = owned_.get();
  }
  ~ChildrenRead() {
    if (borrowed_) object_->releasePropertyValue(client_, property_, value_);
  }
  ChildrenRead(const ChildrenRead&) = delete;
  ChildrenRead& operator=(const ChildrenRead&) = delete;
  const vxArray* array() const noexcept { return array_; }

 private:
  const COSClient* client_;
  COSInterface* object_;
  const COSPropInfo* property_;
  COSValue value_;
  bool borrowed_ = false;
  matrix::unique_vxArray owned_;
  const vxArray* array_ = nullptr;
};

// Asks the cache for an object's room ahead of its turn. The passes go
// through every object of the plan once, and each object's values lie
// spread over its room: in a tree larger than the cache, fetching the next
// objects while one is worked on overlaps their misses instead of meeting
// them one after another. A fetch never faults, whatever the address.
void fetchAhead(const COSInterface* object, const copy::ClassCopyPlan* plan) noexcept {
  if (!object || !plan || !plan->roomSpan) return;
  const char* line = reinterpret_cast<const char*>(object);
  for (const char* const end = line + plan->roomSpan; line < end; line += 64) __builtin_prefetch(line);
}

// How many tasks ahead a pass fetches.
constexpr std::size_t kFetchAhead = 3;

// The task's copy, or null when it has none or it was deleted.
COSInterfacePtr liveCopyOf(const CopyTask& task) {
  if (!task.copy || task.copy->isDestroyed()) return nullptr;
  return task.copy;
}

}  // namespace

CopyContextImpl::CopyContextImpl(const COSInterfacePtr& parent, const std::vector<COSInterfacePtr>& sourceList)
    : destinationParent(parent), sources(sourceList) {
  destinationParentArray.reset(parent ? omCreateVCOSScalar(parent) : omCreateVCOSEmpty(placeholderId()));
  copySourcesArray.reset(omCreateVCOSMatrix(sources.size(), 1, placeholderId()));
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (sources[i]) omSetArrayElement(copySourcesArray.get(), i, sources[i]);
  omSetClassOfHeterogeneousArray(copySourcesArray.get());
  contextObject.reset(omCreateVCOSScalar(omWrapData(static_cast<void*>(this), COSClass::getClass(contextClassId()))));

  try {
    addRootTask();
    // One guard for the whole plan: every fetch of children sees hidden ones.
    ScopeShowHiddenHandlesOn showHidden;
    for (auto it = sources.rbegin(); it != sources.rend(); ++it) planSubtree(*it, &tasks.front());
  } catch (...) {
    // No destructor runs for a constructor that throws: the context object
    // must not outlive this instance.
    const COSInterfacePtr object = omGetArrayElement(contextObject.get(), 0);
    if (object && !object->isDestroyed() && !object->isBeingDestroyed()) object->deleteObject(copy::contextClient());
    throw;
  }
}

CopyContextImpl::~CopyContextImpl() {
  const COSInterfacePtr object = omGetArrayElement(contextObject.get(), 0);
  if (object && !object->isDestroyed() && !object->isBeingDestroyed()) {
    try {
      object->deleteObject(copy::contextClient());
    } catch (...) {
      // A listener's error on the way out cannot be reported from here.
    }
  }
}

CopyContextImpl* CopyContextImpl::of(const COSInterface* object) noexcept {
  if (!object || object->isDestroyed()) return nullptr;
  return static_cast<CopyContextImpl*>(object->getInstanceData(contextClassId()));
}

void CopyContextImpl::addRootTask() {
  CopyTask& root = tasks.emplace_back();
  root.context = this;
  root.state = CopyTask::kConnected;
  const bool live = destinationParent && !destinationParent->isDestroyed();
  root.className = live ? destinationParent->getClass()->getID() : placeholderId();
  root.copy = destinationParent;
  root.copyArray.reset(destinationParent ? omCreateVCOSScalar(destinationParent) : omCreateVCOSEmpty(placeholderId()));
}

void CopyContextImpl::planSubtree(const COSInterfacePtr& source, CopyTask* parentTask) {
  if (!Copyable::isCopyable(source.get())) {
    if (source && !source->isDestroyed())
      foundation::core::except::WarningChannel::instance().issue(
          i18n::Message("VANTEL:copyobj:ObjectNotCopied", {source->getClass()->getName()}));
    return;
  }
  addTask(source, parentTask);
  ++topLevelCount;
  const COSClient* client = COSGetPublicClient();
  // By index: the deque grows while it is walked.
  for (std::size_t k = tasks.size() - 1; k < tasks.size(); ++k) {
    CopyTask* task = &tasks[k];
    // A leaf of a class without Children, and without properties of its
    // own, is not looked up by name.
    if (task->plan && task->plan->noChildren && !vcos::hasDynamicProperties(task->source.get())) continue;
    const bool fromPlan = task->plan && task->plan->children;
    COSPropInfo* property = fromPlan ? task->plan->children : task->source->findPropertyInfo(childrenName());
    if (!property) continue;  // no Children: no children
    const ChildrenRead read(client, task->source, property,
                            fromPlan ? task->plan->childrenPassArrays : copy::passesArrays(property->getDataType()));
    const vxArray* children = read.array();
    if (!children || !omIsVCOS(children)) continue;
    const std::size_t count = vxGetNumberOfElements(children);
    if (count == 0) continue;
    taskMap.reserve(taskMap.size() + count);
    // The list is newest first: walking it backwards plans the oldest child
    // first.
    for (std::size_t i = count; i-- > 0;) {
      const COSInterfacePtr child = omGetArrayElement(children, i);
      if (isCopyable(child.get())) addTask(child, task);
    }
  }
}

CopyTask* CopyContextImpl::addTask(const COSInterfacePtr& source, CopyTask* parentTask) {
  if (!source) return nullptr;
  if (taskMap.contains(source.get())) throw Error("VANTEL:copyobj:DegenerateCopy");
  CopyTask& task = tasks.emplace_back();
  task.parentTask = parentTask;
  task.className = source->isDestroyed() ? placeholderId() : source->getClass()->getID();
  task.source = source;
  if (!source->isDestroyed()) task.plan = planOf(source.get());
  task.identity = source.get();
  task.context = this;
  taskMap.insert(task.identity, &task);
  return &task;
}

bool CopyContextImpl::isCopyable(const COSInterface* object) {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return false;
  const COSClass* cls = object->getClass();
  if (!cls) return false;
  if (cls != lastClass) {
    lastClass = cls;
    lastClassCopyable = cls->isSubclassOf(Copyable::classID());
    lastPlan = nullptr;
  }
  if (!lastClassCopyable) return false;
  const CopyableData* data = Copyable::dataOf(object);
  return data && data->copyable;
}

const copy::ClassCopyPlan* CopyContextImpl::planOf(const COSInterface* object) {
  if (object->getClass() != lastClass) {
    lastClass = object->getClass();
    lastClassCopyable = lastClass && lastClass->isSubclassOf(Copyable::classID());
    lastPlan = nullptr;
  }
  if (!lastPlan) lastPlan = &copy::ClassCopyPlan::of(object);
  return lastPlan;
}

CopyTask* CopyContextImpl::findTask(const COSInterface* object) const noexcept {
  return taskMap.find(object);
}

void CopyContextImpl::connect(CopyTask& task) { copy::runConnect(task, copy::contextClient()); }

vxArray* CopyContextImpl::run() {
  try {
    const COSClient* client = copy::contextClient();
    // Siblings are connected one after another under one parent copy: the
    // defaults of its ancestors are looked for once while none apply.
    const DefaultWalkScope walkOnce;
    // Tasks stay where they are until the context goes, so a step needs no
    // reference of its own to the task it runs.
    // `ahead` walks kFetchAhead tasks in front (no task is added meanwhile).
    const auto fetchStart = [this] {
      return tasks.begin() + static_cast<std::ptrdiff_t>(std::min(kFetchAhead, tasks.size()));
    };
    auto ahead = fetchStart();
    for (CopyTask& task : tasks) {
      if (ahead != tasks.end()) {
        fetchAhead(ahead->source.get(), ahead->plan);
        ++ahead;
      }
      if (task.state == CopyTask::kPlanned) copy::runCopyElement(task, client);
    }
    ahead = fetchStart();
    for (CopyTask& task : tasks) {
      if (ahead != tasks.end()) {
        fetchAhead(ahead->copy.get(), ahead->plan);
        ++ahead;
      }
      if (task.state == CopyTask::kCopied) connect(task);
    }
    matrix::unique_vxArray result(omCreateVCOSMatrix(topLevelCount, 1, placeholderId()));
    std::size_t next = 0;
    for (const COSInterfacePtr& source : sources) {
      CopyTask* task = findTask(source.get());
      if (!task) continue;
      if (task->state == CopyTask::kPlanned) copy::runCopyElement(*task, client);
      omSetArrayElement(result.get(), next++, liveCopyOf(*task));
    }
    omSetClassOfHeterogeneousArray(result.get());
    return result.release();
  } catch (...) {
    deleteCopies();
    throw;
  }
}

void CopyContextImpl::deleteCopies() noexcept {
  // Children before their parents: the plan is breadth first.
  for (auto it = tasks.rbegin(); it != tasks.rend(); ++it) {
    CopyTask& task = *it;
    if (!task.source) continue;
    // An override's answer is in copyArray even when it was refused.
    COSInterfacePtr copy;
    if (task.copyArray) {
      if (!omIsVCOS(task.copyArray.get()) || vxIsEmpty(task.copyArray.get())) continue;
      copy = omGetLiveArrayElement(task.copyArray.get(), 0);
    } else {
      copy = liveCopyOf(task);
    }
    if (!copy || copy->isBeingDestroyed()) continue;
    try {
      copy->deleteObject(copy::contextClient());
    } catch (...) {
      // Keep deleting the others; the first error is what the caller sees.
    }
  }
}

vxArray* CopyContextImpl::getCopy(const COSClient*, const vxArray* array) {
  if (vxIsEmpty(array)) return vxCreateSharedDataCopy(array);
  if (!omIsVCOS(array)) return omCreateVCOSEmpty(placeholderId());
  std::vector<COSInterfacePtr> kept;
  const std::size_t n = vxGetNumberOfElements(array);
  kept.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    CopyTask* task = findTask(omGetArrayElement(array, i).get());
    if (!task) continue;
    if (task->state == CopyTask::kPlanned) copy::runCopyElement(*task, copy::contextClient());
    COSInterfacePtr copy = liveCopyOf(*task);
    if (copy && !copy->isDestroyed() && !copy->isBeingDestroyed()) kept.push_back(std::move(copy));
  }
  matrix::unique_vxArray result(omCreateVCOSMatrix(kept.size(), 1, placeholderId()));
  for (std::size_t i = 0; i < kept.size(); ++i) omSetArrayElement(result.get(), i, kept[i]);
  omSetClassOfHeterogeneousArray(result.get());
  return result.release();
}

vxArray* CopyContextImpl::willBeCopied(const COSClient*, const vxArray* array) const {
  matrix::unique_vxArray result(vxCreateLogicalMatrix(vxGetM(array), vxGetN(array)));
  if (!omIsVCOS(array)) return result.release();
  bool* flags = vxGetLogicals(result.get());
  const std::size_t n = vxGetNumberOfElements(array);
  for (std::size_t i = 0; i < n; ++i) flags[i] = findTask(omGetArrayElement(array, i).get()) != nullptr;
  return result.release();
}

}  // namespace sgutils
