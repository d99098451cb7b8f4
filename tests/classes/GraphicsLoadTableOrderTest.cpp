// Loading object tables that this writer never makes: child lists out of
// table order, a child list that is not the record's last object array, and
// a part named twice. The trees come back as the lists say, or nothing loads.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/ObjectArray.h"
#include "vx/vxSerialize.h"

namespace sgtest::classes {
namespace {

using sgutils::GraphicsFile;
using Bytes = std::vector<std::uint8_t>;
using Fields = std::vector<std::pair<std::string, const vxArray*>>;

Arr textArr(const char* s) { return Arr(vxCreateString(s)); }

class GraphicsLoadTableOrderTest : public ClassesTest {
 protected:
  void TearDown() override {
    for (const COSInterfacePtr& object : standIns_) object->deleteObject(COSGetPublicClient());
    ClassesTest::TearDown();
  }
  static std::size_t liveCount() {
    sgclasses::forgetDeletedDirtyObjects();
    return vcos::liveObjectCount();
  }
  // A stand-in for the table's entry `index`: object arrays holding it are
  // written as that index.
  // The root is made first, so that the counts of live objects leave it out.
  void SetUp() override {
    ClassesTest::SetUp();
    sgclasses::root();
  }
  const COSInterfacePtr& standIn(std::size_t index) {
    while (standIns_.size() <= index) standIns_.push_back(sgclasses::create(sgclasses::kLineClass, {}));
    return standIns_[index];
  }
  Arr listOf(std::initializer_list<std::size_t> indexes, const char* cls = "vantel.graphics.Graphics") {
    Arr list(omCreateVCOSMatrix(1, indexes.size(), cls));
    std::size_t k = 0;
    for (std::size_t index : indexes) omSetArrayElement(list.get(), k++, standIn(index));
    return list;
  }
  Bytes document(const std::vector<vxSavedObjectView>& table) {
    vxWriteOptions w;
    w.objectClassName = [](const vxArray* a) { return std::string(vcos::array::classOf(a)->getName()); };
    w.objectIndex = [this](const vxArray* a, std::size_t i) -> std::int64_t {
      const COSInterfacePtr element = omGetArrayElement(a, i);
      for (std::size_t k = 0; k < standIns_.size(); ++k)
        if (standIns_[k].get() == element.get()) return static_cast<std::int64_t>(k);
      return -1;
    };
    Arr top = listOf({0}, sgclasses::kFigureClass);
    const std::pair<std::string, const vxArray*> values[] = {{"figure", top.get()}};
    return vxSerializeDocument(values, table, w);
  }
  static vxSavedObjectView entry(const char* cls, Fields fields = {}, std::int64_t madeBy = -1,
                                 const char* property = "") {
    return vxSavedObjectView{vxSavedObjectHead{cls, madeBy, property}, std::move(fields)};
  }
  static COSInterfacePtr load(std::span<const std::uint8_t> bytes) {
    sgutils::GraphicsLoadOptions o;
    o.parentOfTopLevel = [](const COSInterfacePtr& object) {
      return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : COSInterfacePtr();
    };
    std::vector<vxNamedValue> values = GraphicsFile::deserialize(bytes, o);
    if (values.size() != 1 || !vxIsObject(values[0].value.get())) return {};
    return omGetArrayElement(values[0].value.get(), 0);
  }
  // The loaded children's classes and tags, oldest first.
  static std::vector<std::string> childTags(const COSInterfacePtr& parent) {
    std::vector<std::string> out;
    for (COSInterface* c = parent->getOldestChild(); c; c = c->getNewerSibling()) {
      const std::string tag = text(COSInterfacePtr(c), "Tag");
      if (!tag.empty()) out.push_back(tag);
    }
    return out;
  }

