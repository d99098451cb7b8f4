// findobj walks a container's children in place: it must find exactly what
// the search through the built Children lists finds, in the same order,
// whatever the HandleVisibility of the children and the hiding switches.
#include <vector>

#include "ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/ContainerChildren.h"
#include "sgutils/objects/GraphicsBaseFunctions.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/tree/ChildListing.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSPropT.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

class FindobjRoute : public ClassesTest {
 protected:
  void TearDown() override {
    sgutils::setChildListingLookup(&sgclasses::ContainerChildren::listingOf);
    ClassesTest::TearDown();
  }

  // findobj(start, args...) through the graphics method, as sgsh calls it.
  static std::vector<COSInterface*> find(const COSInterfacePtr& start, std::vector<const char*> words) {
    Arr self(omCreateVCOSScalar(start));
    std::vector<Arr> owned;
    std::vector<const vxArray*> inputs{self.get()};
    for (const char* w : words) {
      owned.emplace_back(vxCreateString(w));
      inputs.push_back(owned.back().get());
    }
    vxArray* result = nullptr;
    EXPECT_TRUE(omCallMethod(COSID("vantel.graphics.Graphics"), "findobj", COSGetPublicClient(), 1, &result,
                             static_cast<int>(inputs.size()), inputs.data(), true));
    Arr owner(result);
    std::vector<COSInterface*> found;
    for (std::size_t i = 0; i < vxGetNumberOfElements(result); ++i) found.push_back(omGetArrayElement(result, i).get());
    return found;
  }

  // The same search with the in-place route and with the built lists.
  void expectSameBothWays(const COSInterfacePtr& start, const std::vector<const char*>& words, std::size_t expected) {
    const std::vector<COSInterface*> inPlace = find(start, words);
    sgutils::setChildListingLookup(nullptr);
    const std::vector<COSInterface*> built = find(start, words);
    sgutils::setChildListingLookup(&sgclasses::ContainerChildren::listingOf);
    EXPECT_EQ(inPlace, built);
    EXPECT_EQ(inPlace.size(), expected);
  }
};

TEST_F(FindobjRoute, HiddenChildrenAndTheSwitchesGiveWhatChildrenGives) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  const char* visibilities[] = {"on", "off", "callback", "on", "off", "on"};
  for (const char* v : visibilities) {
    set(sgclasses::create(sgclasses::kLineClass, axes), "HandleVisibility", Arr(vxCreateString(v)).get());
    set(sgclasses::create(sgclasses::kLineClass, group), "HandleVisibility", Arr(vxCreateString(v)).get());
  }
  // A hidden group hides its lines from the search too.
  COSInterfacePtr hiddenGroup = sgclasses::create(sgclasses::kGroupClass, axes);
  set(hiddenGroup, "HandleVisibility", Arr(vxCreateString("off")).get());
  sgclasses::create(sgclasses::kLineClass, hiddenGroup);

  // Visible: three lines in the axes, three in the group.
  expectSameBothWays(figure, {"Type", "line"}, 6);
  expectSameBothWays(figure, {}, 9);  // the figure, the axes, the visible group and six lines

  // The root's ShowHiddenHandles widens every list: all 13 lines, the title.
  set(sgclasses::root(), "ShowHiddenHandles", Arr(vxCreateString("on")).get());
  expectSameBothWays(figure, {"Type", "line"}, 13);
  expectSameBothWays(figure, {"Type", "text"}, 1);
  set(sgclasses::root(), "ShowHiddenHandles", Arr(vxCreateString("off")).get());

  // findall walks the raw tree either way.
  sgutils::DefaultFindobjClassInfo::FindAllScope all;
  expectSameBothWays(figure, {"Type", "line"}, 13);
}

