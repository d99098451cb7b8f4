// Event descriptions, event data and listeners.
#include "vcos/COSEventInfo.h"

#include "vcos/COSEventData.h"
#include "vcos/COSEventT.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/FaultInjection.h"

const char* COSEventInfo::getDescription() const { return ""; }
const char* COSEventInfo::getDetailedDescription() const { return ""; }
bool COSEventInfo::isHidden() const { return false; }
COSID COSEventInfo::getDataClassID() const {
  static const COSID id("event.EventData");
  return id;
}
MemberAccess COSEventInfo::getSendAccess() const { return PublicAccess; }
const ExtendedMemberAccess* COSEventInfo::getExtendedSendAccess() const { return nullptr; }
MemberAccess COSEventInfo::getListenAccess() const { return PublicAccess; }
const ExtendedMemberAccess* COSEventInfo::getExtendedListenAccess() const { return nullptr; }
void COSEventInfo::notifyAdd(COSInterface*, COSListener*) {}
void COSEventInfo::notifyRemove(COSInterface*, COSListener*) {}
bool COSEventInfo::isDestructible() const { return true; }

COSEventT::COSEventT(COSID name, MemberAccess sendAccess, MemberAccess listenAccess, COSID dataClass,
                     const char* description)
    : name_(name), send_(sendAccess), listen_(listenAccess), dataClass_(dataClass), description_(description ? description : "") {}
const char* COSEventT::getName() const { return name_.c_str(); }
const char* COSEventT::getDescription() const { return description_.c_str(); }
COSID COSEventT::getDataClassID() const { return dataClass_ ? dataClass_ : COSEventInfo::getDataClassID(); }
MemberAccess COSEventT::getSendAccess() const { return send_; }
MemberAccess COSEventT::getListenAccess() const { return listen_; }

COSEventData::COSEventData(COSInterface* source, COSID eventName)
    : COSInterface(COSKind::EventData), source_(source, COSWeakReference), eventName_(eventName) {}
COSEventData::~COSEventData() = default;
void* COSEventData::getUserData() const { return nullptr; }
void COSEventData::releaseUserData() {}

COSListenerOp::~COSListenerOp() = default;

namespace {
class FunctionListenerOp final : public COSListenerOp {
 public:
  explicit FunctionListenerOp(std::function<void(COSInterface*, COSEventData*)> fn) : fn_(std::move(fn)) {}
  void callback(COSInterface* source, COSEventData* data) override { fn_(source, data); }

 private:
  std::function<void(COSInterface*, COSEventData*)> fn_;
};
}  // namespace

COSListenerOp* COSListenerOp::fromFunction(std::function<void(COSInterface*, COSEventData*)> fn) {
  return new FunctionListenerOp(std::move(fn));
}

COSListener::COSListener(COSListenerOp* op) : COSInterface(COSKind::Listener), op_(op) {}
COSListener::~COSListener() = default;

COSInterfacePtr COSListener::createListener(COSListenerOp* op) {
  assert(op && "a listener needs an op");
  return COSInterfacePtr(new COSListener(op));
}

COSListener* COSListener::toListener(const COSInterfacePtr& p) noexcept {
  return p && p->getKind() == COSKind::Listener ? static_cast<COSListener*>(p.get()) : nullptr;
}

bool COSListener::readsEventData() const noexcept { return op_->readsEventData(); }

bool COSListener::mayRunFor(COSInterface* source) const noexcept {
  return isEnabled() && (running_ == 0 || recursive_) && op_->mayRunFor(source);
}

bool COSListener::mayRunForInstancesOf(const COSClass* cls) const noexcept { return op_->mayRunForInstancesOf(cls); }

void COSListener::fire(COSInterface* source, COSEventData* data) {
  if (!isEnabled() || (running_ > 0 && !recursive_)) return;
  vcos::fault::at(vcos::fault::Point::Listener);
  COSInterfacePtr self(this);  // the callback may remove the last registration
  ++running_;
  struct Done {
    int& n;
    ~Done() { --n; }
  } done{running_};
  op_->callback(source, data);
}
