// Applying stored defaults to new objects of alternating classes, and the
// faces a default is written through: the per-class and per-name memories
// of the application must give each object its own class's defaults.
#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/defaults/DefaultNameAccess.h"

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

}  // namespace
}  // namespace sgtest::classes
