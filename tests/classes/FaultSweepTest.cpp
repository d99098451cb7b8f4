// Fault sweeps: each operation runs with the 1st, 2nd, ... object
// allocation, property set or listener call raising, until it completes.
// After every raise the tree must be whole (links agree both ways, nothing
// deleted reachable), nothing may be half-linked, and the live object count
// must be what it was before the operation.
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Theming.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/themes/ThemeUtils.h"
#include "sgutils/copy/CopyContext.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSClass.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FaultInjection.h"

namespace sgtest::classes {
namespace {

using vcos::fault::Point;

constexpr std::size_t kSweepLimit = 5000;

const char* pointName(Point p) {
  switch (p) {
    case Point::Allocation: return "allocation";
    case Point::PropertySet: return "property set";
    default: return "listener";
  }
}

// The tree below `top`, checked link by link; returns the objects reached.
void checkBelow(COSInterface* top, std::set<COSInterface*>& seen) {
  COSInterface* newest = top->getNewestChild();
  if (newest) {
    ASSERT_EQ(newest->getNewerSibling(), nullptr);
  }
  for (COSInterface* c = newest; c; c = c->getOlderSibling()) {
    ASSERT_EQ(c->getOwnerObject(), top);
    ASSERT_FALSE(c->isDestroyed() || c->isBeingDestroyed()) << "a deleted object is reachable";
    ASSERT_TRUE(seen.insert(c).second) << "an object is reachable twice";
    if (c->getOlderSibling()) {
      ASSERT_EQ(c->getOlderSibling()->getNewerSibling(), c);
    } else {
      ASSERT_EQ(top->getOldestChild(), c);
    }
    checkBelow(c, seen);
  }
}

std::set<COSInterface*> wholeTree() {
  std::set<COSInterface*> seen;
  checkBelow(sgclasses::root().get(), seen);
  return seen;
}

std::vector<COSInterface*> children(const COSInterfacePtr& o) {
  std::vector<COSInterface*> list;
  for (COSInterface* c = o->getNewestChild(); c; c = c->getOlderSibling()) list.push_back(c);
  return list;
}

// One operation to sweep: `prepare` builds what it works on (outside the
// fault scope), `run` is the operation, `check` looks at the state after a
// raise. Both see the objects `prepare` kept.
struct Operation {
  std::string name;
  std::function<std::vector<COSInterfacePtr>()> prepare;
  std::function<void(std::vector<COSInterfacePtr>&)> run;
  std::function<void(std::vector<COSInterfacePtr>&)> check;
  // Instances freed even when it raises (a deletion ends whatever happens).
  std::size_t freed = 0;
};

class FaultSweep : public ClassesTest {
 protected:
  // Sweeps one operation at one point; returns the fault points it raised at.
  std::size_t sweep(const Operation& op, Point point) {
    for (std::size_t n = 1; n <= kSweepLimit; ++n) {
      std::vector<COSInterfacePtr> kept = op.prepare();
      // Objects that preparing made and deleted (a save's objects to compare
      // with) leave the drawnow queue before counting.
      sgclasses::forgetDeletedDirtyObjects();
      const std::set<COSInterface*> treeBefore = wholeTree();
      const std::size_t liveBefore = vcos::liveObjectCount();
      bool raised = false;
      bool fired = false;
      std::string text;
      {
        vcos::fault::Scope scope(point, n);
        try {
          op.run(kept);
        } catch (const foundation::core::except::IMsgIDException& e) {
          raised = true;
          text = e.what();
          // The injected fault, or what an operation made of it.
          EXPECT_FALSE(std::string(e.identifier()).empty());
        }
        fired = scope.fired();
      }
      if (!fired) {
        EXPECT_FALSE(raised) << op.name << ": raised with no fault at " << pointName(point) << ": " << text;
        sgclasses::releaseRoot();
        sgclasses::registerClasses();
        return n - 1;
      }
      SCOPED_TRACE(op.name + ", fault at " + pointName(point) + " " + std::to_string(n));
      std::set<COSInterface*> treeAfter;
      {
        SCOPED_TRACE("tree");
        treeAfter = wholeTree();
      }
      if (raised) {
        if (op.check) op.check(kept);
        // Nothing new hangs in the tree and nothing is left over. Two holds
        // are let go first, each bounded: the drawnow queue keeps deleted
        // objects until it grows, and the root and a figure keep their last
        // current figure or axes (a weak reference) until the next one.
        sgclasses::forgetDeletedDirtyObjects();
        if (kept.size() > 1 && !kept[1]->isDestroyed()) sgclasses::makeCurrent(kept[1]);
        for (COSInterface* o : treeAfter) EXPECT_TRUE(treeBefore.contains(o)) << "a half-made object is in the tree";
        EXPECT_EQ(vcos::liveObjectCount(), liveBefore - op.freed);
      }
      if (HasFailure()) return n;
      kept.clear();
      sgclasses::releaseRoot();
      sgclasses::registerClasses();
    }
    ADD_FAILURE() << op.name << " did not complete within " << kSweepLimit << " faults";
    return kSweepLimit;
  }
};

Arr number(double d) { return Arr(vxCreateDoubleScalar(d)); }
Arr word(const char* s) { return Arr(vxCreateString(s)); }

// A figure with defaults set for the classes below it, and an axes.
std::vector<COSInterfacePtr> figureAndAxes() {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  sgutils::DefaultNameAccess::set(figure, "defaultLineLineWidth", number(3).get());
  sgutils::DefaultNameAccess::set(figure, "defaultTextFontWeight", word("bold").get());
  sgutils::DefaultNameAccess::set(sgclasses::root(), "defaultPatchLineWidth", number(2).get());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  return {figure, axes};
}

COSInterfacePtr listenTo(const COSInterfacePtr& source, const char* property) {
  COSInterfacePtr l = COSListener::createListener(COSListenerOp::fromFunction([](COSInterface*, COSEventData*) {}));
  COSPropInfo* p = source->getClass()->findPropertyExact(COSID(property));
  source->addPropertyListener(COSPropertyEvent::PreSet, p, COSListener::toListener(l));
  source->addPropertyListener(COSPropertyEvent::PostSet, p, COSListener::toListener(l));
  return l;
}

std::vector<Operation> operations() {
  std::vector<Operation> ops;
  struct Made {
    const char* cls;
    int parent;  // 0 root, 1 figure, 2 axes
  };
  const Made made[] = {{sgclasses::kFigureClass, 0}, {sgclasses::kAxesClass, 1},  {sgclasses::kLineClass, 2},
                       {sgclasses::kTextClass, 2},   {sgclasses::kPatchClass, 2}, {sgclasses::kGroupClass, 2},
                       {sgclasses::kContextMenuClass, 1}};
  // Construction with the defaults of the ancestors and two name-value pairs.
  for (const Made& m : made) {
    ops.push_back({std::string("create ") + m.cls, figureAndAxes,
                   [m](std::vector<COSInterfacePtr>& k) {
                     COSInterfacePtr parent = m.parent == 0 ? sgclasses::root() : k[m.parent - 1];
                     Arr n1 = word("Visible"), v1 = word("off"), n2 = word("HandleVisibility"), v2 = word("on");
                     const vxArray* pairs[] = {n1.get(), v1.get(), n2.get(), v2.get()};
                     k.push_back(sgclasses::create(m.cls, parent, pairs));
                   },
                   nullptr});  // the sweep checks that no half-made object hangs in the tree
  }
  // A set through listeners, of a plain and of a triple property.
  ops.push_back({"set LineWidth and Color of a line with listeners",
                 [] {
                   auto k = figureAndAxes();
                   k.push_back(sgclasses::create(sgclasses::kLineClass, k[1]));
                   k.push_back(listenTo(k[2], "LineWidth"));
                   k.push_back(listenTo(k[2], "Color"));
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   set(k[2], "LineWidth", number(4).get());
                   Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
                   vxGetPr(red.get())[0] = 1;
                   set(k[2], "Color", red.get());
                 },
                 nullptr});
  // Reparenting to an axes in another figure, whose defaults then apply.
  ops.push_back({"reparent a line to an axes with other defaults",
                 [] {
                   auto k = figureAndAxes();
                   k.push_back(sgclasses::create(sgclasses::kLineClass, k[1]));
                   COSInterfacePtr other = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
                   sgutils::DefaultNameAccess::set(other, "defaultLineLineWidth", number(5).get());
                   k.push_back(sgclasses::create(sgclasses::kAxesClass, other));
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) { set(k[2], "Parent", obj(k[3]).get()); },
                 [](std::vector<COSInterfacePtr>& k) {
                   // In one place or the other, and Parent says where.
                   COSInterface* owner = k[2]->getOwnerObject();
                   EXPECT_TRUE(owner == k[1].get() || owner == k[3].get());
                   EXPECT_EQ(omGetArrayElement(get(k[2], "Parent").get(), 0).get(), owner);
                 }});
  // Reordering the children of an axes.
  ops.push_back({"reorder three lines",
                 [] {
                   auto k = figureAndAxes();
                   for (int i = 0; i < 3; ++i) k.push_back(sgclasses::create(sgclasses::kLineClass, k[1]));
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   Arr list(omCreateVCOSMatrix(3, 1, "vantel.graphics.Graphics"));
                   for (int i = 0; i < 3; ++i) omSetArrayElement(list.get(), i, k[2 + i]);
                   set(k[1], "Children", list.get());
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   // The three lines and the hidden title, each once.
                   const auto now = children(k[1]);
                   const std::set<COSInterface*> distinct(now.begin(), now.end());
                   EXPECT_EQ(now.size(), 4u);
                   EXPECT_EQ(distinct.size(), 4u);
                   for (int i = 2; i < 5; ++i) EXPECT_TRUE(distinct.contains(k[i].get()));
                 }});
  // Reset: the factory values, then the defaults again.
  ops.push_back({"reset a line",
                 [] {
                   auto k = figureAndAxes();
                   k.push_back(sgclasses::create(sgclasses::kLineClass, k[1]));
                   set(k[2], "LineWidth", number(7).get());
                   k.push_back(listenTo(k[2], "LineWidth"));
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) { SGHandle::Reset(k[2]); }, nullptr});
  // A theme change is all or nothing: a raise in the walk leaves the figure
  // its light theme, one in ThemeChanged's listener (after the walk) the dark
  // one; either way every themed value below it is its theme's.
  ops.push_back({"change the theme of a figure",
                 [] {
                   auto k = figureAndAxes();
                   for (int i = 0; i < 2; ++i) k.push_back(sgclasses::create(sgclasses::kLineClass, k[1]));
                   k.push_back(sgclasses::create(sgclasses::kTextClass, k[1]));
                   Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
                   vxGetPr(red.get())[0] = 1;
                   set(k[3], "Color", red.get());
                   // Both themes are kept here, so the run frees nothing whichever wins.
                   for (bool dark : {false, true}) {
                     Arr made(graphics::theme::GraphicsTheme::builtinThemeFactory(dark));
                     k.push_back(omGetArrayElement(made.get(), 0));
                   }
                   Arr light(omCreateVCOSScalar(k[5]));
                   set(k[0], "Theme", light.get());
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   Arr dark(omCreateVCOSScalar(k[6]));
                   set(k[0], "Theme", dark.get());
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   const COSInterfacePtr theme = sgclasses::themeFromAncestors(k[0].get());
                   ASSERT_NE(theme, nullptr);
                   EXPECT_EQ(sgutils::themes::countUnthemedValues(k[0], sgutils::themes::ThemeInfo(theme)), 0u);
                   EXPECT_EQ(text(k[0], "ThemeMode"), "manual");
                   Arr kept = get(k[3], "Color");
                   EXPECT_EQ(vxGetPr(kept.get())[0], 1.0);
                 }});
  // Deletion does not stop for a raising listener: it ends, then the error
  // is passed on.
  ops.push_back({"delete an axes whose lines have listeners",
                 [] {
                   auto k = figureAndAxes();
                   for (int i = 0; i < 2; ++i) {
                     COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, k[1]);
                     COSInterfacePtr l =
                         COSListener::createListener(COSListenerOp::fromFunction([](COSInterface*, COSEventData*) {}));
                     line->addListener(COSID("ObjectBeingDestroyed"), COSListener::toListener(l));
                     k.push_back(line);
                     k.push_back(l);
                   }
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) { k[1]->deleteObject(nullptr); },
                 [](std::vector<COSInterfacePtr>& k) {
                   EXPECT_TRUE(k[1]->isDestroyed());
                   EXPECT_TRUE(k[2]->isDestroyed());
                   EXPECT_TRUE(k[4]->isDestroyed());
                   EXPECT_EQ(k[0]->getNewestChild(), nullptr);
                 },
                 1});  // the axes' title, which nothing else holds
  // A copy of an axes with a line, a group holding a line whose context menu
  // is copied with it, into another figure with defaults of its own: a fault
  // anywhere leaves no half-built copy in that figure or anywhere else.
  ops.push_back({"copy an axes with lines, a group and a context menu",
                 [] {
                   auto k = figureAndAxes();
                   COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, k[1]);
                   set(line, "LineWidth", number(6).get());
                   COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, k[1]);
                   COSInterfacePtr inner = sgclasses::create(sgclasses::kLineClass, group);
                   COSInterfacePtr menu = sgclasses::create(sgclasses::kContextMenuClass, k[0]);
                   set(inner, "ContextMenu", obj(menu).get());
                   COSInterfacePtr other = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
                   sgutils::DefaultNameAccess::set(other, "defaultLineLineWidth", number(5).get());
                   COSInterfacePtr otherAxes = sgclasses::create(sgclasses::kAxesClass, other);
                   k.insert(k.end(), {other, otherAxes, line, group, inner, menu});
                   return k;
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   Arr made(sgutils::CopyContext::doCopyObjects({k[1]}, {k[2]}, false));
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   EXPECT_EQ(children(k[2]), std::vector<COSInterface*>{k[3].get()});
                   EXPECT_EQ(children(k[1]).size(), 3u);  // the line, the group and the hidden title
                   // A copy connected before the fault was the figure's current
                   // axes for a while: the figure lets go of it.
                   sgclasses::makeCurrent(k[3]);
                 }});
  // Save and load of a figure with an axes, lines (one with listeners on its
  // LineWidth), a group, a text, a patch, a context menu a line refers to and
  // user data holding a line, with defaults on the figure. The load builds a
  // second figure below the root; a fault anywhere leaves none of it.
  const auto savedTree = [] {
    auto k = figureAndAxes();
    COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, k[1]);
    set(line, "LineWidth", number(6).get());
    COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, k[1]);
    COSInterfacePtr inner = sgclasses::create(sgclasses::kLineClass, group);
    sgclasses::create(sgclasses::kTextClass, k[1]);
    sgclasses::create(sgclasses::kPatchClass, k[1]);
    COSInterfacePtr menu = sgclasses::create(sgclasses::kContextMenuClass, k[0]);
    set(inner, "ContextMenu", obj(menu).get());
    set(k[1], "UserData", obj(line).get());
    k.insert(k.end(), {line, listenTo(line, "LineWidth")});
    return k;
  };
  const auto bytesOf = [](const COSInterfacePtr& top) {
    Arr value(omCreateVCOSScalar(top));
    const std::pair<std::string, const vxArray*> values[] = {{"f", value.get()}};
    return sgutils::GraphicsFile::serialize(values);
  };
  ops.push_back({"save a figure tree", savedTree,
                 [bytesOf](std::vector<COSInterfacePtr>& k) { EXPECT_FALSE(bytesOf(k[0]).empty()); }, nullptr});
  auto bytes = std::make_shared<std::vector<std::uint8_t>>();
  ops.push_back({"load a figure tree below the root",
                 [savedTree, bytesOf, bytes] {
                   auto k = savedTree();
                   *bytes = bytesOf(k[0]);
                   return k;
                 },
                 [bytes](std::vector<COSInterfacePtr>&) {
                   sgutils::GraphicsLoadOptions options;
                   options.parentOfTopLevel = [](const COSInterfacePtr&) { return sgclasses::root(); };
                   auto loaded = sgutils::GraphicsFile::deserialize(*bytes, options);
                   ASSERT_EQ(loaded.size(), 1u);
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   // The source figure and nothing else below the root.
                   EXPECT_EQ(children(sgclasses::root()), std::vector<COSInterface*>{k[0].get()});
                 }});
  // An axes loaded into another figure, which has defaults of its own that
  // the loaded lines take after their callbacks.
  ops.push_back({"load an axes into another figure",
                 [savedTree, bytesOf, bytes] {
                   auto k = savedTree();
                   *bytes = bytesOf(k[1]);
                   COSInterfacePtr other = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
                   sgutils::DefaultNameAccess::set(other, "defaultLineLineWidth", number(5).get());
                   COSInterfacePtr otherAxes = sgclasses::create(sgclasses::kAxesClass, other);
                   k.insert(k.end(), {other, otherAxes});
                   return k;
                 },
                 [bytes](std::vector<COSInterfacePtr>& k) {
                   sgutils::GraphicsLoadOptions options;
                   COSInterfacePtr other = k[4];
                   options.parentOfTopLevel = [other](const COSInterfacePtr&) { return other; };
                   auto loaded = sgutils::GraphicsFile::deserialize(*bytes, options);
                   ASSERT_EQ(loaded.size(), 1u);
                 },
                 [](std::vector<COSInterfacePtr>& k) {
                   EXPECT_EQ(children(k[4]), std::vector<COSInterface*>{k[5].get()});
                   // A loaded axes hooked before the fault was the figure's
                   // current axes for a while: the figure's own is again.
                   const Arr current = get(k[4], "CurrentAxes");
                   ASSERT_TRUE(vxIsObject(current.get()));
                   EXPECT_EQ(omGetArrayElement(current.get(), 0).get(), k[5].get());
                 }});
  return ops;
}

TEST_F(FaultSweep, EveryFaultPointOfConstructionDefaultsSetReparentReorderResetDeleteCopySaveAndLoad) {
  std::size_t total = 0;
  std::size_t byPoint[3] = {};
  for (const Operation& op : operations())
    for (Point p : {Point::Allocation, Point::PropertySet, Point::Listener}) {
      const std::size_t swept = sweep(op, p);
      total += swept;
      byPoint[static_cast<int>(p)] += swept;
      if (HasFailure()) return;
    }
  std::cout << "fault points swept: " << total << " (allocations " << byPoint[0] << ", property sets " << byPoint[1]
            << ", listener calls " << byPoint[2] << ")\n";
  RecordProperty("FaultPointsSwept", std::to_string(total));
  // Construction alone passes allocations, sets and the creation listener.
  EXPECT_GT(total, 50u);
}

}  // namespace
}  // namespace sgtest::classes
