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
#include <filesystem>
#include <limits>
#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgclasses/Theming.h"
#include "sgutils/copy/CopyContext.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "sgutils/tree/ChildStrategy.h"
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

#include <unistd.h>
#include <zstd.h>

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
  // Objects outside the tree that something besides the pool still held
  // when the pool let go of them (a value of their own or of another such
  // object): a cycle of counted references, deleted at the end of the run.
  std::vector<COSInterfacePtr> held;
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
  if (b >= s.pool.size()) return;
  const COSInterfacePtr watch(s.pool[b], COSWeakReference);
  s.pool.erase(s.pool.begin() + b);
  if (watch->isDestroyed() || watch->isBeingDestroyed() || watch->getOwnerObject()) return;
  if (std::find(s.pool.begin(), s.pool.end(), watch) == s.pool.end()) s.held.emplace_back(watch, COSStrongReference);
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

// The shape of a tree as the saver keeps it: classes, with the children in
// order (oldest first, hidden ones too), those with Serializable off left out.
void shapeOf(COSInterface* object, std::string& out) {
  out += object->getClass()->getName();
  out += '(';
  static const COSID serializable("Serializable");
  for (COSInterface* c = object->getOldestChild(); c; c = c->getNewerSibling()) {
    if (c->isBeingDestroyed() || c->isDestroyed() || !SGHandle::fromObject(c)) continue;
    if (c->findPropertyInfo(serializable) && !sgutils::ChildStrategy::isChildSerializable(COSInterfacePtr(c))) continue;
    shapeOf(c, out);
    out += ' ';
  }
  out += ')';
}

bool isBelow(const COSInterface* object, const COSInterface* ancestor) {
  for (const COSInterface* up = object ? object->getOwnerObject() : nullptr; up; up = up->getOwnerObject())
    if (up == ancestor) return true;
  return false;
}

std::size_t liveCount() {
  sgclasses::forgetDeletedDirtyObjects();
  return vcos::liveObjectCount();
}

// A file of this process's own in the temporary folder, removed at the end.
struct TemporaryFile {
  std::filesystem::path path = std::filesystem::temp_directory_path() /
                               ("sg-objectops-" + std::to_string(::getpid()) + ".sgfig");
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
};

