// The command-line display of graphics objects from C++: the refusals of its
// methods, labels of every accepted shape, and classes whose property groups
// are empty or wrong.
#include <array>
#include <functional>
#include <memory>
#include <string>

#include "classes/ClassesTestSupport.h"
#include "foundation/io/OutputCapture.h"
#include "foundation/io/Printing.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/DisplayData.h"
#include "sgutils/classinfo/GraphicsDisplayData.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

// Runs a display method of the graphics display class on an array and gives
// what it printed.
std::string call(const char* method, const vxArray* array) {
  services::io::OutputCapture capture;
  const vxArray* in[1] = {array};
  vxArray* out[1] = {nullptr};
  omCallMethod(COSID("vantel.graphics.GraphicsDisplay"), method, COSGetPublicClient(), 0, out, 1, in, true);
  if (out[0]) matrix::destroyArray(out[0]);
  return capture.text();
}

Arr arrayOf(std::initializer_list<COSInterfacePtr> objects, std::size_t rows = 1) {
  Arr a(omCreateVCOSMatrix(rows, objects.size() / rows, (*objects.begin())->getClass()->getID()));
  std::size_t i = 0;
  for (const COSInterfacePtr& o : objects) omSetArrayElement(a.get(), i++, o);
  return a;
}

// Two rows of two characters.
vxArray* charMatrix(const char* top, const char* bottom) {
  vxArray* a = vxCreateCharArray(2, std::array<vxSize, 2>{2, 2}.data());
  vxChar* c = vxGetChars(a);
  for (int j = 0; j < 2; ++j) {
    c[2 * j] = static_cast<vxChar>(top[j]);
    c[2 * j + 1] = static_cast<vxChar>(bottom[j]);
  }
  return a;
}

// Display data of one class for the length of a test.
class DataScope {
 public:
  DataScope(const char* cls, std::shared_ptr<const sgutils::GraphicsDisplayData> data) {
    sgutils::GraphicsDisplayData::setForClass(COSID(cls), std::move(data));
  }
  ~DataScope() { sgclasses::registerDisplayData(); }
  DataScope(const DataScope&) = delete;
  DataScope& operator=(const DataScope&) = delete;
};

// A label made by a function, for groups the base behaviour.
class LabelData final : public sgutils::GraphicsDisplayData {
 public:
  explicit LabelData(std::function<vxArray*()> make) : make_(std::move(make)) {}
  vxArray* getDescriptiveLabelForDisplay(COSInterface&) const override { return make_(); }

 private:
  std::function<vxArray*()> make_;
};

class GroupsData final : public sgutils::GraphicsDisplayData {
 public:
  explicit GroupsData(std::vector<Group> groups) : groups_(std::move(groups)) {}
  std::vector<Group> getPropertyGroups(COSInterface&) const override { return groups_; }

 private:
  std::vector<Group> groups_;
};

class GraphicsDisplayTest : public ClassesTest {
 protected:
  void SetUp() override {
    ClassesTest::SetUp();
    previousWidth_ = services::io::setNumWindowColumns(80);
    previousHot_ = services::io::setPrintfHot(false);
  }
  void TearDown() override {
    services::io::setNumWindowColumns(previousWidth_);
    services::io::setPrintfHot(previousHot_);
    ClassesTest::TearDown();
  }
  COSInterfacePtr figure() { return sgclasses::create(sgclasses::kFigureClass, sgclasses::root()); }

 private:
  int previousWidth_ = 0;
  bool previousHot_ = false;
};

TEST_F(GraphicsDisplayTest, EachFormRefusesTheArraysOfTheOthers) {
  COSInterfacePtr f = figure(), g = figure();
  Arr one = arrayOf({f}), two = arrayOf({f, g});
  Arr empty(omCreateVCOSMatrix(0, 0, f->getClass()->getID()));
  EXPECT_EQ(errorId([&] { call("displayScalarObject", two.get()); }), "VANTEL:sgutils:ScalarDisplayMustBeScalar");
  EXPECT_EQ(errorId([&] { call("displayNonScalarObject", one.get()); }),
            "VANTEL:sgutils:NonScalarDisplayMustBeNonScalar");
  EXPECT_EQ(errorId([&] { call("displayNonScalarObject", empty.get()); }),
            "VANTEL:sgutils:NonScalarDisplayMustBeNonScalar");
  EXPECT_EQ(errorId([&] { call("displayEmptyObject", one.get()); }), "VANTEL:sgutils:EmptyDisplayMustBeEmpty");
  // and each accepts its own
  EXPECT_NE(call("displayScalarObject", one.get()).find("with properties:"), std::string::npos);
  EXPECT_NE(call("displayNonScalarObject", two.get()).find("1x2 vantel.ui.Figure array:"), std::string::npos);
  EXPECT_EQ(call("displayEmptyObject", empty.get()), "  0x0 empty vantel.ui.Figure array.\n\n");
}

