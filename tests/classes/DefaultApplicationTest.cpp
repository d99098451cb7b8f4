// Applying stored defaults to new objects of alternating classes, and the
// faces a default is written through: the per-class and per-name memories
// of the application must give each object its own class's defaults.
#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/DefaultWalkScope.h"

namespace sgtest::classes {
namespace {

class DefaultApplicationTest : public AxesInFigureTest {
 protected:
  void setDefault(const COSInterfacePtr& on, const char* name, double value) {
    Arr v(vxCreateDoubleScalar(value));
    sgutils::DefaultNameAccess::set(on, name, v.get());
  }
};

TEST_F(DefaultApplicationTest, ObjectsOfAlternatingClassesTakeTheirOwnClasssDefaults) {
  // Texts and axes both have FontSize; only the class decides which
  // default applies, also when the classes take turns.
  setDefault(figure, "defaultLineLineWidth", 3);
  setDefault(sgclasses::root(), "defaultTextFontSize", 20);
  setDefault(figure, "defaultAxesFontSize", 14);
  for (int round = 0; round < 2; ++round) {
    COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
    COSInterfacePtr label = sgclasses::create(sgclasses::kTextClass, axes);
    COSInterfacePtr inner = sgclasses::create(sgclasses::kAxesClass, figure);
    EXPECT_EQ(number(line, "LineWidth"), 3.0) << "round " << round;
    EXPECT_EQ(number(label, "FontSize"), 20.0) << "round " << round << ": a text took another class's default";
    EXPECT_EQ(number(inner, "FontSize"), 14.0) << "round " << round;
    EXPECT_EQ(text(line, "LineWidthMode"), "auto") << "an applied default flipped the mode";
  }
}

TEST_F(DefaultApplicationTest, AManualModeKeepsTheValueAndAStoredModeIsStillApplied) {
  setDefault(figure, "defaultLineLineWidth", 3);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  set(line, "LineWidth", Arr(vxCreateDoubleScalar(7)).get());
  // Moving the line applies its new ancestors' defaults again.
  COSInterfacePtr other = sgclasses::create(sgclasses::kAxesClass, figure);
  set(line, "Parent", obj(other).get());
  EXPECT_EQ(number(line, "LineWidth"), 7.0);
  Arr autoWord(vxCreateString("auto"));
  sgutils::DefaultNameAccess::set(figure, "defaultLineLineWidthMode", autoWord.get());
  COSInterfacePtr third = sgclasses::create(sgclasses::kAxesClass, figure);
  set(line, "Parent", obj(third).get());
  EXPECT_EQ(text(line, "LineWidthMode"), "auto");
}

TEST_F(DefaultApplicationTest, AKeptEmptyWalkGivesWayToNewDefaultsAndNewAncestors) {
  // Inside the scope an empty answer is kept for (axes, Line); a default
  // stored later, on any ancestor, or a new ancestor must still reach the
  // next line.
  const sgutils::DefaultWalkScope scope;
  COSInterfacePtr first = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr second = sgclasses::create(sgclasses::kLineClass, axes);
  EXPECT_EQ(number(second, "LineWidth"), number(first, "LineWidth"));
  setDefault(sgclasses::root(), "defaultLineLineWidth", 4);
  COSInterfacePtr third = sgclasses::create(sgclasses::kLineClass, axes);
  EXPECT_EQ(number(third, "LineWidth"), 4.0) << "a default stored after the kept answer was missed";
  sgutils::DefaultNameAccess::set(sgclasses::root(), "defaultLineLineWidth", Arr(vxCreateString("remove")).get());
  COSInterfacePtr fourth = sgclasses::create(sgclasses::kLineClass, axes);
  EXPECT_EQ(number(fourth, "LineWidth"), number(first, "LineWidth")) << "a removed default was still applied";
  // The same axes moved under another figure whose store holds a default,
  // by the tree alone: no walk in between replaces the kept answer.
  COSInterfacePtr otherFigure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  setDefault(otherFigure, "defaultLineLineWidth", 6);
  COSInterfacePtr fifth = sgclasses::create(sgclasses::kLineClass, axes);
  axes->unhookFromOwner();
  otherFigure->hookChild(axes.get());
  COSInterfacePtr sixth = sgclasses::create(sgclasses::kLineClass, axes);
  EXPECT_EQ(number(fifth, "LineWidth"), number(first, "LineWidth"));
  EXPECT_EQ(number(sixth, "LineWidth"), 6.0) << "the kept answer outlived a change of ancestors";
  // Another class under the same parent is not answered by the line's walk.
  setDefault(figure, "defaultTextFontSize", 21);
  set(axes, "Parent", obj(figure).get());
  COSInterfacePtr seventh = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr label = sgclasses::create(sgclasses::kTextClass, axes);
  EXPECT_EQ(number(label, "FontSize"), 21.0) << "the line's kept answer was given to a text";
  EXPECT_EQ(number(seventh, "LineWidth"), number(first, "LineWidth"));
  otherFigure->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::classes