std::uint64_t readLE(const std::uint8_t* p) {
  std::uint64_t v = 0;
  for (int i = 7; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

void writeLE(std::uint8_t* p, std::uint64_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}

// The saved bytes with their MessagePack body damaged (a byte at `at`/256 of
// its length changed, or the body cut there) and framed again, uncompressed
// and with a matching checksum, so that the reader's and the loader's checks
// of the content are what is tried rather than the checksum.
std::vector<std::uint8_t> damageBody(const std::vector<std::uint8_t>& framed, bool cut, std::uint8_t at) {
  constexpr std::size_t kHeader = 40;
  if (framed.size() < kHeader) return framed;
  std::vector<std::uint8_t> body(framed.begin() + kHeader, framed.end());
  if (framed[12] & 1) {
    std::vector<std::uint8_t> raw(readLE(&framed[24]));
    if (ZSTD_isError(ZSTD_decompress(raw.data(), raw.size(), body.data(), body.size()))) return framed;
    body = std::move(raw);
  }
  const std::size_t pos = body.size() * at / 256;
  if (cut)
    body.resize(pos);
  else if (!body.empty())
    body[pos] ^= 0x5a;
  std::uint64_t h = 0xcbf29ce484222325ULL;
  for (std::uint8_t b : body) h = (h ^ b) * 0x100000001b3ULL;
  std::vector<std::uint8_t> out(framed.begin(), framed.begin() + kHeader);
  writeLE(&out[12], 0, 4);
  writeLE(&out[16], body.size(), 8);
  writeLE(&out[24], body.size(), 8);
  writeLE(&out[32], h, 8);
  out.insert(out.end(), body.begin(), body.end());
  return out;
}

// The current figure of the root and the current axes of a figure, read
// before a load: a load hooks its figures and axes, which makes them
// current, and one that fails must leave the current ones as they were.
class CurrentObjects {
 public:
  explicit CurrentObjects(std::initializer_list<COSInterfacePtr> holders) {
    for (const COSInterfacePtr& holder : holders) {
      if (!holder || holder->isDestroyed()) continue;
      for (const char* name : {"CurrentFigure", "CurrentAxes"})
        if (holder->findPropertyInfo(COSID(name))) kept_.push_back({holder, name, objectIn(getProperty(holder, name))});
    }
  }
  bool changed() const {
    for (const Kept& k : kept_)
      if (!k.holder->isDestroyed() && objectIn(getProperty(k.holder, k.name)) != k.object) return true;
    return false;
  }

 private:
  static COSInterface* objectIn(const Arr& value) {
    return value && omIsVCOS(value.get()) && vxGetNumberOfElements(value.get()) == 1
               ? omGetArrayElement(value.get(), 0).get()
               : nullptr;
  }
  struct Kept {
    COSInterfacePtr holder;
    const char* name;
    COSInterface* object;
  };
  std::vector<Kept> kept_;
};

// Saves one or two pool objects (as two variables) with their trees, to
// memory or to a file, whole or damaged, and loads them back. A load either
// raises an identifier of the reader or the loader and leaves the live count
// where it was, or makes new objects: for an undamaged save each saved tree
// comes back with the same shape, and an object saved below the other one
// comes back below the other's copy. Figures go under the root; other tops
// under the first object's parent or nowhere. The loaded tops join the pool.
void opSaveLoad(State& s, Bytes& in) {
  const std::uint8_t a = in.next();
  const std::uint8_t second = in.next();
  const std::uint8_t how = in.next();
  const std::uint8_t where = in.next();
  // The root is not saved: a file that holds it would make a second root.
  if (a >= s.pool.size() || (second != 0xFF && second >= s.pool.size())) return;
  COSInterfacePtr first = s.pool[a];
  std::vector<COSInterfacePtr> saved{first};
  if (second != 0xFF) saved.push_back(s.pool[second]);

  std::vector<Arr> arrays;
  std::vector<std::pair<std::string, const vxArray*>> values;
  std::vector<std::string> shapes;
  for (std::size_t i = 0; i < saved.size(); ++i) {
    arrays.emplace_back(omCreateVCOSScalar(saved[i]));
    values.emplace_back(i == 0 ? "a" : "b", arrays.back().get());
    std::string shape;
    if (!saved[i]->isDestroyed() && !saved[i]->isBeingDestroyed()) shapeOf(saved[i].get(), shape);
    shapes.push_back(std::move(shape));
  }
  const bool secondBelowFirst = saved.size() == 2 && isBelow(saved[1].get(), saved[0].get());

  sgutils::GraphicsLoadOptions options;
  COSInterfacePtr home = (how & 4) && first->getOwnerObject() ? COSInterfacePtr(first->getOwnerObject()) : nullptr;
  options.parentOfTopLevel = [home](const COSInterfacePtr& object) {
    return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : home;
  };

  CurrentObjects current{sgclasses::root(), home};
  const std::size_t liveBefore = liveCount();
  std::vector<vxNamedValue> loaded;
  const int medium = how & 3;
  try {
    if (medium == 1) {
      TemporaryFile file;
      sgutils::GraphicsFile::save(file.path.string(), values);
      loaded = sgutils::GraphicsFile::load(file.path.string(), options);
    } else {
      std::vector<std::uint8_t> bytes = sgutils::GraphicsFile::serialize(values);
      if (medium >= 2) bytes = damageBody(bytes, medium == 3, where);
      loaded = sgutils::GraphicsFile::deserialize(bytes, options);
    }
  } catch (const foundation::core::except::IMsgIDException& e) {
    const std::string& id = e.identifier();
    if (id.rfind("VANTEL:vx:serialize:", 0) != 0 && id.rfind("VANTEL:sg:load:", 0) != 0)
      throw Violation{"a failed save or load raised " + id};
    if (current.changed()) throw Violation{"a failed load changed the current figure or axes"};
    if (liveCount() != liveBefore) throw Violation{"a failed load changed the live object count"};
    throw;
  }
  if (medium >= 2) {
    // A damaged file that still loads may hold anything; its objects join
    // the pool for the steps after.
    for (const vxNamedValue& v : loaded)
      if (v.value && omIsVCOS(v.value.get()))
        for (std::size_t k = 0; k < vxGetNumberOfElements(v.value.get()) && s.pool.size() < kPoolLimit; ++k)
          if (COSInterfacePtr o = omGetArrayElement(v.value.get(), k)) s.pool.push_back(std::move(o));
    return;
  }
  if (loaded.size() != saved.size()) throw Violation{"a load gave another number of values"};
  for (std::size_t i = 0; i < loaded.size(); ++i) {
    const vxArray* value = loaded[i].value.get();
    if (shapes[i].empty()) continue;  // a deleted object is saved as none
    if (!value || !omIsVCOS(value) || vxGetNumberOfElements(value) != 1)
      throw Violation{"a saved object did not come back as one object"};
    COSInterfacePtr copy = omGetArrayElement(value, 0);
    if (!copy || copy == saved[i]) throw Violation{"a loaded object is no new object"};
    if (copy->isDestroyed()) continue;
    std::string shape;
    shapeOf(copy.get(), shape);
    if (shape != shapes[i]) throw Violation{"a loaded tree differs in shape: " + shapes[i] + " saved, " + shape + " loaded"};
    if (i == 1 && secondBelowFirst) {
      const COSInterfacePtr top = omGetArrayElement(loaded[0].value.get(), 0);
      if (!isBelow(copy.get(), top.get())) throw Violation{"an object saved below another did not load below its copy"};
      continue;
    }
    if (s.pool.size() < kPoolLimit) s.pool.push_back(std::move(copy));
  }
}

// The opcode byte picks a row; new rows are appended, so that the kept
// corpus keeps its meaning.
constexpr Operation kOperations[] = {
    {"create", opCreate},         {"set", opSet},       {"get", opGet},
    {"reset", opReset},           {"reparent", opReparent}, {"reorder", opReorder},
    {"delete", opDelete},         {"add listener", opAddListener}, {"remove listener", opRemoveListener},
    {"drop", opDrop},             {"drawnow", opDrawnow},    {"theme", opTheme},
    {"copy", opCopy},             {"save and load", opSaveLoad},
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
    s.listeners.clear();
    // The pool lets go; what stays alive outside the tree is held by a cycle
    // of references, let go of the way a user would: by deleting it.
    std::vector<COSInterfacePtr> watched;
    for (const COSInterfacePtr& o : s.pool) watched.emplace_back(o, COSWeakReference);
    s.pool.clear();
    for (const COSInterfacePtr& o : watched)
      if (!o->isDestroyed() && !o->isBeingDestroyed() && !o->getOwnerObject()) s.held.emplace_back(o, COSStrongReference);
    watched.clear();
    for (const COSInterfacePtr& o : s.held)
      if (!o->isDestroyed() && !o->isBeingDestroyed()) {
        try {
          o->deleteObject(nullptr);
        } catch (const std::exception&) {
          // A listener's error; the deletion itself ends.
        }
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