TEST_F(GraphicsDisplayTest, DeletedObjectsReachNeitherTheScalarDisplayNorTheHooks) {
  COSInterfacePtr f = figure();
  Arr one = arrayOf({f});
  f->deleteObject(COSGetPublicClient());
  for (const char* method : {"displayScalarObject", "getPropertyGroups", "getDescriptiveLabelForDisplay"})
    EXPECT_EQ(errorId([&] { call(method, one.get()); }), "VANTEL:sgutils:DeletedObjectInDisplay") << method;
}

TEST_F(GraphicsDisplayTest, LabelsOfEveryShapeBecomeOneLine) {
  COSInterfacePtr f = figure();
  Arr one = arrayOf({f});
  const auto header = [&] {
    const std::string out = call("displayScalarObject", one.get());
    return out.substr(0, out.find('\n'));
  };
  {
    DataScope scope(sgclasses::kFigureClass, std::make_shared<LabelData>([] {
                      return charMatrix("ab", "cd");
                    }));
    EXPECT_EQ(header(), "  vantel.ui.Figure (ab/cd) with properties:");
  }
  {
    DataScope scope(sgclasses::kFigureClass, std::make_shared<LabelData>([] {
                      vxArray* c = vxCreateCellMatrix(1, 3);
                      vxSetCell(c, 0, vxCreateString("x"));
                      vxSetCell(c, 1, vxCreateString("y\tz"));
                      vxSetCell(c, 2, vxCreateString(""));
                      return c;
                    }));
    EXPECT_EQ(header(), "  vantel.ui.Figure (x, y/z, ) with properties:");
  }
  {
    DataScope scope(sgclasses::kFigureClass, std::make_shared<LabelData>([] { return vxCreateCellMatrix(0, 0); }));
    EXPECT_EQ(header(), "  vantel.ui.Figure with properties:");
  }
  for (auto bad : std::vector<std::function<vxArray*()>>{
           [] { return vxCreateDoubleScalar(3); },
           [] {
             vxArray* c = vxCreateCellMatrix(1, 1);
             vxSetCell(c, 0, charMatrix("ab", "cd"));
             return c;
           }}) {
    DataScope scope(sgclasses::kFigureClass, std::make_shared<LabelData>(bad));
    EXPECT_EQ(errorId([&] { header(); }), "VANTEL:sgutils:InvalidDescriptiveLabel");
  }
}

TEST_F(GraphicsDisplayTest, EmptyGroupsShowTheClassAloneAndEmptyListsTheNoPropertyLine) {
  COSInterfacePtr f = figure();
  Arr one = arrayOf({f});
  {
    DataScope scope(sgclasses::kFigureClass, std::make_shared<GroupsData>(std::vector<GroupsData::Group>{}));
    EXPECT_EQ(call("displayScalarObject", one.get()), "    vantel.ui.Figure\n\n");
  }
  {
    // names the class does not have are left out, leaving none
    DataScope scope(sgclasses::kFigureClass,
                    std::make_shared<GroupsData>(std::vector<GroupsData::Group>{{"", {"NoSuchProperty"}}}));
    EXPECT_EQ(call("displayScalarObject", one.get()), "  vantel.ui.Figure with no properties.\n\n");
  }
  {
    DataScope scope(sgclasses::kFigureClass,
                    std::make_shared<GroupsData>(std::vector<GroupsData::Group>{{"Looks", {"Color"}}, {"", {"Name"}}}));
    const std::string out = call("displayScalarObject", one.get());
    EXPECT_NE(out.find("   Looks\n    Color: "), std::string::npos) << out;
    EXPECT_NE(out.find("    Name: ''"), std::string::npos) << out;
  }
}

// A class whose getPropertyGroups answers something else than groups.
class WrongGroupsMI final : public COSMethodBase {
 public:
  explicit WrongGroupsMI(COSID cls)
      : COSMethodBase(cls, COSID("getPropertyGroups"), PublicAccess, "",
                      COSMethodSignature::createMethodSignature(COSID("getPropertyGroups"),
                                                                {{COSID("object"), COSDataTypePtr(), false}},
                                                                {{COSID("group"), COSDataTypePtr(), false}})) {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) const override {
    plhs[0] = COSValue(vxCreateDoubleScalar(1));
    nlhs = 1;
  }
};

TEST_F(GraphicsDisplayTest, AnOverrideAnsweringOtherThanGroupsIsRefused) {
  COSClass* cls = COSClass::getClass(COSID(sgclasses::kContextMenuClass));
  ASSERT_NE(cls, nullptr);
  static const bool added = (cls->addMethod(new WrongGroupsMI(cls->getID())), true);
  (void)added;
  COSInterfacePtr menu = sgclasses::create(sgclasses::kContextMenuClass, figure());
  Arr one = arrayOf({menu});
  EXPECT_EQ(errorId([&] { call("displayScalarObject", one.get()); }), "VANTEL:class:BadPropertyGroup");
}

}  // namespace
}  // namespace sgtest::classes
