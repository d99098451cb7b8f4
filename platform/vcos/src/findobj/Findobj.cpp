// The walk of findobj: the starting objects and their descendants in
// pre-order, children newest first, each object tested against the compiled
// query.
#include "vcos/Findobj.h"

#include <unordered_set>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/FindobjChildTest.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinNames.h"
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
// so a wide level costs no copy. The frame holds its parent, the child
// handed out last and the child it looks ahead at strongly, so code run by a
// condition (a get listener) never leaves a dangling pointer; a chain whose
// current child was taken out of it meanwhile ends there. The look-ahead is
// only a hint: where such code moved it, it fetches the wrong memory. A class
// whose own list is its chain less some children gives a test instead
// (FindobjChildTest.h): the chain is then followed (or copied) with the
// children the test refuses passed over.
struct Frame {
  COSInterfacePtr parent;
  double depth = 0;  // of the children
  bool chain = true;
  FindobjChildTest test;  // `listed` null: every child of the chain
  std::vector<COSInterfacePtr> list;  // own lists; capacity kept across uses
  std::size_t next = 0;
  COSInterfacePtr current;  // chain: the child visited last
  COSInterfacePtr ahead;    // chain: kLookahead children after `current`

  // Starts the look-ahead at the first children (`query` null: none).
  void startLookahead(const search::Query* query) {
    ahead.reset();
    if (!query) return;
    if (!chain) {
      for (std::size_t i = 0; i < list.size() && i < kLookahead; ++i) query->prefetch(list[i].get());
      return;
    }
    COSInterface* c = parent->getNewestChild();
    for (int i = 0; c && i < kLookahead; ++i, c = c->getOlderSibling()) {
      if (test.prefetch) test.prefetch(c);
      query->prefetch(c);
    }
    ahead = c;
  }

  // The next child, or null at the end. It stays held until the next call.
  COSInterface* nextChild(const search::Query* query) {
    if (!chain) {
      if (next >= list.size()) return nullptr;
      if (query && next + kLookahead < list.size()) query->prefetch(list[next + kLookahead].get());
      return list[next++].get();
    }
    COSInterface* c = current ? (current->getOwnerObject() == parent.get() ? current->getOlderSibling() : nullptr)
                              : parent->getNewestChild();
    while (true) {
      current = c;
      const COSInterface* fetch = nullptr;  // left to the child test, where it takes it
      if (ahead && query) {
        if (test.listedFetching && c) {
          fetch = ahead.get();
        } else if (test.prefetch) {
          test.prefetch(ahead.get());
        }
        query->prefetch(ahead.get());
        ahead = ahead->getOlderSibling();
      }
      if (!c || !test.listed) return c;
      if (test.listedFetching ? test.listedFetching(c, fetch, test.flags) : test.listed(c, test.flags)) return c;
      c = c->getOlderSibling();
    }
  }
};

class Walk {
 public:
  Walk(search::Query& query, std::vector<COSInterfacePtr>& found)
      : query_(query),
        found_(found),
        snapshotChains_(query.callsFunctions()),
        lookahead_(query.readsProperties() ? &query : nullptr) {}

  // `start` is held by the caller.
  void from(COSInterface* start, std::unordered_set<COSInterface*>* seen) {
    visit(start, 0, seen);
    while (top_ > 0) {
      Frame& f = frames_[top_ - 1];
      COSInterface* child = f.nextChild(lookahead_);
      if (!child) {
        f.parent.reset();
        f.current.reset();
        f.ahead.reset();
        f.list.clear();
        --top_;
        continue;
      }
      visit(child, f.depth, seen);  // may push a frame: `f` is not used after this
    }
  }

 private:
  // `object` is held by the frame that handed it out (or the caller).
  [[gnu::always_inline]] void visit(COSInterface* object, double depth, std::unordered_set<COSInterface*>* seen) {
    if (!searchable(object)) return;
    if (seen && !seen->insert(object).second) return;
    if (query_.matches(object)) found_.emplace_back(object);
    if (depth < query_.depth() && searchable(object) && !knownLeaf(object)) push(object, depth + 1);
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

    if (top_ == frames_.size()) frames_.emplace_back();
    Frame& f = frames_[top_++];
    f.chain = !ownList && !snapshotChains_;
    f.test = f.chain ? test : FindobjChildTest{};
    f.depth = childDepth;
    f.next = 0;
    f.current.reset();
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
    f.startLookahead(lookahead_);
  }

  search::Query& query_;
  std::vector<COSInterfacePtr>& found_;
  const bool snapshotChains_;
  const search::Query* const lookahead_;  // null when no condition reads a property
  std::vector<Frame> frames_;
  std::size_t top_ = 0;
  const COSClass* lastClass_ = nullptr;
  COSClassInfo* lastOwnList_ = nullptr;
  const COSClass* lastTestClass_ = nullptr;
  FindobjChildTest lastTest_;
};

}  // namespace

void setFindobjChildTestLookup(FindobjChildTestLookup lookup) noexcept { childTestLookup = lookup; }

vxArray* findobj(const vxArray* handles, int nargs, const vxArray* const args[]) {
  if (!omIsVCOS(handles)) throw foundation::core::except::Error("VANTEL:vcos:findobj:NotHandles");
  search::Query query(nargs, args);

  std::vector<COSInterfacePtr> found;
  Walk walk(query, found);
  const std::size_t starts = vxGetNumberOfElements(handles);
  // Only several starting objects can reach one object twice.
  std::unordered_set<COSInterface*> seen;
  // A copy: the walk may run code that changes the array's elements.
  const std::vector<COSInterfacePtr> startObjects(vxGetObjectElements(handles), vxGetObjectElements(handles) + starts);
  for (const COSInterfacePtr& start : startObjects) walk.from(start.get(), starts > 1 ? &seen : nullptr);
  if (query.callsFunctions())  // a function may have deleted objects already found
    std::erase_if(found, [](const COSInterfacePtr& o) { return o->isDestroyed(); });

  if (found.empty()) {
    COSID cls = omGetCOSClassID(handles);
    return omCreateVCOSMatrix(0, 1, cls ? cls : builtin::names().handle);
  }
  matrix::unique_vxArray result(omCreateVCOSMatrix(found.size(), 1, builtin::names().handle));
  COSInterfacePtr* out = vxGetObjectElements(result.get());
  for (std::size_t i = 0; i < found.size(); ++i) out[i] = std::move(found[i]);
  omSetClassOfHeterogeneousArray(result.get());
  return result.release();
}

}  // namespace vcos
