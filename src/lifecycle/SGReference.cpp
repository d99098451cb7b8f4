// The reference blocks: SGReference with its stage hooks and the applying-
// defaults order, the storage and property-handler blocks, the event data of
// "Reset", and the process-wide hook table through which later parts of the
// library join the frame.
#include "sgutils/lifecycle/SGReference.h"

#include <atomic>

#include "foundation/log/Logger.h"
#include "sgutils/startup/FrameHooks.h"
#include "sgutils/startup/Namespaces.h"
#include "sgutils/startup/PerInstance.h"
#include "sgutils/classinfo/ResetEI.h"
#include "sgutils/classinfo/ResetGraphicsEvent.h"
#include "sgutils/lifecycle/SGPropHandler.h"
#include "sgutils/lifecycle/SGStorage.h"
#include "src/classinfo/ClassLookup.h"
#include "vx/matrix.h"

namespace sgutils {
FrameHooks& frameHooks() noexcept {
  static FrameHooks hooks;
  return hooks;
}
}  // namespace sgutils

namespace {
std::atomic<bool> abortSet{false};
}

SGReference::~SGReference() { releaseCOSReference(); }

void SGReference::Setup(COSInterfacePtr /*object*/) { setApplyingDefaults(false); }
void SGReference::SetupFailed(COSInterfacePtr /*object*/) {}
void SGReference::CreationComplete(COSInterfacePtr /*object*/) {}
void SGReference::ApplyingDefaults(COSInterfacePtr /*object*/) { setApplyingDefaults(true); }
void SGReference::DefaultsApplied(COSInterfacePtr /*object*/, bool /*fromReset*/) { setApplyingDefaults(false); }

namespace {
// Whether the generated hooks' trace lines are wanted: then every hook runs.
bool hookTraceOn() noexcept { return (foundation::log::classGenBits() & foundation::log::kTrace) != 0; }
}  // namespace

// Each runner asks the class's bit before the trace word: most blocks that
// act have their bit set, and the rest answer without a call.
void SGReference::runSetup(const COSInterfacePtr& object, unsigned acts) {
  if ((acts & kSetupActs) || hookTraceOn() || !isLiveForHooks(object))
    Setup(object);
  else
    setApplyingDefaults(false);
}

void SGReference::runCreationComplete(const COSInterfacePtr& object, unsigned acts) {
  if ((acts & kCreationCompleteActs) || hookTraceOn() || !isLiveForHooks(object))
    CreationComplete(object);
}

void SGReference::runApplyingDefaults(const COSInterfacePtr& object) {
  if ((stageHooksThatAct() & kApplyingDefaultsActs) || hookTraceOn() || !isLiveForHooks(object))
    ApplyingDefaults(object);
  else
    setApplyingDefaults(true);
}

void SGReference::runDefaultsApplied(const COSInterfacePtr& object, bool fromReset) {
  if ((stageHooksThatAct() & kDefaultsAppliedActs) || hookTraceOn() || !isLiveForHooks(object))
    DefaultsApplied(object, fromReset);
  else
    setApplyingDefaults(false);
}

void SGReference::applyDefaultProperties(COSInterfacePtr parent, bool fromReset) {
  COSInterfacePtr object = getCOSReference();
  runApplyingDefaults(object);
  const sgutils::PropValuePairs pairs = getDefaultPropValuePairs(parent);
  if (!pairs.empty()) {
    if (auto setter = sgutils::frameHooks().defaultPairsSetter) setter(object, pairs, fromReset);
  }
  runDefaultsApplied(object, fromReset);
}

void SGReference::clearDefaultProperty() {
  if (auto clearer = sgutils::frameHooks().defaultClearer) clearer(*this);
}

sgutils::PropValuePairs SGReference::getDefaultPropValuePairs(const COSInterfacePtr& parent) {
  sgutils::PropValuePairs pairs;
  if (auto collect = sgutils::frameHooks().defaultPairs) collect(*this, parent, pairs);
  return pairs;
}

bool SGReference::getAbortSet() noexcept { return abortSet.load(std::memory_order_relaxed); }
void SGReference::setAbortSet(bool value) noexcept { abortSet.store(value, std::memory_order_relaxed); }

COSClass* SGReference::getClassInstance() {
  struct Tag;
  return sgutils::cachedClass<Tag>(graphics::internal::getNamespace(), "ReferenceObject");
}

COSClass* SGPropHandler::getClassInstance() {
  struct Tag;
  return sgutils::cachedClass<Tag>(graphics::internal::getNamespace(), "GraphicsPropertyHandler");
}

// A storage object's hooks only let go of the pointer they are given.
void SGStorage::Setup(COSInterfacePtr object) { object.reset(); }
void SGStorage::SetupFailed(COSInterfacePtr object) { object.reset(); }
void SGStorage::CreationComplete(COSInterfacePtr object) { object.reset(); }
void SGStorage::ApplyingDefaults(COSInterfacePtr object) { object.reset(); }
void SGStorage::DefaultsApplied(COSInterfacePtr object, bool) { object.reset(); }

COSClass* SGStorage::getClassInstance() {
  struct Tag;
  return sgutils::cachedClass<Tag>(graphics::internal::getNamespace(), "StorageObject");
}

ResetGraphicsEvent::ResetGraphicsEvent(COSInterface* source) : COSEventData(source, ResetEI::eventId()) {}
ResetGraphicsEvent::~ResetGraphicsEvent() = default;
