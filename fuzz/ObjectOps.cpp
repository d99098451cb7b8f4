// Decodes bytes into operations on graphics objects. Each operation takes an
// opcode byte, then the bytes it needs (a missing byte reads as 0). Objects
// are named by their index in a pool of the objects made so far (deleted
// ones stay in it as shells); index bytes past the pool name the root.
#include "ObjectOps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <unordered_set>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgclasses/Theming.h"
#include "sgutils/copy/CopyContext.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSInterface.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgfuzz {
namespace {

using Arr = matrix::unique_vxArray;

constexpr std::size_t kPoolLimit = 24;
constexpr std::size_t kListenerLimit = 16;
constexpr std::size_t kStepLimit = 200;

// A broken promise of the object system: ends the run.
struct Violation {
  std::string what;
};

class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> data) : data_(data) {}
  bool empty() const noexcept { return pos_ >= data_.size(); }
  std::uint8_t next() noexcept { return pos_ < data_.size() ? data_[pos_++] : 0; }

 private:
  std::span<const std::uint8_t> data_;
  std::size_t pos_ = 0;
};

const char* const kClasses[] = {sgclasses::kFigureClass, sgclasses::kAxesClass,  sgclasses::kLineClass,
                                sgclasses::kTextClass,   sgclasses::kPatchClass, sgclasses::kGroupClass,
                                sgclasses::kContextMenuClass};

struct Registration {
  COSInterfacePtr source;
  COSInterfacePtr listener;
  COSID event;                      // for an event listener
  const COSPropInfo* property;      // for a property listener
  COSPropertyEvent kind;
};

struct State {
  std::vector<COSInterfacePtr> pool;
  std::vector<Registration> listeners;
  std::vector<Arr> values;
};

// Values of every shape the properties meet: valid for some, wrong for most.
std::vector<Arr> makeValues() {
  std::vector<Arr> v;
  auto row = [](std::initializer_list<double> xs) {
    Arr a(vxCreateDoubleMatrix(1, xs.size(), vxREAL));
    std::copy(xs.begin(), xs.end(), vxGetPr(a.get()));
    return a;
  };
  v.emplace_back(vxCreateDoubleMatrix(0, 0, vxREAL));
  for (double d : {0.0, 1.0, -1.0, 2.5, 1e300, std::numeric_limits<double>::quiet_NaN(),
                   std::numeric_limits<double>::infinity()})
    v.emplace_back(vxCreateDoubleScalar(d));
  for (const char* s : {"on", "off", "red", "", "none", "auto", "manual", "--", "o", "callback", "add", "replace",
                        "bold", "center", "#ff8000", "texture of a long text that no property takes as a word"})
    v.emplace_back(vxCreateString(s));
  v.push_back(row({1, 0, 0}));
  v.push_back(row({0.5, 0.5}));
  v.push_back(row({1, 2, 3, 4}));
  v.push_back(row({0, 1, 0, 1, 2, 3}));
  v.push_back(row({-0.0, 2, std::numeric_limits<double>::quiet_NaN()}));
  Arr square(vxCreateDoubleMatrix(3, 3, vxREAL));
  for (int i = 0; i < 9; ++i) vxGetPr(square.get())[i] = i / 9.0;
  v.push_back(std::move(square));
  v.emplace_back(vxCreateCellMatrix(1, 2));
  v.emplace_back(vxCreateLogicalScalar(true));
  const char* field = "a";
  v.emplace_back(vxCreateStructMatrix(1, 1, 1, &field));
  v.emplace_back(omCreateVCOSEmpty(COSID("vantel.graphics.GraphicsPlaceholder")));
  return v;
}

COSInterfacePtr pick(State& s, std::uint8_t b) {
  if (b < s.pool.size()) return s.pool[b];
  return sgclasses::root();
}

void setProperty(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  Arr self(omCreateVCOSScalar(object));
  vxSetProperty(self.get(), 0, name, value);
}

Arr getProperty(const COSInterfacePtr& object, const char* name) {
  Arr self(omCreateVCOSScalar(object));
  return Arr(vxGetProperty(self.get(), 0, name));
}

