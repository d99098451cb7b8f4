// The concrete classes from C++: what the language cannot see or reach.
#include <optional>
#include <string>

#include "classes/ClassesTestSupport.h"
#include "foundation/core/except/Error.h"
#include "foundation/core/except/WarningChannel.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Plotting.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/lifecycle/ConstructionStep.h"
#include "vcos/COSClass.h"
#include "support/TypeListCheck.h"
#include "vcos/VxProperty.h"

namespace sgtest::classes {
namespace {

using foundation::core::except::Error;

TEST_F(ClassesTest, OneRootPerInstanceUntilReleased) {
  COSInterfacePtr root = sgclasses::root();
  EXPECT_EQ(root.get(), sgclasses::root().get());
  EXPECT_EQ(text(root, "Type"), "root");
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, root);
  sgclasses::releaseRoot();
  EXPECT_TRUE(figure->isDestroyed());
  sgclasses::registerClasses();
  EXPECT_NE(sgclasses::root().get(), root.get());
}

// The class generator admits the names of classes/types.txt in the class
// descriptions; each must be registered once the classes are.
TEST_F(ClassesTest, EveryTypeTheLibraryListsIsRegistered) {
  sgtest::expectEveryListedTypeRegistered(std::string(SG_SOURCE_ROOT) + "/classes/types.txt", 1);
}

TEST_F(ClassesTest, EveryClassHasItsShortTypeAndIsAGraphicsObject) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  const std::pair<const char*, COSInterfacePtr> made[] = {
      {"figure", figure},
      {"axes", axes},
      {"group", group},
      {"line", sgclasses::create(sgclasses::kLineClass, group)},
      {"text", sgclasses::create(sgclasses::kTextClass, axes)},
      {"patch", sgclasses::create(sgclasses::kPatchClass, axes)},
      {"contextmenu", sgclasses::create(sgclasses::kContextMenuClass, figure)},
  };
  for (const auto& [type, object] : made) {
    EXPECT_EQ(text(object, "Type"), type);
    EXPECT_TRUE(object->getClass()->isSubclassOf(COSID("vantel.graphics.Graphics"))) << type;
    EXPECT_TRUE(object->getClass()->isSubclassOf(COSID("vantel.graphics.internal.GraphicsUIProperties"))) << type;
  }
  // The properties kept for old code belong to the axes and what lives in it.
  for (const auto& [type, object] : made)
    EXPECT_EQ(object->getClass()->isSubclassOf(COSID("vantel.graphics.internal.Legacy")),
              std::string(type) != "figure" && std::string(type) != "contextmenu")
        << type;
}

// A constructor input that fails leaves no half-made object in the tree.
TEST_F(ClassesTest, FailedCreationLeavesTheParentAsItWas) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  const int before = childCount(axes);
  Arr name(vxCreateString("Color")), value(vxCreateString("nosuchcolour"));
  const vxArray* pairs[] = {name.get(), value.get()};
  EXPECT_ANY_THROW(sgclasses::create(sgclasses::kLineClass, axes, pairs));
  EXPECT_EQ(childCount(axes), before);
}

// What a step of the construction sees of the new line: set up, not yet
// hooked, the caller's pairs not yet set.
struct StepSeen {
  bool ran = false;
  COSInterface* owner = nullptr;
  std::string tag;
};

void recordStep(void* context, const COSInterfacePtr& object) {
  auto* seen = static_cast<StepSeen*>(context);
  seen->ran = true;
  seen->owner = object->getOwnerObject();
  seen->tag = text(object, "Tag");
}

// The parent given to create() is hooked where a first "Parent" pair was
// set: after Setup, before the caller's pairs, with the node's checks; a
// step waits for an object of its own class and is dropped when none comes.
TEST_F(ClassesTest, CreationHooksTheParentBeforeThePairsWithItsChecks) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  COSClass* lineClass = COSClass::getClass(COSID(sgclasses::kLineClass));
  StepSeen seen;
  {
    sgutils::ScopedConstructionStep step(lineClass, &recordStep, &seen);
    // An axes (and the title its Setup makes) does not take a line's step.
    COSInterfacePtr other = sgclasses::create(sgclasses::kAxesClass, figure);
    EXPECT_FALSE(step.taken());
    EXPECT_FALSE(seen.ran);
    Arr name(vxCreateString("Tag")), value(vxCreateString("mine"));
    const vxArray* pairs[] = {name.get(), value.get()};
    COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, nullptr, pairs);
    EXPECT_TRUE(step.taken());
    EXPECT_TRUE(seen.ran);
    EXPECT_EQ(seen.owner, nullptr);
    EXPECT_EQ(seen.tag, "");
    EXPECT_EQ(text(line, "Tag"), "mine");
    line->deleteObject(COSGetPublicClient());
  }

  // The parent is in place, with its defaults, before the caller's pairs.
  Arr width(vxCreateDoubleScalar(3));
  sgutils::DefaultNameAccess::set(figure, "defaultLineLineWidth", width.get());
  Arr name(vxCreateString("Tag")), value(vxCreateString("later"));
  const vxArray* pairs[] = {name.get(), value.get()};
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes, pairs);
  EXPECT_EQ(line->getOwnerObject(), axes.get());
  EXPECT_EQ(number(line, "LineWidth"), 3);
  EXPECT_EQ(text(line, "Tag"), "later");

  // Refused parents leave nothing behind.
  const int inFigure = childCount(figure);
  for (const COSInterfacePtr& wrong : {figure, line}) {
    try {
      sgclasses::create(sgclasses::kLineClass, wrong);
      FAIL() << "a line made below a " << wrong->getClass()->getName();
    } catch (const Error& e) {
      EXPECT_EQ(e.identifier(), "VANTEL:sgclasses:InvalidParent");
    }
  }
  EXPECT_EQ(childCount(figure), inFigure);
  EXPECT_EQ(childCount(line), 0);
  COSInterfacePtr gone = sgclasses::create(sgclasses::kGroupClass, axes);
  gone->deleteObject(COSGetPublicClient());
  try {
    sgclasses::create(sgclasses::kLineClass, gone);
    FAIL() << "a line made below a deleted group";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sg:DeletedObject");
  }
}

