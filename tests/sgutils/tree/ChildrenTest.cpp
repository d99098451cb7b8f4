// Children of a container: read newest first with the hiding rules, and
// reordered by setting a permutation.
#include <gtest/gtest.h>

#include <stdexcept>

#include "fixtures/sgutils/tree/TreeClasses.h"
#include "foundation/core/except/Error.h"
#include "foundation/core/except/WarningChannel.h"
#include "sgutils/tree/DefaultChildStrategy.h"
#include "sgutils/tree/RootInstance.h"
#include "sgutils/tree/ScopeShowHiddenHandlesOn.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"
#include "sgutils/objects/TreeNode.gen.h"
#include "sgutils/objects/TreeRoot.gen.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSIterator.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgtest::tree {
namespace {

using List = std::vector<COSInterfacePtr>;
using sgutils::ShowHiddenHandlesInternal;
using Guard = ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard;

class Children : public ::testing::Test {
 protected:
  RootScope scope;
  COSInterfacePtr box = make(kContainer, scope.root());
  COSInterfacePtr a = make(kLeaf, box, "a");
  COSInterfacePtr b = make(kLeaf, box, "b");
  COSInterfacePtr c = make(kLeaf, box, "c");

  void setChildren(const List& order) {
    matrix::unique_vxArray list(omCreateVCOSMatrix(1, order.size(), kLeaf));
    for (std::size_t i = 0; i < order.size(); ++i) omSetArrayElement(list.get(), i, order[i]);
    matrix::unique_vxArray self(omCreateVCOSScalar(box));
    vxSetProperty(self.get(), 0, "Children", list.get());
  }
  void setChildren(const vxArray* value) {
    matrix::unique_vxArray self(omCreateVCOSScalar(box));
    vxSetProperty(self.get(), 0, "Children", value);
  }
};

TEST_F(Children, ListsTheNewestFirstAsAColumnOfTheSharedClass) {
  EXPECT_EQ(publicChildren(box), (List{c, b, a}));
  matrix::unique_vxArray self(omCreateVCOSScalar(box));
  matrix::unique_vxArray read(vxGetProperty(self.get(), 0, "Children"));
  EXPECT_EQ(vxGetM(read.get()), 3u);
  EXPECT_EQ(vxGetN(read.get()), 1u);
  EXPECT_STREQ(vxGetClassName(read.get()), kLeaf);
  // A child hooked later leads, whatever its class.
  COSInterfacePtr inner = make(kContainer, box);
  EXPECT_EQ(publicChildren(box), (List{inner, c, b, a}));
}

TEST_F(Children, NoVisibleChildGivesAnEmptyPlaceholderArray) {
  COSInterfacePtr empty = make(kContainer, scope.root());
  matrix::unique_vxArray read(childrenOf(empty).getChildList());
  EXPECT_TRUE(vxIsEmpty(read.get()));
  EXPECT_STREQ(vxGetClassName(read.get()), "vantel.graphics.GraphicsPlaceholder");
  // An owner that is gone, or none, reads the same way.
  struct Detached : sgutils::ChildManager {
    COSInterfacePtr owner;
    COSInterfacePtr getOwnerObject() const override { return owner; }
    using ChildManager::getChildList;
  } detached;
  detached.owner = box;
  box->deleteObject(COSGetPublicClient());
  matrix::unique_vxArray gone(detached.getChildList());
  EXPECT_TRUE(vxIsEmpty(gone.get()));
  detached.owner.reset();
  matrix::unique_vxArray none(detached.getChildList());
  EXPECT_STREQ(vxGetClassName(none.get()), "vantel.graphics.GraphicsPlaceholder");
}

TEST_F(Children, HiddenChildrenShowOnlyWhenTheRulesLetThem) {
  setVisibility(a, HandleVisibility::Off);
  setVisibility(b, HandleVisibility::Callback);
  EXPECT_EQ(publicChildren(box), (List{c}));

  scope.setCallbackRunning(true);
  EXPECT_EQ(publicChildren(box), (List{c, b}));
  scope.setCallbackRunning(false);

  {
    Guard showAll;
    EXPECT_EQ(publicChildren(box), (List{c, b, a}));
  }
  EXPECT_EQ(publicChildren(box), (List{c}));

  // The root's ShowHiddenHandles, which this container's Children honour,
  // through its guard, which puts it back.
  {
    sgutils::ScopeShowHiddenHandlesOn on;
    EXPECT_TRUE(sgutils::DefaultChildStrategy::isShowHiddenHandlesOn());
    EXPECT_EQ(publicChildren(box), (List{c, b, a}));
  }
  EXPECT_FALSE(rootOf(scope.root()).getShowHiddenHandles());
  EXPECT_EQ(publicChildren(box), (List{c}));

  // An Internal child is no child at all, under every switch.
  matrix::unique_vxArray self(omCreateVCOSScalar(c));
  matrix::unique_vxArray yes(vxCreateLogicalScalar(true));
  vxSetProperty(self.get(), 0, "Internal", yes.get());
  Guard showAll;
  EXPECT_EQ(publicChildren(box), (List{b, a}));
}

TEST(HiddenHandleGuards, RestoreOnEveryExitAndNest) {
  ASSERT_FALSE(ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag());
  try {
    Guard outer;
    {
      Guard inner;
      EXPECT_TRUE(ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag());
    }
    EXPECT_TRUE(ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag());
    throw std::runtime_error("leave");
  } catch (const std::runtime_error&) {
  }
  EXPECT_FALSE(ShowHiddenHandlesInternal::GetShowHiddenHandlesInternalFlag());

  RootScope scope;
  rootOf(scope.root()).setShowHiddenHandles(true, graphics::datatype::PublicClient);
  try {
    sgutils::ScopeShowHiddenHandlesOn on;
    rootOf(scope.root()).setShowHiddenHandles(false, graphics::datatype::PublicClient);
    throw std::runtime_error("leave");
  } catch (const std::runtime_error&) {
  }
  EXPECT_TRUE(rootOf(scope.root()).getShowHiddenHandles());
}

TEST(HiddenHandleGuards, NeedARoot) {
  registerTreeClasses();
  sgutils::RootInstance::setGetRootInstanceFcn([] { return COSInterfacePtr(); });
  EXPECT_EQ(errorId([] { sgutils::ScopeShowHiddenHandlesOn on; }), "VANTEL:root:Deleted");
  EXPECT_EQ(sgutils::RootInstance::getRootInstance(sgutils::NullTolerance::Tolerate), nullptr);
  // Without a root a callback counts as running.
  COSInterfacePtr box = make(kContainer);
  COSInterfacePtr shy = make(kLeaf, box, "", HandleVisibility::Callback);
  EXPECT_EQ(publicChildren(box), (List{shy}));
  box->deleteObject(COSGetPublicClient());
  sgutils::RootInstance::clearGetRootInstanceFcn();
  EXPECT_THROW(sgutils::RootInstance::getRootInstance(sgutils::NullTolerance::Tolerate), std::bad_function_call);
}

TEST_F(Children, SettingAPermutationReordersTheTree) {
  setChildren(List{a, c, b});
  EXPECT_EQ(publicChildren(box), (List{a, c, b}));
  EXPECT_EQ(box->getNewestChild(), a.get());
  TreeChildren& manager = childrenOf(box);
  EXPECT_EQ(manager.pre, 1);
  EXPECT_EQ(manager.post, 1);
  EXPECT_FALSE(manager.isInChildrenReordering());

  // The same order again calls no hook.
  setChildren(List{a, c, b});
  EXPECT_EQ(manager.pre, 1);

  // Numeric handles and a column are lists too; an empty value is no list
  // of the visible children.
  matrix::unique_vxArray numbers(vxCreateDoubleMatrix(3, 1, vxREAL));
  const COSID doubleId("double"), objectId("vantel.graphics.datatype.COSInterface");
  auto* toNumber = COSTypeRepository::getConversion(objectId, doubleId);
  ASSERT_NE(toNumber, nullptr);
  double* pr = vxGetPr(numbers.get());
  pr[0] = toNumber->convert(COSValue(b.get())).asDouble();
  pr[1] = toNumber->convert(COSValue(a.get())).asDouble();
  pr[2] = toNumber->convert(COSValue(c.get())).asDouble();
  setChildren(numbers.get());
  EXPECT_EQ(publicChildren(box), (List{b, a, c}));
}

TEST_F(Children, ABadListRaisesAndLeavesTheOrderAsItWas) {
  const List before{c, b, a};
  COSInterfacePtr stranger = make(kLeaf, scope.root());
  EXPECT_EQ(errorId([&] { setChildren(List{a, b}); }), "VANTEL:sg:BadChildrenPermutation");
  EXPECT_EQ(errorId([&] { setChildren(List{a, b, c, stranger}); }), "VANTEL:sg:BadChildrenPermutation");
  matrix::unique_vxArray text(vxCreateString("a"));
  EXPECT_EQ(errorId([&] { setChildren(text.get()); }), "VANTEL:sg:BadChildren");
  matrix::unique_vxArray noHandle(vxCreateDoubleScalar(123456.25));
  EXPECT_EQ(errorId([&] { setChildren(noHandle.get()); }), "VANTEL:sg:BadChildren");
  matrix::unique_vxArray cell(vxCreateCellMatrix(1, 1));
  EXPECT_EQ(errorId([&] { setChildren(cell.get()); }), "VANTEL:sg:BadChildren");
  EXPECT_EQ(publicChildren(box), before);
  TreeChildren& manager = childrenOf(box);
  EXPECT_EQ(manager.undo, 2);  // the permutation errors; the value errors come before any hook
  EXPECT_FALSE(manager.isInChildrenReordering());

  // A hook that fails after the move still ends the reorder.
  manager.failPostProcess = true;
  EXPECT_EQ(errorId([&] { setChildren(List{a, b, c}); }), "VANTEL:sg:BadChildren");
  EXPECT_EQ(manager.undo, 3);
  EXPECT_FALSE(manager.isInChildrenReordering());
}

TEST_F(Children, AComponentBehindAnOrdinaryChildOnlyWarnsAndMovesNothing) {
  COSInterfacePtr component = make(kComponent, box);
  const List before{component, c, b, a};
  ASSERT_EQ(publicChildren(box), before);
  auto& warnings = foundation::core::except::WarningChannel::instance();
  warnings.setLast("", "");
  auto quiet = warnings.setSink([](std::string_view) {});
  setChildren(List{a, component, b, c});
  warnings.setSink(quiet);
  EXPECT_EQ(warnings.lastId(), "VANTEL:sg:default_child_strategy:IllegalPermutation");
  EXPECT_EQ(publicChildren(box), before);
  EXPECT_EQ(childrenOf(box).post, 1);  // a normal return: the hook after the set ran
  // Components first is a legal order.
  setChildren(List{component, a, b, c});
  EXPECT_EQ(publicChildren(box), (List{component, a, b, c}));
}

TEST_F(Children, HiddenChildrenMayBeLeftOutAndEndAtTheOldEnd) {
  setVisibility(b, HandleVisibility::Off);
  setChildren(List{a, c});
  Guard showAll;
  EXPECT_EQ(publicChildren(box), (List{a, c, b}));
  // A listed hidden child is accepted too, but an Internal one is not.
  setChildren(List{b, c, a});
  EXPECT_EQ(publicChildren(box), (List{b, c, a}));
  matrix::unique_vxArray self(omCreateVCOSScalar(a));
  matrix::unique_vxArray yes(vxCreateLogicalScalar(true));
  vxSetProperty(self.get(), 0, "Internal", yes.get());
  EXPECT_EQ(errorId([&] { setChildren(List{a, b, c}); }), "VANTEL:sg:BadChildrenPermutation");
}

TEST_F(Children, ACallbackChildCountsOnlyWhileACallbackRuns) {
  setVisibility(b, HandleVisibility::Callback);
  setChildren(List{a, c});  // b is not visible now: it may be left out
  scope.setCallbackRunning(true);
  EXPECT_EQ(errorId([&] { setChildren(List{c, a}); }), "VANTEL:sg:BadChildrenPermutation");
  setChildren(List{c, b, a});
  EXPECT_EQ(publicChildren(box), (List{c, b, a}));
}

TEST_F(Children, SaveListsLeaveOutWhatIsNotSavedAndRestoreReproducesTheOrder) {
  TreeChildren& manager = childrenOf(box);
  nodeOf(b).setSerializable(false, graphics::datatype::PublicClient);
  manager.excluded = c.get();
  setVisibility(a, HandleVisibility::Off);  // hidden, but saved
  matrix::unique_vxArray saved(manager.getSerializableChildList());
  EXPECT_EQ(elements(saved.get()), (List{a}));
  matrix::unique_vxArray loaded(manager.getDeserializedChildList());
  EXPECT_EQ(elements(loaded.get()), (List{a}));

  // Restoring hooks each listed child below the owner, the first newest.
  COSInterfacePtr other = make(kContainer, scope.root());
  matrix::unique_vxArray list(omCreateVCOSMatrix(2, 1, kLeaf));
  omSetArrayElement(list.get(), 0, b);
  omSetArrayElement(list.get(), 1, a);
  childrenOf(other).restoreSerializedChildren(list.get());
  childrenOf(other).restoreSerializedChildren(nullptr);
  EXPECT_EQ(other->getNewestChild(), b.get());
  EXPECT_EQ(b->getOlderSibling(), a.get());
  EXPECT_EQ(publicChildren(box), (List{c}));
}

TEST_F(Children, ANewStrategyReplacesHowAListIsApplied) {
  struct Recording : sgutils::ChildStrategy {
    int calls = 0;
    bool reordering = false;
    void processNewListOfChildren(sgutils::ChildManager* m, const sgutils::ChildList&, const sgutils::ChildList&) override {
      ++calls;
      reordering = m->isInChildrenReordering();
    }
  };
  auto recording = std::make_shared<Recording>();
  TreeChildren& manager = childrenOf(box);
  auto shared = manager.getChildStrategy();
  // A copy of a manager shares its strategy.
  TreeChildren copy(manager);
  EXPECT_EQ(copy.getChildStrategy(), shared);
  manager.setChildStrategy(recording);
  setChildren(List{a, b, c});
  EXPECT_EQ(recording->calls, 1);
  EXPECT_TRUE(recording->reordering);
  EXPECT_FALSE(manager.isInChildrenReordering());
  EXPECT_EQ(publicChildren(box), (List{c, b, a}));  // the strategy moved nothing
}

TEST_F(Children, RawWalksShowEveryChild) {
  setVisibility(b, HandleVisibility::Off);
  COSInterfacePtr inner = make(kContainer, box);
  COSInterfacePtr deep = make(kLeaf, inner);
  TreeChildren& manager = childrenOf(box);
  auto collect = [](COSIterator it) {
    List out;
    while (it.hasMoreElements()) out.push_back(it.nextElement());
    return out;
  };
  EXPECT_EQ(collect(manager.getLIFOChildList()), (List{inner, c, b, a}));
  EXPECT_EQ(collect(manager.getFIFOChildList()), (List{a, b, c, inner}));
  EXPECT_EQ(collect(manager.getRecursiveLIFOChildList()), (List{inner, deep, c, b, a}));
  EXPECT_EQ(manager.getAllChildren(), (List{inner, c, b, a}));
}

}  // namespace
}  // namespace sgtest::tree
