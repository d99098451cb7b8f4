// The running callbacks and the queue of those that waited for them.
#include "sgdatatypes/CallbackContext.h"

#include <deque>
#include <vector>

#include "sgdatatypes/BusyAction.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSEventData.h"
#include "vcos/COSPropInfo.h"

namespace graphics::datatype {
namespace {

struct Running {
  COSInterface* source;
  bool interruptible;
};

struct Queued {
  COSInterfacePtr source;
  COSInterfacePtr data;
  VCallback callback;
};

std::vector<Running>& running() {
  static std::vector<Running> stack;
  return stack;
}

std::deque<Queued>& queue() {
  static std::deque<Queued> pending;
  return pending;
}

// The word a property of `source` holds, or `fallback` when it has none.
template <class Read>
auto readProperty(COSInterface* source, const COSID& name, Read read, decltype(read(COSValue())) fallback) {
  if (!source || source->isDestroyed()) return fallback;
  COSPropInfo* property = source->findPropertyInfo(name);
  if (!property) return fallback;
  const BorrowedPropertyValue value = BorrowedPropertyValue::readDirect(source, property);
  return read(value.get());
}

}  // namespace

CallbackContext::Scope::Scope(COSInterface* source, bool interruptible) {
  running().push_back({source, interruptible});
}

CallbackContext::Scope::~Scope() { running().pop_back(); }

COSInterfacePtr CallbackContext::currentObject() {
  if (running().empty()) return nullptr;
  COSInterface* source = running().back().source;
  return source && !source->isDestroyed() ? COSInterfacePtr(source) : nullptr;
}

std::size_t CallbackContext::depth() noexcept { return running().size(); }

bool CallbackContext::isBlocked() noexcept { return !running().empty() && !running().back().interruptible; }

void CallbackContext::enqueue(COSInterface* source, COSInterface* data, VCallback callback) {
  queue().push_back({COSInterfacePtr(source), COSInterfacePtr(data), std::move(callback)});
}

std::size_t CallbackContext::queuedCount() noexcept { return queue().size(); }

void CallbackContext::runQueued() {
  while (!queue().empty() && !isBlocked()) {
    Queued next = std::move(queue().front());
    queue().pop_front();
    if (!next.source || next.source->isDestroyed()) continue;
    Scope scope(next.source.get(), isInterruptible(next.source.get()));
    next.callback.execute(next.source.get(), static_cast<COSEventData*>(next.data.get()));
  }
}

void CallbackContext::clearQueue() noexcept { queue().clear(); }

bool CallbackContext::isInterruptible(COSInterface* source) {
  static const COSID name("Interruptible");
  return readProperty(source, name, [](COSValue v) { return v.asBool(); }, true);
}

bool CallbackContext::cancelsWhenBusy(COSInterface* source) {
  static const COSID name("BusyAction");
  return readProperty(
      source, name,
      [](COSValue v) {
        const auto* b = v.asPointer<const unsigned char>();
        return b && *b == static_cast<unsigned char>(BusyAction::Cancel);
      },
      false);
}

}  // namespace graphics::datatype