// The name of a property of the object's class, chosen by a byte.
const char* propertyName(const COSInterfacePtr& object, std::uint8_t b) {
  COSClass* cls = object->getClass();
  if (!cls || cls->getPropertyCount() == 0) return "Visible";
  return cls->getPropertyAt(b % cls->getPropertyCount())->getName();
}

// An operation on a deleted object must raise; `op` is run and must throw.
template <class F>
void onObject(const COSInterfacePtr& object, const char* what, F op) {
  const bool wasDeleted = object->isDestroyed();
  op();
  if (wasDeleted) throw Violation{std::string(what) + " on a deleted object did not raise"};
}

// ---- operations

void opCreate(State& s, Bytes& in) {
  const char* cls = kClasses[in.next() % std::size(kClasses)];
  COSInterfacePtr parent = pick(s, in.next());
  if (s.pool.size() >= kPoolLimit) return;
  COSInterfacePtr made = sgclasses::create(cls, parent);
  if (made) s.pool.push_back(std::move(made));
}

void opSet(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  const char* name = propertyName(o, in.next());
  const std::uint8_t vb = in.next();
  // The top bytes give an object of the pool (or the root) as the value.
  Arr object;
  if (vb >= 0xE0) object.reset(omCreateVCOSScalar(pick(s, vb - 0xE0)));
  const vxArray* value = object ? object.get() : s.values[vb % s.values.size()].get();
  onObject(o, "set", [&] { setProperty(o, name, value); });
}

void opGet(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  const char* name = propertyName(o, in.next());
  onObject(o, "get", [&] { getProperty(o, name); });
}

void opReset(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  SGHandle::Reset(o);
}

// A new parent of any class, the root, a deleted object, nothing, or a number.
void opReparent(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  const std::uint8_t b = in.next();
  Arr value;
  if (b == 0xFF)
    value.reset(vxCreateDoubleMatrix(0, 0, vxREAL));
  else if (b == 0xFE)
    value.reset(vxCreateDoubleScalar(-1));
  else
    value.reset(omCreateVCOSScalar(pick(s, b)));
  onObject(o, "reparent", [&] { setProperty(o, "Parent", value.get()); });
}

// The current children, permuted, shortened, repeated or with a stranger.
void opReorder(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  const std::uint8_t how = in.next();
  const std::uint8_t other = in.next();
  onObject(o, "reorder", [&] {
    Arr children = getProperty(o, "Children");
    std::vector<COSInterfacePtr> list;
    if (children && omIsVCOS(children.get()))
      for (std::size_t i = 0; i < vxGetNumberOfElements(children.get()); ++i)
        list.push_back(omGetArrayElement(children.get(), i));
    switch (how % 6) {
      case 0: std::reverse(list.begin(), list.end()); break;
      case 1: if (!list.empty()) std::rotate(list.begin(), list.begin() + 1, list.end()); break;
      case 2: if (!list.empty()) list.pop_back(); break;
      case 3: if (!list.empty()) list.push_back(list.front()); break;
      case 4: list.push_back(pick(s, other)); break;
      default: break;  // the same order
    }
    Arr value(omCreateVCOSMatrix(list.size(), 1, "vantel.graphics.Graphics"));
    for (std::size_t i = 0; i < list.size(); ++i) omSetArrayElement(value.get(), i, list[i]);
    setProperty(o, "Children", value.get());
  });
}

void opDelete(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  o->deleteObject(nullptr);
}