// A child carrying the figure builder's mark (a property added to it at run
// time) is left out, while one with another added property is not.
TEST_F(FindobjRoute, ChildrenWithAddedPropertiesAreJudgedOneByOne) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  COSInterfacePtr plain = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr marked = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr other = sgclasses::create(sgclasses::kLineClass, axes);
  marked->addDynamicProperty(new COSPropT(marked->getClass()->getID(), COSID("FormbenchFigure"), COSDataTypePtr("any")));
  other->addDynamicProperty(new COSPropT(other->getClass()->getID(), COSID("Note"), COSDataTypePtr("any")));
  expectSameBothWays(figure, {"Type", "line"}, 2);
  EXPECT_EQ(find(figure, {"Type", "line"}), (std::vector<COSInterface*>{other.get(), plain.get()}));
}

// The visibility test reads both flags straight from the objects' blocks:
// Internal hides a child whatever its HandleVisibility and whatever the
// root's switch; HandleVisibility "off" only until the switch is on.
TEST_F(FindobjRoute, InternalChildrenStayHiddenAndHiddenOnesShowWithTheSwitch) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr plain = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr internal = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr both = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr hidden = sgclasses::create(sgclasses::kLineClass, axes);
  set(internal, "Internal", Arr(vxCreateLogicalScalar(true)).get());
  set(both, "Internal", Arr(vxCreateLogicalScalar(true)).get());
  set(both, "HandleVisibility", Arr(vxCreateString("off")).get());
  set(hidden, "HandleVisibility", Arr(vxCreateString("off")).get());
  EXPECT_EQ(find(axes, {"Type", "line"}), (std::vector<COSInterface*>{plain.get()}));
  set(sgclasses::root(), "ShowHiddenHandles", Arr(vxCreateString("on")).get());
  EXPECT_EQ(find(axes, {"Type", "line"}), (std::vector<COSInterface*>{hidden.get(), plain.get()}));
  set(sgclasses::root(), "ShowHiddenHandles", Arr(vxCreateString("off")).get());
  set(internal, "Internal", Arr(vxCreateLogicalScalar(false)).get());
  expectSameBothWays(axes, {"Type", "line"}, 2);
}

// The search keeps its answer per distinct Type: a line whose Type was
// changed on that object alone must be judged by its own Type, whichever
// object of the class was met first, and a Type changed back is found again.
TEST_F(FindobjRoute, ATypeChangedOnOneObjectIsJudgedByItsOwnValue) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  std::vector<COSInterfacePtr> lines;
  for (int i = 0; i < 5; ++i) lines.push_back(sgclasses::create(sgclasses::kLineClass, axes));
  auto setType = [](const COSInterfacePtr& object, const char* type) {
    using graphics::internal::GraphicsBaseFunctions;
    sgutils::blockOf<GraphicsBaseFunctions>(object.get(), GraphicsBaseFunctions::classID())
        ->setType(type, graphics::datatype::PrivateClient);
  };
  setType(lines[2], "Marker");  // met third, newest first
  setType(lines[4], "marker");  // met first
  EXPECT_EQ(find(axes, {"Type", "line"}), (std::vector<COSInterface*>{lines[3].get(), lines[1].get(), lines[0].get()}));
  EXPECT_EQ(find(axes, {"Type", "MARKER"}), (std::vector<COSInterface*>{lines[4].get(), lines[2].get()}));
  EXPECT_EQ(find(axes, {"-not", "Type", "Line"}).size(), 3u);  // the axes and the two markers
  EXPECT_EQ(text(lines[2], "Type"), "Marker");

  setType(lines[2], "line");
  EXPECT_EQ(find(axes, {"Type", "line"}).size(), 4u);
  setType(lines[4], "");
  EXPECT_EQ(find(axes, {"Type", ""}), (std::vector<COSInterface*>{lines[4].get()}));
  expectSameBothWays(axes, {"Type", "line"}, 4);
}

