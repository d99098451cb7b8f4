// The walk of findobj: the starting objects and their descendants in
// pre-order, children newest first, each object tested against the compiled
// query.
#include "vcos/Findobj.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/FindobjChildTest.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/core/ObjectOps.h"
#include "vcos/src/findobj/BlockPlace.h"
#include "vcos/src/findobj/FindobjQuery.h"
#include "vx/matrix.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"

namespace vcos {

namespace {

bool searchable(COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

// How many children ahead of the one being tested the walk starts fetching
// the memory of the values the conditions read: about one memory latency's
// worth of tests.
constexpr int kLookahead = 8;

FindobjChildTestLookup childTestLookup = nullptr;

// The children of one object being walked. A class with its own list gives
// a snapshot of it, and so does the tree's chain when the conditions call
// functions, which may delete objects of the level being walked. Otherwise
// the chain is followed in place, newest first, one sibling link at a time,
// so a wide level costs no copy. The frame holds its parent strongly. The
// child handed out last and the child it looks ahead at are plain pointers
// while no code can run (the tree cannot change then); once the walk runs
// code that might (Walk::pin), the frame holds them too, so such code never
// leaves a dangling pointer; a chain whose current child was taken out of
// it meanwhile ends there. The look-ahead is only a hint: where such code
// moved it, it fetches the wrong memory. A class whose own list is its
// chain less some children gives a test instead (FindobjChildTest.h): the
// chain is then followed (or copied) with the children the test refuses
// passed over.
struct Frame {
  COSInterfacePtr parent;
  double depth = 0;  // of the children
  bool chain = true;
  FindobjChildTest test;  // `listed` null: every child of the chain
  std::vector<COSInterfacePtr> list;  // own lists; capacity kept across uses
  std::size_t next = 0;
  COSInterface* current = nullptr;  // chain: the child visited last
  COSInterface* ahead = nullptr;    // chain: kLookahead children after `current`
  COSInterfacePtr heldCurrent, heldAhead;  // the two, once the walk is pinned

  void clear() noexcept {
    parent.reset();
    current = ahead = nullptr;
    heldCurrent.reset();
    heldAhead.reset();
    list.clear();
  }
};

class Walk {
 public:
  Walk(search::Query& query, std::vector<COSInterfacePtr>& found)
      : query_(query),
        found_(found),
        snapshotChains_(query.callsFunctions()),
        pinned_(query.callsFunctions()),
        lookahead_(query.readsProperties() ? &query : nullptr) {}

  // Whether code may have run that changed the tree.
  bool pinned() const noexcept { return pinned_; }
  // One object found of each class found, in the order first met.
  const std::vector<COSInterfacePtr>& foundClasses() const noexcept { return foundClasses_; }

  // `start` is held by the caller.
  void from(COSInterface* start, std::unordered_set<COSInterface*>* seen) {
    visit(start, 0, seen);
    while (top_ > 0) {
      Frame& f = frames_[top_ - 1];
      COSInterface* child = f.chain ? nextInChain(f) : nextInList(f);
      if (!child) {
        f.clear();
        --top_;
        continue;
      }
      visit(child, f.depth, seen);  // may push a frame: `f` is not used after this
    }
  }

 private:
  // Before anything that may run code: from now on the frames hold the
  // children they walk (the objects found are always held), so that code
  // which deletes or moves objects leaves no pointer dangling.
  void pin() {
    if (!pinned_) {
      pinned_ = true;
      for (std::size_t i = 0; i < top_; ++i) {
        frames_[i].heldCurrent = frames_[i].current;
        frames_[i].heldAhead = frames_[i].ahead;
      }
    }
    // What is kept per class of the tests without code is made again after.
    blockTest_.cls = nullptr;
  }

  // `object` is held by the frame that handed it out (or the caller).
  [[gnu::always_inline]] void visit(COSInterface* object, double depth, std::unordered_set<COSInterface*>* seen) {
    if (!searchable(object)) return;
    if (seen && !seen->insert(object).second) return;
    if (matches(object)) {
      // Counted now, while the object is in the cache.
      found_.emplace_back(object);
      if (COSClass* c = object->getClass(); c != lastFoundClass_) noteClass(object, c);
    }
    if (depth < query_.depth() && searchable(object) && !knownLeaf(object)) push(object, depth + 1);
  }

  void noteClass(COSInterface* object, COSClass* cls) {
    lastFoundClass_ = cls;
    for (const COSInterfacePtr& o : foundClasses_)
      if (o->getClass() == cls) return;
    foundClasses_.emplace_back(object);
  }

  bool matches(COSInterface* object) {
    const search::PropertyResolver::Typed known = query_.knownAnswer(object);
    if (known != search::PropertyResolver::Typed::NotApplicable) return known == search::PropertyResolver::Typed::Equal;
    const bool code = query_.mayRunCodeFor(object);
    if (code) pin();
    return query_.evaluate(object, code);
  }

  COSInterface* nextInList(Frame& f) {
    if (f.next >= f.list.size()) return nullptr;
    if (lookahead_ && f.next + kLookahead < f.list.size()) lookahead_->prefetch(f.list[f.next + kLookahead].get());
    return f.list[f.next++].get();
  }

  // The next child of the chain, or null at the end. It stays valid until
  // the next call: the tree holds it while no code runs, the frame once the
  // walk is pinned.
  COSInterface* nextInChain(Frame& f) {
    COSInterface* c = f.current ? (f.current->getOwnerObject() == f.parent.get() ? f.current->getOlderSibling() : nullptr)
                                : f.parent->getNewestChild();
    while (true) {
      f.current = c;
      if (pinned_) f.heldCurrent = c;
      const COSInterface* fetch = nullptr;  // left to the child test, where it takes it
      if (f.ahead && lookahead_) {
        if (f.test.listedFetching && c) {
          fetch = f.ahead;
        } else {
          fetchListed(f, f.ahead);
        }
        lookahead_->prefetch(f.ahead);
        f.ahead = f.ahead->getOlderSibling();
        if (pinned_) f.heldAhead = f.ahead;
      }
      if (!c || !f.test.listed) return c;
      if (listed(f, c, fetch)) return c;
      c = c->getOlderSibling();
    }
  }

  // Whether the child test of the frame lists `c` (a live or dead child of
  // its chain), having started to fetch what it reads for `fetch` (null:
  // nothing).
  bool listed(Frame& f, COSInterface* c, const COSInterface* fetch) {
    if (f.test.blockTest && !c->isDestroyed() && !c->isBeingDestroyed() && !hasRunTimeProperties(c)) {
      const COSClass* cls = c->getClass();
      if (cls != blockTest_.cls || !cls) planBlockTest(f, cls);
      if (blockTest_.listed) {
        if (fetch) fetchListed(f, fetch);
        const FindobjBlockTest::Answer a = blockTest_.listed(testBlocks_[0].in(c), testBlocks_[1].in(c), f.test.flags);
        if (a != FindobjBlockTest::Ask) return a == FindobjBlockTest::Yes;
        fetch = nullptr;
      }
    }
    // The full test may read properties through their get.
    pin();
    return f.test.listedFetching ? f.test.listedFetching(c, fetch, f.test.flags) : f.test.listed(c, f.test.flags);
  }

  void planBlockTest(const Frame& f, const COSClass* cls) {
    blockTest_ = f.test.blockTest(cls);
    testBlocks_[0].bind(cls, blockTest_.slots[0]);
    testBlocks_[1].bind(cls, blockTest_.slots[1]);
  }

  // Starts fetching what the child test reads of `ahead`.
  void fetchListed(const Frame& f, const COSInterface* ahead) const noexcept {
    if (f.test.blockTest && ahead->getClass() == blockTest_.cls && blockTest_.listed) {
      if (const void* b = testBlocks_[0].in(ahead)) __builtin_prefetch(b);
      if (const void* b = testBlocks_[1].in(ahead)) __builtin_prefetch(b);
    } else if (f.test.prefetch) {
      f.test.prefetch(ahead);
    }
  }

  static bool hasRunTimeProperties(const COSInterface* o) noexcept {
    const internal::InstanceExtras* x = internal::ObjectOps::extrasIfAny(o);
    return x && !x->dynamicProperties.empty();
  }

  // A leaf of the class met last whose children are its chain, or its
  // chain less the children a test refuses: nothing to walk, no frame.
  bool knownLeaf(const COSInterface* object) const {
    return object->getClass() == lastClass_ && !object->getNewestChild() &&
           (!lastOwnList_ || (lastClass_ == lastTestClass_ && lastTest_.sameForClass && lastTest_.listed));
  }

  void push(COSInterface* parent, double childDepth) {
    // Whether the class keeps its own list of children, asked once per run
    // of objects of one class.
    COSClass* cls = parent->getClass();
    if (cls != lastClass_) {
      lastClass_ = cls;
      COSClassInfo* info = cls ? cls->getClassInfo() : nullptr;
      lastOwnList_ = info && info->usesCustomChildrenList() ? info : nullptr;
    }
    COSClassInfo* ownList = lastOwnList_;
    // An own list that is the chain less some children: a test per child.
    FindobjChildTest test;
    if (ownList && childTestLookup) {
      if (cls == lastTestClass_ && lastTest_.sameForClass) {
        test = lastTest_;
      } else {
        test = childTestLookup(ownList, parent);
        lastTestClass_ = cls;
        lastTest_ = test;
      }
    }
    const bool filtered = test.listed != nullptr;
    if (filtered) ownList = nullptr;
    if (!ownList && !parent->getNewestChild()) return;  // no children: no frame

    const bool chain = !ownList && !snapshotChains_;
    // The class's own list is made by its code.
    if (!chain) pin();
    if (top_ == frames_.size()) frames_.emplace_back();
    Frame& f = frames_[top_++];
    f.chain = chain;
    f.test = f.chain ? test : FindobjChildTest{};
    f.depth = childDepth;
    f.next = 0;
    f.current = nullptr;
    f.heldCurrent.reset();
    f.parent = parent;
    if (!f.chain) {
      f.list.clear();
      if (ownList) {
        ownList->getChildrenOfInstance(parent, f.list);  // newest first
      } else {
        // The test runs before any condition, as the list of the class would be made.
        for (COSInterface* c = parent->getNewestChild(); c; c = c->getOlderSibling())
          if (!filtered || test.listed(c, test.flags)) f.list.emplace_back(c);
      }
    }
    startLookahead(f);
  }

  // Starts the look-ahead at the first children (none when no condition
  // reads a property).
  void startLookahead(Frame& f) {
    f.ahead = nullptr;
    f.heldAhead.reset();
    if (!lookahead_) return;
    if (!f.chain) {
      for (std::size_t i = 0; i < f.list.size() && i < kLookahead; ++i) lookahead_->prefetch(f.list[i].get());
      return;
    }
    COSInterface* c = f.parent->getNewestChild();
    for (int i = 0; c && i < kLookahead; ++i, c = c->getOlderSibling()) {
      fetchListed(f, c);
      lookahead_->prefetch(c);
    }
    f.ahead = c;
    if (pinned_) f.heldAhead = c;
  }

  search::Query& query_;
  std::vector<COSInterfacePtr>& found_;
  std::vector<COSInterfacePtr> foundClasses_;
  COSClass* lastFoundClass_ = nullptr;
  const bool snapshotChains_;
  bool pinned_;
  const search::Query* const lookahead_;  // null when no condition reads a property
  std::vector<Frame> frames_;
  std::size_t top_ = 0;
  const COSClass* lastClass_ = nullptr;
  COSClassInfo* lastOwnList_ = nullptr;
  const COSClass* lastTestClass_ = nullptr;
  FindobjChildTest lastTest_;
  FindobjBlockTest blockTest_;  // of the class of the child tested last
  search::BlockPlace testBlocks_[2];  // the two blocks it reads
};

}  // namespace

void setFindobjChildTestLookup(FindobjChildTestLookup lookup) noexcept { childTestLookup = lookup; }

vxArray* findobj(const vxArray* handles, int nargs, const vxArray* const args[]) {
  if (!omIsVCOS(handles)) throw foundation::core::except::Error("VANTEL:vcos:findobj:NotHandles");
  search::Query query(nargs, args);

  std::vector<COSInterfacePtr> found;
  // Room for as many as the last search found: a search repeated over a
  // large tree grows no vector.
  static std::size_t foundLast = 0;
  found.reserve(std::min<std::size_t>(foundLast, std::size_t(1) << 24));
  Walk walk(query, found);
  const std::size_t starts = vxGetNumberOfElements(handles);
  // Only several starting objects can reach one object twice.
  std::unordered_set<COSInterface*> seen;
  // A copy: the walk may run code that changes the array's elements.
  const std::vector<COSInterfacePtr> startObjects(vxGetObjectElements(handles), vxGetObjectElements(handles) + starts);
  for (const COSInterfacePtr& start : startObjects) walk.from(start.get(), starts > 1 ? &seen : nullptr);
  if (query.callsFunctions())  // a function may have deleted objects already found
    std::erase_if(found, [](const COSInterfacePtr& o) { return o->isDestroyed(); });
  foundLast = found.size();

  if (found.empty()) {
    COSID cls = omGetCOSClassID(handles);
    return omCreateVCOSMatrix(0, 1, cls ? cls : builtin::names().handle);
  }
  matrix::unique_vxArray result(omCreateVCOSMatrix(found.size(), 1, builtin::names().handle));
  COSInterfacePtr* out = vxGetObjectElements(result.get());
  for (std::size_t i = 0; i < found.size(); ++i) out[i] = std::move(found[i]);
  if (walk.pinned()) {
    // Code ran: what was found may have been deleted since; ask the result.
    omSetClassOfHeterogeneousArray(result.get());
  } else {
    // The class depends only on the classes found, in the order first met:
    // asked of one object of each, so that the 100,000 objects found are not
    // read a second time.
    const std::vector<COSInterfacePtr>& classes = walk.foundClasses();
    matrix::unique_vxArray sample(omCreateVCOSMatrix(classes.size(), 1, builtin::names().handle));
    std::copy(classes.begin(), classes.end(), vxGetObjectElements(sample.get()));
    omSetClassOfHeterogeneousArray(sample.get());
    vxSetObjectClassID(result.get(), omGetCOSClassID(sample.get()).entry());
  }
  return result.release();
}

}  // namespace vcos