// A copy of one object (with its subtree) under a parent, under none, or
// with callbacks. A copy that fails leaves no object of it alive; one that
// succeeds is a new object below the parent asked for, and joins the pool.
void opCopy(State& s, Bytes& in) {
  COSInterfacePtr source = pick(s, in.next());
  const std::uint8_t b = in.next();
  const bool callbacks = (in.next() & 1) != 0;
  std::vector<COSInterfacePtr> parents;
  if (b != 0xFF) parents.push_back(pick(s, b));
  const std::size_t liveBefore = vcos::liveObjectCount();
  Arr made;
  try {
    made.reset(sgutils::CopyContext::doCopyObjects({source}, parents, callbacks));
  } catch (...) {
    // Listeners on the source may delete objects while it is read, so the
    // count may fall, but no half-built copy may stay. The drawnow queue lets
    // go of the deleted copies' memory first.
    sgclasses::forgetDeletedDirtyObjects();
    if (vcos::liveObjectCount() > liveBefore) throw Violation{"a failed copy left objects alive"};
    throw;
  }
  for (std::size_t i = 0; i < vxGetNumberOfElements(made.get()); ++i) {
    COSInterfacePtr copy = omGetArrayElement(made.get(), i);
    if (!copy || copy == source) throw Violation{"a copy is no new object"};
    if (!parents.empty() && !copy->isDestroyed() && copy->getOwnerObject() != parents.front().get())
      throw Violation{"a copy is not below the parent it was copied to"};
    if (s.pool.size() < kPoolLimit) s.pool.push_back(std::move(copy));
  }
}

// What a listener does when it runs: nothing, raise, delete its source, or
// set a property of its source.
std::function<void(COSInterface*, COSEventData*)> listenerAction(std::uint8_t b) {
  switch (b % 4) {
    case 0: return [](COSInterface*, COSEventData*) {};
    case 1: return [](COSInterface*, COSEventData*) { throw foundation::core::except::Error("VANTEL:vcos:InjectedFault"); };
    case 2: return [](COSInterface* src, COSEventData*) { src->deleteObject(nullptr); };
    default:
      return [](COSInterface* src, COSEventData*) {
        Arr off(vxCreateString("off"));
        setProperty(COSInterfacePtr(src), "Visible", off.get());
      };
  }
}

void opAddListener(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  const std::uint8_t which = in.next();
  const std::uint8_t action = in.next();
  if (s.listeners.size() >= kListenerLimit) return;
  COSInterfacePtr l = COSListener::createListener(COSListenerOp::fromFunction(listenerAction(action)));
  Registration r{o, l, COSID(), nullptr, COSPropertyEvent::PostSet};
  switch (which % 4) {
    case 0: r.event = COSID("ObjectBeingDestroyed"); break;
    case 1: r.event = COSID("Reset"); break;
    default: {
      COSClass* cls = o->getClass();
      if (!cls || cls->getPropertyCount() == 0) return;
      r.property = cls->getPropertyAt(in.next() % cls->getPropertyCount());
      r.kind = which % 4 == 2 ? COSPropertyEvent::PreSet : COSPropertyEvent::PostSet;
    }
  }
  if (r.property)
    o->addPropertyListener(r.kind, r.property, COSListener::toListener(l));
  else
    o->addListener(r.event, COSListener::toListener(l));
  s.listeners.push_back(std::move(r));
}

void opRemoveListener(State& s, Bytes& in) {
  const std::uint8_t b = in.next();
  if (s.listeners.empty()) return;
  const std::size_t i = b % s.listeners.size();
  Registration r = std::move(s.listeners[i]);
  s.listeners.erase(s.listeners.begin() + static_cast<std::ptrdiff_t>(i));
  if (r.property)
    r.source->removePropertyListener(r.kind, r.property, COSListener::toListener(r.listener));
  else
    r.source->removeListener(r.event, COSListener::toListener(r.listener));
}

// Lets go of the pool's reference: an object outside the tree goes with it.
void opDrop(State& s, Bytes& in) {
  const std::uint8_t b = in.next();
  if (b < s.pool.size()) s.pool.erase(s.pool.begin() + b);
}

void opDrawnow(State&, Bytes&) { sgclasses::drawnow(); }

struct Operation {
  const char* name;
  void (*run)(State&, Bytes&);
};

// Sets the Theme of the object (a figure takes it; anything else refuses).
// After a change that went through, every themed value below the figure is
// its theme's: no object is left half-themed.
void opTheme(State& s, Bytes& in) {
  COSInterfacePtr o = pick(s, in.next());
  static const char* const kThemes[] = {"light", "dark", "", "white"};
  Arr value(vxCreateString(kThemes[in.next() % std::size(kThemes)]));
  onObject(o, "theme", [&] { setProperty(o, "Theme", value.get()); });
  if (o->isDestroyed()) return;
  const COSInterfacePtr theme = sgclasses::themeFromAncestors(o.get());
  if (theme && sgutils::themes::countUnthemedValues(o, sgutils::themes::ThemeInfo(theme)) != 0)
    throw Violation{"a theme change left an object half-themed"};
}