// Children of several classes side by side: each class keeps its blocks at
// its own indexes, and the search keeps those per class, so every child must
// be judged through its own class's, whichever class came before it.
TEST_F(FindobjRoute, ChildrenOfMixedClassesAreEachJudgedThroughTheirOwnBlocks) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  const char* classes[] = {sgclasses::kLineClass, sgclasses::kTextClass, sgclasses::kPatchClass,
                           sgclasses::kGroupClass};
  std::vector<COSInterfacePtr> made;
  for (int round = 0; round < 3; ++round)
    for (const char* cls : classes) made.push_back(sgclasses::create(cls, axes));
  // One hidden and one internal object of each class, in different rounds.
  for (std::size_t c = 0; c < 4; ++c) {
    set(made[c], "HandleVisibility", Arr(vxCreateString("off")).get());
    set(made[4 + c], "Internal", Arr(vxCreateLogicalScalar(true)).get());
  }
  // The one visible object of each class is the one made last.
  EXPECT_EQ(find(axes, {"Type", "line"}), (std::vector<COSInterface*>{made[8].get()}));
  EXPECT_EQ(find(axes, {"Type", "text"}), (std::vector<COSInterface*>{made[9].get()}));
  EXPECT_EQ(find(axes, {"Type", "patch"}), (std::vector<COSInterface*>{made[10].get()}));
  EXPECT_EQ(find(axes, {"-class", sgclasses::kGroupClass}), (std::vector<COSInterface*>{made[11].get()}));
  expectSameBothWays(axes, {}, 5);  // the axes and the four
  set(sgclasses::root(), "ShowHiddenHandles", Arr(vxCreateString("on")).get());
  expectSameBothWays(axes, {"Type", "text"}, 3);  // hidden shows, internal stays out; the title too
  set(sgclasses::root(), "ShowHiddenHandles", Arr(vxCreateString("off")).get());
}

TEST_F(FindobjRoute, OrderIsNewestFirstAndAReorderIsSeen) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  std::vector<COSInterfacePtr> lines;
  for (int i = 0; i < 4; ++i) lines.push_back(sgclasses::create(sgclasses::kLineClass, axes));
  std::vector<COSInterface*> found = find(axes, {"Type", "line"});
  ASSERT_EQ(found.size(), 4u);
  EXPECT_EQ(found.front(), lines.back().get());
  // Children set oldest first: the search follows.
  Arr order(omCreateVCOSMatrix(4, 1, sgclasses::kLineClass));
  for (std::size_t i = 0; i < 4; ++i) omSetArrayElement(order.get(), i, lines[i]);
  set(axes, "Children", order.get());
  found = find(axes, {"Type", "line"});
  ASSERT_EQ(found.size(), 4u);
  EXPECT_EQ(found.front(), lines.front().get());
  expectSameBothWays(axes, {"Type", "line"}, 4);
}

// While nothing but plain reads happen the search follows the chain by
// plain pointers and answers visibility per class; a get listener on one
// line is code that may change the tree. It must run for its line (every
// search), and what it deletes or hides further along the chain, inside
// and beyond the look-ahead, must be seen, not read from freed or stale
// memory.
TEST_F(FindobjRoute, AGetListenerOnOneLineRunsAndTheChainItChangesIsFollowed) {
  // Only the chain holds the lines, so a deleted one is freed at once.
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  std::vector<COSInterface*> lines;
  for (int i = 0; i < 20; ++i) lines.push_back(sgclasses::create(sgclasses::kLineClass, axes).get());
  int reads = 0;
  COSInterfacePtr listener = COSListener::createListener(COSListenerOp::fromFunction([&](COSInterface*, COSEventData*) {
    if (++reads > 1) return;
    // 11 comes next, 3 is looked ahead at by then, 0 lies beyond.
    for (int i : {11, 5, 3, 0}) lines[i]->deleteObject(COSGetPublicClient());
    set(COSInterfacePtr(lines[4]), "HandleVisibility", Arr(vxCreateString("off")).get());
  }));
  for (COSInterface* line : lines) set(COSInterfacePtr(line), "Tag", Arr(vxCreateString("t")).get());
  COSPropInfo* tag = lines[12]->getClass()->findPropertyExact(COSID("Tag"));
  lines[12]->addPropertyListener(COSPropertyEvent::PostGet, tag, COSListener::toListener(listener));
  std::vector<COSInterface*> expected;
  for (int i : {19, 18, 17, 16, 15, 14, 13, 12, 10, 9, 8, 7, 6, 2, 1}) expected.push_back(lines[i]);
  EXPECT_EQ(find(axes, {"Tag", "T"}), expected);
  EXPECT_EQ(reads, 1);
  EXPECT_EQ(find(axes, {"Tag", "t"}), expected) << "the listener's line is judged apart each time";
  EXPECT_EQ(reads, 2);
  EXPECT_EQ(find(axes, {"Type", "line"}), expected);
  lines[12]->removePropertyListener(COSPropertyEvent::PostGet, tag, COSListener::toListener(listener));
  EXPECT_EQ(find(axes, {"Tag", "t"}), expected);
  EXPECT_EQ(reads, 2);
}

