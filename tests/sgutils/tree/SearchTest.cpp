// findobj on graphics objects, through the Children of each container, and
// the walks up the tree.
#include <gtest/gtest.h>

#include "fixtures/sgutils/tree/TreeClasses.h"
#include "sgutils/objects/TreeContainer.gen.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"
#include "sgutils/tree/TreeWalks.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgtest::tree {
namespace {

using List = std::vector<COSInterfacePtr>;
using Arr = matrix::unique_vxArray;

// findobj called as the language calls the method on `start`.
List findobj(const vxArray* start, std::initializer_list<Arr> args) {
  std::vector<const vxArray*> in{start};
  for (const Arr& a : args) in.push_back(a.get());
  vxArray* out[1] = {nullptr};
  EXPECT_TRUE(omCallMethod("handle", "findobj", COSGetPublicClient(), 1, out, static_cast<int>(in.size()), in.data(),
                           true));
  Arr result(out[0]);
  EXPECT_STREQ(vxGetClassName(result.get()), vxIsEmpty(result.get()) ? "vantel.graphics.GraphicsPlaceholder"
                                                                     : vxGetClassName(result.get()));
  return elements(result.get());
}
List findobj(const COSInterfacePtr& start, std::initializer_list<Arr> args) {
  Arr self(omCreateVCOSScalar(start));
  return findobj(self.get(), args);
}
Arr text(const char* t) { return Arr(vxCreateString(t)); }
Arr number(double d) { return Arr(vxCreateDoubleScalar(d)); }

// root > box > {a, hidden, shy, inner > deep}
class Search : public ::testing::Test {
 protected:
  RootScope scope;
  COSInterfacePtr box = make(kContainer, scope.root(), "box");
  COSInterfacePtr a = make(kLeaf, box, "x");
  COSInterfacePtr hidden = make(kLeaf, box, "x", HandleVisibility::Off);
  COSInterfacePtr shy = make(kLeaf, box, "x", HandleVisibility::Callback);
  COSInterfacePtr inner = make(kContainer, box, "inner");
  COSInterfacePtr deep = make(kLeaf, inner, "x");
};

TEST_F(Search, HonoursHiddenHandlesUnlessFindAllIsOn) {
  EXPECT_EQ(findobj(box, {text("Tag"), text("x")}), (List{deep, a}));
  scope.setCallbackRunning(true);
  EXPECT_EQ(findobj(box, {text("Tag"), text("x")}), (List{deep, shy, a}));
  scope.setCallbackRunning(false);
  {
    sgutils::ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard showAll;
    EXPECT_EQ(findobj(box, {text("Tag"), text("x")}), (List{deep, shy, hidden, a}));
  }
  sgutils::DefaultFindobjClassInfo::setFindAllObjects(true);
  COSClassInfo* info = COSClass::getClass(COSID(kContainer))->getClassInfo();
  EXPECT_FALSE(info->usesCustomChildrenList());
  List all = findobj(box, {text("Tag"), text("x")});
  sgutils::DefaultFindobjClassInfo::setFindAllObjects(false);
  EXPECT_EQ(all, (List{deep, shy, hidden, a}));
  EXPECT_TRUE(info->usesCustomChildrenList());
}

TEST_F(Search, DepthConditionsAndOperatorsWorkThroughTheChildrenLists) {
  EXPECT_EQ(findobj(box, {text("-depth"), number(1), text("Tag"), text("x")}), (List{a}));
  EXPECT_EQ(findobj(box, {text("Tag"), text("inner"), text("-or"), text("Tag"), text("box")}), (List{box, inner}));
  EXPECT_EQ(findobj(box, {text("-isa"), text(kLeaf), text("-and"), text("-not"), text("Tag"), text("nothing")}),
            (List{deep, a}));
  EXPECT_EQ(findobj(scope.root(), {text("-class"), text(kContainer)}), (List{box, inner}));
}

TEST_F(Search, FlatSearchesTheStartingObjectsAlone) {
  EXPECT_EQ(findobj(box, {text("FLAT")}), (List{box}));
  Arr cell(vxCreateCellMatrix(1, 1));
  vxSetCell(cell.get(), 0, vxCreateString("flat"));
  EXPECT_EQ(findobj(box, {Arr(vxDuplicateArray(cell.get())), text("Tag"), text("box")}), (List{box}));
  EXPECT_EQ(findobj(box, {text("flat"), text("Tag"), text("x")}), List{});
}

TEST_F(Search, EmptyInputsAndResultsArePlaceholderArrays) {
  Arr none(omCreateVCOSEmpty(COSID(kLeaf)));
  vxArray* out[1] = {nullptr};
  const vxArray* in[] = {none.get()};
  ASSERT_TRUE(omCallMethod(COSID(kLeaf), COSID("findobj"), COSGetPublicClient(), 1, out, 1, in, false));
  Arr empty(out[0]);
  EXPECT_STREQ(vxGetClassName(empty.get()), "vantel.graphics.GraphicsPlaceholder");
  EXPECT_EQ(vxGetM(empty.get()), 0u);
  EXPECT_EQ(vxGetN(empty.get()), 0u);

  Arr self(omCreateVCOSScalar(box));
  const vxArray* in2[] = {self.get(), nullptr, nullptr};
  Arr tag = text("Tag"), missing = text("missing");
  in2[1] = tag.get();
  in2[2] = missing.get();
  ASSERT_TRUE(omCallMethod(COSID(kLeaf), COSID("findobj"), COSGetPublicClient(), 1, out, 3, in2, true));
  Arr nothing(out[0]);
  EXPECT_TRUE(vxIsEmpty(nothing.get()));
  EXPECT_STREQ(vxGetClassName(nothing.get()), "vantel.graphics.GraphicsPlaceholder");
}

TEST_F(Search, WalksUpFindTheNearestOrTopmostAncestorOfAClass) {
  const COSClass* container = COSClass::getClass(COSID(kContainer));
  const COSClass* root = COSClass::getClass(COSID(kRoot));
  const COSClass* containerMixin = COSClass::getClass(sgtest::TreeContainer::classID());
  // Through the tree link and through the Parent property.
  for (bool treeLink : {true, false}) {
    EXPECT_EQ(sgutils::getParent(deep, treeLink), inner);
    EXPECT_EQ(sgutils::getAncestor(deep, container, treeLink), inner);
    EXPECT_EQ(sgutils::getAncestor(inner, container, treeLink), inner);  // itself
    EXPECT_EQ(sgutils::getAncestor(deep, root, treeLink), scope.root());
    // Topmost: box and inner are containers; the root is one too by its
    // generated class.
    EXPECT_EQ(sgutils::getTopLevelAncestor(deep, {container}, treeLink), box);
    EXPECT_EQ(sgutils::getTopLevelAncestor(deep, {containerMixin}, treeLink), scope.root());
    EXPECT_EQ(sgutils::getTopLevelAncestor(deep, {root, nullptr}, treeLink), scope.root());
  }
  COSInterfacePtr loose = make(kLeaf);
  EXPECT_EQ(sgutils::getAncestor(loose, container, false), nullptr);
  EXPECT_EQ(sgutils::getParent(loose, false), nullptr);
  EXPECT_EQ(sgutils::getAncestor(nullptr, container, false), nullptr);

  // A walk from a deleted object raises the platform's identifier.
  loose->deleteObject(COSGetPublicClient());
  for (bool treeLink : {true, false})
    EXPECT_EQ(errorId([&] { sgutils::getAncestor(loose, container, treeLink); }), "VANTEL:vcos:InvalidHandle");
}

}  // namespace
}  // namespace sgtest::tree