// The opcode byte picks a row. Save/load joins here as a row of its own;
// appending keeps the meaning of the existing corpus.
constexpr Operation kOperations[] = {
    {"create", opCreate},         {"set", opSet},       {"get", opGet},
    {"reset", opReset},           {"reparent", opReparent}, {"reorder", opReorder},
    {"delete", opDelete},         {"add listener", opAddListener}, {"remove listener", opRemoveListener},
    {"drop", opDrop},             {"drawnow", opDrawnow},    {"theme", opTheme},
    {"copy", opCopy},
};

// ---- consistency

void checkBelow(COSInterface* top, std::unordered_set<COSInterface*>& seen) {
  COSInterface* newest = top->getNewestChild();
  if (newest && newest->getNewerSibling()) throw Violation{"the newest child has a newer sibling"};
  for (COSInterface* c = newest; c; c = c->getOlderSibling()) {
    if (c->getOwnerObject() != top) throw Violation{"a child's owner is not the object whose chain holds it"};
    if (c->isDestroyed() || c->isBeingDestroyed()) throw Violation{"a deleted object is reachable in the tree"};
    if (!seen.insert(c).second) throw Violation{"an object is reachable twice"};
    COSInterface* older = c->getOlderSibling();
    if (older && older->getNewerSibling() != c) throw Violation{"sibling links disagree"};
    if (!older && top->getOldestChild() != c) throw Violation{"the oldest child is not the end of the chain"};
    checkBelow(c, seen);
  }
  if (!newest && top->getOldestChild()) throw Violation{"an oldest child without a newest"};
}

void checkConsistent(State& s) {
  std::unordered_set<COSInterface*> seen;
  COSInterfacePtr root = sgclasses::root();
  seen.insert(root.get());
  checkBelow(root.get(), seen);
  for (const COSInterfacePtr& o : s.pool) {
    if (o->isDestroyed()) {
      if (o->getOwnerObject() || o->getNewestChild()) throw Violation{"a deleted object keeps tree links"};
      continue;
    }
    COSInterface* top = o.get();
    while (top->getOwnerObject()) top = top->getOwnerObject();
    if (top->isDestroyed()) throw Violation{"a live object hangs below a deleted one"};
    if (seen.insert(top).second) checkBelow(top, seen);
  }
}

}  // namespace

void startObjectOps() {
  static const bool started = [] {
    sgclasses::registerClasses();
    return true;
  }();
  (void)started;
}

std::string runObjectOps(std::span<const std::uint8_t> data) {
  startObjectOps();
  sgclasses::registerClasses();  // installs the root accessor again after a release
  const std::size_t liveBefore = vcos::liveObjectCount();
  std::string violation;
  {
    State s;
    Bytes in(data);
    try {
      s.values = makeValues();
      for (std::size_t step = 0; step < kStepLimit && !in.empty(); ++step) {
        const Operation& op = kOperations[in.next() % std::size(kOperations)];
        try {
          op.run(s, in);
        } catch (const Violation&) {
          throw;
        } catch (const std::exception&) {
          // Refusals are the point of most inputs.
        }
        checkConsistent(s);
      }
    } catch (const Violation& v) {
      violation = v.what;
    }
    sgclasses::releaseRoot();
    for (Registration& r : s.listeners) {
      if (r.source->isDestroyed()) continue;
      if (r.property)
        r.source->removePropertyListener(r.kind, r.property, COSListener::toListener(r.listener));
      else
        r.source->removeListener(r.event, COSListener::toListener(r.listener));
    }
  }
  // Objects outside the tree went with the pool, after the release: the
  // drawnow queue lets go of them now rather than when it next grows.
  sgclasses::forgetDeletedDirtyObjects();
  const std::size_t liveAfter = vcos::liveObjectCount();
  if (violation.empty() && liveAfter != liveBefore)
    violation = "live objects " + std::to_string(liveBefore) + " before the run, " + std::to_string(liveAfter) + " after";
  return violation;
}

}  // namespace sgfuzz