// A get listener that deletes the very line being read and makes new
// objects that may take its memory: the walk must not follow the links of
// whatever lies there now. The line was found before it went, and the
// chain it was taken out of ends there, as for any child taken out of the
// chain while it is visited.
TEST_F(FindobjRoute, AGetListenerDeletingItsOwnLineEndsTheChainThere) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  std::vector<COSInterface*> lines;
  for (int i = 0; i < 12; ++i) lines.push_back(sgclasses::create(sgclasses::kLineClass, axes).get());
  for (COSInterface* line : lines) set(COSInterfacePtr(line), "Tag", Arr(vxCreateString("t")).get());
  bool done = false;
  COSInterfacePtr listener = COSListener::createListener(COSListenerOp::fromFunction([&](COSInterface*, COSEventData*) {
    if (std::exchange(done, true)) return;
    lines[6]->deleteObject(COSGetPublicClient());
    for (int i = 0; i < 4; ++i) sgclasses::create(sgclasses::kTextClass, axes);
  }));
  COSPropInfo* tag = lines[6]->getClass()->findPropertyExact(COSID("Tag"));
  lines[6]->addPropertyListener(COSPropertyEvent::PostGet, tag, COSListener::toListener(listener));
  const std::vector<COSInterface*> found = find(axes, {"Tag", "t"});
  EXPECT_EQ(found.size(), 6u);
  for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i], lines[11 - i]);
}

// The class of a result is the one the objects found share, taken from one
// object of each class found: the same as asking every element.
TEST_F(FindobjRoute, AResultTakesTheClassEveryElementWouldGiveIt) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  for (const char* cls : {sgclasses::kLineClass, sgclasses::kTextClass, sgclasses::kLineClass})
    sgclasses::create(cls, axes);
  auto search = [&](std::vector<const char*> words) {
    Arr self(omCreateVCOSScalar(axes));
    std::vector<Arr> owned;
    std::vector<const vxArray*> inputs{self.get()};
    for (const char* w : words) inputs.push_back(owned.emplace_back(vxCreateString(w)).get());
    vxArray* result = nullptr;
    EXPECT_TRUE(omCallMethod(COSID("vantel.graphics.Graphics"), "findobj", COSGetPublicClient(), 1, &result,
                             static_cast<int>(inputs.size()), inputs.data(), true));
    return Arr(result);
  };
  for (const std::vector<const char*>& words :
       {std::vector<const char*>{"Type", "line"}, {"-not", "Type", "axes"}, {}}) {
    Arr found = search(words);
    Arr asked(omCreateVCOSMatrix(vxGetNumberOfElements(found.get()), 1, COSID("handle")));
    for (std::size_t i = 0; i < vxGetNumberOfElements(found.get()); ++i)
      omSetArrayElement(asked.get(), i, omGetArrayElement(found.get(), i));
    omSetClassOfHeterogeneousArray(asked.get());
    EXPECT_STREQ(vxGetClassName(found.get()), vxGetClassName(asked.get())) << words.size();
  }
}

}  // namespace
}  // namespace sgtest::classes
