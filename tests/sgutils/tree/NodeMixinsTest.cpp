// The node mixins: the raw tree beside Children and Parent, addNode, and
// the events of hooking and unhooking a node.
#include <gtest/gtest.h>

#include "fixtures/sgutils/tree/TreeClasses.h"
#include "sgutils/objects/NodeChildren.gen.h"
#include "sgutils/objects/NodeParent.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/tree/ChildData.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgtest::tree {
namespace {

using graphics::mixin::NodeChildren;
using List = std::vector<COSInterfacePtr>;
using Arr = matrix::unique_vxArray;

Arr read(const COSInterfacePtr& object, const char* name) {
  Arr self(omCreateVCOSScalar(object));
  return Arr(vxGetProperty(self.get(), 0, name));
}

// The node events one parent sent: "+" or "-", then the two ends.
struct Heard {
  std::string kind;
  COSInterface* parent;
  COSInterface* child;
};

class NodeMixins : public ::testing::Test {
 protected:
  RootScope scope;
  COSInterfacePtr box = make(kNodeContainer, scope.root());
  COSInterfacePtr shown = make(kLeaf, box);
  COSInterfacePtr hidden = make(kLeaf, box, "", HandleVisibility::Off);

  std::vector<Heard> heard;
  void listen(const COSInterfacePtr& parent) {
    for (auto [event, kind] : {std::pair{NodeChildren::nodeChildAddedEventID(), "+"},
                               std::pair{NodeChildren::nodeChildRemovedEventID(), "-"}}) {
      std::string k = kind;
      COSInterfacePtr listener = COSListener::createListener(COSListenerOp::fromFunction([this, k](COSInterface*, COSEventData* data) {
        auto* child = dynamic_cast<sgutils::ChildData*>(data);
        ASSERT_NE(child, nullptr);
        heard.push_back({k, child->getParentNode().get(), child->getChildNode().get()});
      }));
      parent->addListener(event, COSListener::toListener(listener));
    }
  }
};

TEST_F(NodeMixins, ShowTheRawTreeIncludingHiddenChildren) {
  EXPECT_EQ(publicChildren(box), (List{shown}));
  Arr raw = read(box, "NodeChildren");
  EXPECT_EQ(elements(raw.get()), (List{hidden, shown}));
  EXPECT_EQ(vxGetN(raw.get()), 1u);
  auto& parentOf = *sgutils::blockOf<graphics::mixin::NodeParent>(box.get(), graphics::mixin::NodeParent::classID());
  EXPECT_EQ(parentOf.getNodeParentInternal(), scope.root());
  EXPECT_EQ(elements(read(box, "NodeParent").get()), (List{scope.root()}));

  // No children: null, not an empty array.
  COSInterfacePtr empty = make(kNodeContainer, scope.root());
  const COSPropInfo* nodeChildren = empty->getClass()->findPropertyExact(COSID("NodeChildren"));
  COSValue none = nodeChildren->getValue(empty.get());
  EXPECT_TRUE(none.isEmpty());
  nodeChildren->releaseValue(empty.get(), none);
}

TEST_F(NodeMixins, SettingThemOrAddNodeOnTheBaseLeavesTheTreeAlone) {
  Arr other(omCreateVCOSScalar(scope.root()));
  Arr self(omCreateVCOSScalar(box));
  vxSetProperty(self.get(), 0, "NodeParent", other.get());
  Arr leafList(omCreateVCOSScalar(shown));
  vxSetProperty(self.get(), 0, "NodeChildren", leafList.get());
  EXPECT_EQ(box->getOwnerObject(), scope.root().get());
  EXPECT_EQ(elements(read(box, "NodeChildren").get()), (List{hidden, shown}));

  COSInterfacePtr loose = make(kLeaf);
  Arr node(omCreateVCOSScalar(loose));
  const vxArray* in[] = {self.get(), node.get()};
  ASSERT_TRUE(omCallMethod("sg2utils.ConcreteNodeParent", "addNode", COSGetPublicClient(), 0, nullptr, 2, in, true));
  EXPECT_EQ(loose->getOwnerObject(), nullptr);
  loose->deleteObject(COSGetPublicClient());
}

TEST_F(NodeMixins, HookingAndUnhookingANodeFireItsEventOnceNamingBothEnds) {
  COSInterfacePtr other = make(kNodeContainer, scope.root());
  listen(box);
  listen(other);
  COSInterfacePtr node = make(kLeaf);
  NodeChildren::hookNode(box, node);
  NodeChildren::hookNode(box, node);  // already there: nothing happens
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].kind, "+");
  EXPECT_EQ(heard[0].parent, box.get());
  EXPECT_EQ(heard[0].child, node.get());
  EXPECT_EQ(box->getNewestChild(), node.get());

  // Moving it: removed from the old parent, added to the new one.
  NodeChildren::hookNode(other, node);
  ASSERT_EQ(heard.size(), 3u);
  EXPECT_EQ(heard[1].kind, "-");
  EXPECT_EQ(heard[1].parent, box.get());
  EXPECT_EQ(heard[2].kind, "+");
  EXPECT_EQ(heard[2].parent, other.get());

  NodeChildren::unhookNode(node);
  NodeChildren::unhookNode(node);
  ASSERT_EQ(heard.size(), 4u);
  EXPECT_EQ(heard[3].kind, "-");
  EXPECT_EQ(heard[3].parent, other.get());
  EXPECT_EQ(heard[3].child, node.get());
  EXPECT_EQ(node->getOwnerObject(), nullptr);
  node->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::tree