  std::vector<COSInterfacePtr> standIns_;
};

TEST_F(GraphicsLoadTableOrderTest, ChildListsOutOfTableOrderAndBeforeOtherObjectValuesHookAsListed) {
  standIn(4);
  Arr a = textArr("a"), b = textArr("b"), l = textArr("l"), m = textArr("m");
  // The figure lists its axes last first, and its user data (an object
  // array too) after the child list; the second axes lists its lines in
  // reverse table order.
  Arr figureChildren = listOf({2, 1}), userData = listOf({3}, sgclasses::kLineClass);
  Arr axesChildren = listOf({4, 3});
  const Bytes bytes = document({entry(sgclasses::kFigureClass, {{GraphicsFile::kChildrenField, figureChildren.get()},
                                                                {"SerializableUserData", userData.get()}}),
                                entry(sgclasses::kAxesClass, {{"Tag_I", a.get()}}),
                                entry(sgclasses::kAxesClass, {{"Tag_I", b.get()}, {GraphicsFile::kChildrenField, axesChildren.get()}}),
                                entry(sgclasses::kLineClass, {{"Tag_I", l.get()}}),
                                entry(sgclasses::kLineClass, {{"Tag_I", m.get()}})});
  // Loaded twice: the second load and its deletion leave the count as the
  // first left it (the first may make what a figure of the root needs once).
  std::size_t afterFirst = 0;
  for (int round = 0; round < 2; ++round) {
    {
      const COSInterfacePtr figure = load(bytes);
      ASSERT_TRUE(figure);
      EXPECT_EQ(childTags(figure), (std::vector<std::string>{"b", "a"}));
      const COSInterfacePtr axesB(figure->getOldestChild());
      EXPECT_EQ(childTags(axesB), (std::vector<std::string>{"m", "l"}));
      Arr user = get(figure, "UserData");
      ASSERT_TRUE(vxIsObject(user.get()));
      const COSInterfacePtr line = omGetArrayElement(user.get(), 0);
      EXPECT_EQ(line->getOwnerObject(), axesB.get());
      EXPECT_EQ(text(line, "Tag"), "l");
      figure->deleteObject(COSGetPublicClient());
    }
    if (round == 0) afterFirst = liveCount();
  }
  EXPECT_EQ(liveCount(), afterFirst);
}

TEST_F(GraphicsLoadTableOrderTest, AChildListedTwiceOrBeforeItsParentLoadsNothing) {
  standIn(3);
  const std::size_t live = liveCount();
  const std::string bad = "VANTEL:sg:load:BadChildren";
  Arr twice = listOf({1, 1}), early = listOf({0});
  Arr first = listOf({1}), second = listOf({1});
  EXPECT_EQ(errorId([&] {
              load(document({entry(sgclasses::kFigureClass, {{GraphicsFile::kChildrenField, twice.get()}}),
                             entry(sgclasses::kAxesClass)}));
            }),
            bad);
  EXPECT_EQ(liveCount(), live);
  EXPECT_EQ(errorId([&] {
              load(document({entry(sgclasses::kFigureClass),
                             entry(sgclasses::kAxesClass, {{GraphicsFile::kChildrenField, early.get()}})}));
            }),
            bad);
  EXPECT_EQ(liveCount(), live);
  // Two records claiming one child, the second through a list that is not
  // the last object array of its record.
  Arr extra = listOf({2}, sgclasses::kAxesClass);
  EXPECT_EQ(errorId([&] {
              load(document({entry(sgclasses::kFigureClass, {{GraphicsFile::kChildrenField, first.get()}}),
                             entry(sgclasses::kAxesClass),
                             entry(sgclasses::kAxesClass, {{GraphicsFile::kChildrenField, second.get()},
                                                           {"SerializableUserData", extra.get()}})}));
            }),
            bad);
  EXPECT_EQ(liveCount(), live);
}

TEST_F(GraphicsLoadTableOrderTest, APartNamedTwiceIsOneObjectAndCannotBeAChild) {
  standIn(3);
  const std::size_t live = liveCount();
  Arr partAsChild = listOf({2});
  // Both records name the axes's title: one object at two places.
  EXPECT_EQ(errorId([&] {
              load(document({entry(sgclasses::kFigureClass, {{GraphicsFile::kChildrenField, listOf({1}).get()}}),
                             entry(sgclasses::kAxesClass, {{GraphicsFile::kChildrenField, partAsChild.get()}}),
                             entry(sgclasses::kTextClass, {}, 1, "Title"), entry(sgclasses::kTextClass, {}, 1, "Title")}));
            }),
            "VANTEL:sg:load:BadChildren");
  EXPECT_EQ(liveCount(), live);
  Arr axesList = listOf({1});
  Arr words = textArr("twice");
  const COSInterfacePtr figure =
      load(document({entry(sgclasses::kFigureClass, {{GraphicsFile::kChildrenField, axesList.get()}}),
                     entry(sgclasses::kAxesClass), entry(sgclasses::kTextClass, {}, 1, "Title"),
                     entry(sgclasses::kTextClass, {{"String_I", words.get()}}, 1, "Title")}));
  ASSERT_TRUE(figure);
  const COSInterfacePtr axes(figure->getOldestChild());
  Arr title = get(axes, "Title");
  EXPECT_EQ(text(COSInterfacePtr(omGetArrayElement(title.get(), 0)), "String"), "twice");
  figure->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::classes