TEST_F(ClassesTest, ReparentingMovesTheObjectAndRefusesCycles) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  COSInterfacePtr outer = sgclasses::create(sgclasses::kGroupClass, axes);
  COSInterfacePtr inner = sgclasses::create(sgclasses::kGroupClass, outer);
  try {
    set(outer, "Parent", obj(inner).get());
    FAIL() << "a group placed below itself";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sgclasses:ParentCycle");
  }
  EXPECT_EQ(outer->getOwnerObject(), axes.get());
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, inner);
  set(line, "Parent", obj(axes).get());
  EXPECT_EQ(line->getOwnerObject(), axes.get());
  EXPECT_EQ(childCount(inner), 0);
  // A number names the object as well as the object itself.
  Arr number(vxGetProperty(obj(outer).get(), 0, "Parent"));
  EXPECT_TRUE(omIsVCOS(number.get()));
}

TEST_F(ClassesTest, PublicColorSetFromCxxTurnsTheModeManual) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  Arr red(vxCreateString("r"));
  set(line, "Color", red.get());
  EXPECT_EQ(text(line, "ColorMode"), "manual");
  Arr color = get(line, "Color");
  EXPECT_EQ(vxGetPr(color.get())[0], 1.0);
  EXPECT_EQ(vxGetPr(color.get())[1], 0.0);
}

// Each dirty object is taken once per drawnow, however often it was set;
// one deleted meanwhile is passed over (but counted as taken).
TEST_F(ClassesTest, DrawnowTakesEachDirtyObjectOnce) {
  sgclasses::drawnow();
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr a = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr b = sgclasses::create(sgclasses::kLineClass, axes);
  sgclasses::drawnow();
  Arr width(vxCreateDoubleScalar(2));
  for (int i = 0; i < 5; ++i) set(a, "LineWidth", width.get());
  set(b, "LineWidth", width.get());
  b->deleteObject(COSGetPublicClient());
  EXPECT_EQ(sgclasses::drawnow(), 2u);
  EXPECT_EQ(sgclasses::drawnow(), 0u);
  // Setting the value it has already changes nothing.
  set(a, "LineWidth", width.get());
  EXPECT_EQ(sgclasses::drawnow(), 0u);
  set(a, "LineWidth", Arr(vxCreateDoubleScalar(3)).get());
  EXPECT_EQ(sgclasses::drawnow(), 1u);
}

TEST_F(ClassesTest, InvalidLineWarnsOnceUntilValidAgain) {
  auto& warnings = foundation::core::except::WarningChannel::instance();
  auto old = warnings.setSink([](std::string_view) {});
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  Arr three(vxCreateDoubleMatrix(1, 3, vxREAL));
  sgclasses::drawnow();
  warnings.setLast("", "");
  set(line, "XData", three.get());
  sgclasses::drawnow();
  EXPECT_EQ(warnings.lastId(), "VANTEL:sgclasses:LineDataLengths");
  warnings.setLast("", "");
  set(line, "LineWidth", Arr(vxCreateDoubleScalar(3)).get());
  sgclasses::drawnow();
  EXPECT_EQ(warnings.lastId(), "");
  set(line, "XData", Arr(vxCreateDoubleMatrix(0, 0, vxREAL)).get());
  sgclasses::drawnow();
  set(line, "YData", three.get());
  sgclasses::drawnow();
  EXPECT_EQ(warnings.lastId(), "VANTEL:sgclasses:LineDataLengths");
  warnings.setSink(old);
}

TEST(LineSpec, ParsesEachPartOnceInAnyOrder) {
  const auto spec = sgclasses::parseLineSpec("o-.g");
  ASSERT_TRUE(spec);
  EXPECT_EQ(spec->lineStyle, "-.");
  EXPECT_EQ(spec->marker, "o");
  ASSERT_TRUE(spec->color);
  EXPECT_EQ(spec->color->green(), 1.0);
  // A marker alone draws no line.
  EXPECT_EQ(sgclasses::parseLineSpec("x")->lineStyle, "none");
  EXPECT_EQ(sgclasses::parseLineSpec("--")->lineStyle, "--");
  for (const char* bad : {"", "rg", "--:", "oo", "q", "r-- "}) EXPECT_FALSE(sgclasses::parseLineSpec(bad)) << bad;
}

TEST_F(ClassesTest, ReplaceKeepsTheTitleAndRestartsTheColourOrder) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  Arr y(vxCreateDoubleMatrix(1, 2, vxREAL));
  sgclasses::setHold(axes, true);
  sgclasses::plot(axes, nullptr, y.get(), {});
  sgclasses::plot(axes, nullptr, y.get(), {});
  EXPECT_EQ(number(axes, "ColorOrderIndex"), 3);
  sgclasses::setHold(axes, false);
  COSInterfacePtr line = sgclasses::plot(axes, nullptr, y.get(), {});
  EXPECT_EQ(number(axes, "ColorOrderIndex"), 2);
  EXPECT_EQ(childCount(axes), 2);  // the line and the hidden title
  Arr title = get(axes, "Title");
  EXPECT_FALSE(omGetArrayElement(title.get(), 0)->isDestroyed());
  (void)line;
}

}  // namespace
}  // namespace sgtest::classes
