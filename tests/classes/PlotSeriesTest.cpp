// Plots of matrices and several data groups, figures by number, the text
// words, the Setup of the lines a class takes beside its own, and the
// stage hooks' trace.
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "ClassesTestSupport.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/log/LogCapture.h"
#include "foundation/log/Logger.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/FigureNumbers.h"
#include "sgclasses/Plotting.h"
#include "sgutils/lifecycle/SGReference.h"

namespace sgtest::classes {
namespace {

using foundation::core::except::IMsgIDException;

Arr matrixOf(std::size_t m, std::size_t n, std::vector<double> values) {
  Arr a(vxCreateDoubleMatrix(m, n, vxREAL));
  std::copy(values.begin(), values.end(), vxGetPr(a.get()));
  return a;
}

std::vector<double> valuesOf(const COSInterfacePtr& object, const char* name) {
  Arr value = get(object, name);
  const double* p = vxGetPr(value.get());
  return std::vector<double>(p, p + vxGetNumberOfElements(value.get()));
}

std::string identifierOf(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const IMsgIDException& e) {
    return e.identifier();
  }
  return "";
}

TEST_F(ClassesTest, MatrixDataGivesALinePerColumnOrRowAndTheNextColours) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  Arr y = matrixOf(3, 2, {1, 2, 3, 4, 5, 6});
  sgclasses::PlotSeries one{nullptr, y.get(), {}};
  std::vector<COSInterfacePtr> lines = sgclasses::plot(axes, std::span(&one, 1));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(valuesOf(lines[0], "XData"), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(valuesOf(lines[1], "YData"), (std::vector<double>{4, 5, 6}));
  EXPECT_EQ(number(axes, "ColorOrderIndex"), 3);

  // x as long as the columns: one line per row; the replace clears once.
  Arr x = matrixOf(1, 2, {7, 8});
  one.x = x.get();
  lines = sgclasses::plot(axes, std::span(&one, 1));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(valuesOf(lines[2], "YData"), (std::vector<double>{3, 6}));
  EXPECT_EQ(childCount(axes), 4);  // three lines and the hidden title
  for (const COSInterfacePtr& line : lines) EXPECT_EQ(text(line, "ColorMode"), "auto");
}

TEST_F(ClassesTest, GroupsTakeTheirOwnSpecsAndBadDataChangesNothing) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  Arr a = matrixOf(1, 3, {3, 2, 1}), bx = matrixOf(1, 2, {1, 2}), by = matrixOf(1, 2, {5, 6});
  std::vector<sgclasses::PlotSeries> groups{{nullptr, a.get(), *sgclasses::parseLineSpec("r")},
                                            {bx.get(), by.get(), *sgclasses::parseLineSpec("--")}};
  std::vector<COSInterfacePtr> lines = sgclasses::plot(axes, groups);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(text(lines[0], "ColorMode"), "manual");
  EXPECT_EQ(text(lines[1], "LineStyle"), "--");
  EXPECT_EQ(text(lines[1], "ColorMode"), "auto");

  // A second group that does not fit fails before the first is drawn or the axes cleared.
  Arr wrong = matrixOf(2, 2, {1, 2, 3, 4}), three = matrixOf(1, 3, {1, 2, 3});
  groups = {{nullptr, a.get(), {}}, {three.get(), wrong.get(), {}}};
  EXPECT_EQ(identifierOf([&] { sgclasses::plot(axes, groups); }), "VANTEL:sgclasses:PlotLengthsDiffer");
  Arr cube(vxCreateDoubleMatrix(2, 3, vxREAL));
  groups = {{wrong.get(), cube.get(), {}}};
  EXPECT_EQ(identifierOf([&] { sgclasses::plot(axes, groups); }), "VANTEL:sgclasses:PlotLengthsDiffer");
  EXPECT_EQ(childCount(axes), 3);
  EXPECT_FALSE(lines[0]->isDestroyed());
  // A bad pair fails after some lines were made: they are taken back, and
  // the axes keeps what it had.
  Arr name(vxCreateString("LineWidth")), bad(vxCreateString("wide"));
  const vxArray* badPairs[] = {name.get(), bad.get()};
  groups = {{nullptr, a.get(), {}}, {nullptr, a.get(), {}}};
  EXPECT_EQ(identifierOf([&] { sgclasses::plot(axes, groups, badPairs); }), "VANTEL:vcos:ConversionFailed");
  EXPECT_EQ(childCount(axes), 3);
  EXPECT_FALSE(lines[1]->isDestroyed());
  EXPECT_EQ(number(axes, "ColorOrderIndex"), 2);
  // The one-line form refuses a matrix rather than giving several lines.
  EXPECT_EQ(identifierOf([&] { sgclasses::plot(axes, nullptr, wrong.get(), {}); }),
            "VANTEL:sgclasses:PlotNotVector");
}

TEST_F(ClassesTest, FigureNumbersAreFoundOrTakenAndFreedOnDelete) {
  COSInterfacePtr first = sgclasses::figureNumbered(4);
  EXPECT_EQ(number(first, "Number"), 4);
  COSInterfacePtr plain = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  EXPECT_EQ(number(plain, "Number"), 1);
  EXPECT_EQ(sgclasses::currentFigure(false), plain);
  // An existing number selects its figure.
  EXPECT_EQ(sgclasses::figureNumbered(4), first);
  EXPECT_EQ(sgclasses::currentFigure(false), first);
  EXPECT_EQ(sgclasses::findFigure(1), plain);
  EXPECT_FALSE(sgclasses::findFigure(2));
  plain->deleteObject(COSGetPublicClient());
  EXPECT_FALSE(sgclasses::findFigure(1));
  EXPECT_EQ(number(sgclasses::create(sgclasses::kFigureClass, sgclasses::root()), "Number"), 1);
}

TEST_F(ClassesTest, TextWordsTakeOnlyTheirValues) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr t = sgclasses::create(sgclasses::kTextClass, axes);
  const struct {
    const char* name;
    const char* factory;
    std::vector<const char*> good;
  } words[] = {{"FontWeight", "normal", {"bold", "normal"}},
               {"HorizontalAlignment", "left", {"center", "right", "left"}},
               {"VerticalAlignment", "middle", {"top", "bottom", "baseline", "cap", "middle"}}};
  for (const auto& w : words) {
    EXPECT_EQ(text(t, w.name), w.factory);
    for (const char* good : w.good) {
      set(t, w.name, Arr(vxCreateString(good)).get());
      EXPECT_EQ(text(t, w.name), good);
    }
    set(t, w.name, Arr(vxCreateString(w.good.front())).get());
    EXPECT_EQ(identifierOf([&] { set(t, w.name, Arr(vxCreateString("sideways")).get()); }),
              "VANTEL:datatypes:InvalidEnumerationValue");
    EXPECT_EQ(text(t, w.name), w.good.front()) << w.name;
  }
}

TEST_F(ClassesTest, StringScalarsAreTakenAsText) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr t = sgclasses::create(sgclasses::kTextClass, axes);
  Arr s(vxCreateStringArray(1, 1));
  vxSetStringElement(s.get(), 0, std::u16string(u"h\u00e9"));
  set(t, "String", s.get());
  EXPECT_EQ(text(t, "String"), "h\u00e9");
  // A missing string and a string array are no text.
  vxSetStringElement(s.get(), 0, std::nullopt);
  EXPECT_EQ(identifierOf([&] { set(t, "String", s.get()); }), "VANTEL:vcos:ConversionFailed");
  Arr two(vxCreateStringArray(1, 2));
  vxSetStringElement(two.get(), 0, std::u16string(u"a"));
  vxSetStringElement(two.get(), 1, std::u16string(u"b"));
  EXPECT_EQ(identifierOf([&] { set(t, "String", two.get()); }), "VANTEL:vcos:ConversionFailed");
  EXPECT_EQ(text(t, "String"), "h\u00e9");
}

TEST_F(ClassesTest, TheOtherLinesOfAClassRunTheirSetup) {
  foundation::log::LogCapture capture;
  const std::string ui = "graphics::internal::GraphicsUIProperties::sgclassgen";
  const std::string legacy = "graphics::internal::Legacy::sgclassgen";
  foundation::log::setChannelLevel(ui, foundation::log::kTrace);
  foundation::log::setChannelLevel(legacy, foundation::log::kTrace);
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  const auto setups = [&](const std::string& channel) {
    int n = 0;
    for (const auto& r : capture.records())
      if (r.channel == channel && r.text.find(" Setup ") != std::string::npos) ++n;
    return n;
  };
  const int uiBefore = setups(ui), legacyBefore = setups(legacy);
  sgclasses::create(sgclasses::kLineClass, axes);
  EXPECT_EQ(setups(ui) - uiBefore, 1);
  EXPECT_EQ(setups(legacy) - legacyBefore, 1);
  // A figure takes no Legacy line.
  sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  EXPECT_EQ(setups(ui) - uiBefore, 2);
  EXPECT_EQ(setups(legacy) - legacyBefore, 1);
  foundation::log::setChannelLevel(ui, 0);
  foundation::log::setChannelLevel(legacy, 0);
}

// The hooks that only trace are passed over while their trace is off; what
// they hand on to (the applying-defaults flag) is still done, and their
// lines come as soon as a generated class's trace is on.
TEST_F(ClassesTest, StageHooksThatOnlyTraceStillTraceWhenAsked) {
  foundation::log::LogCapture capture;
  const std::string line = "sgclasses::Line::sgclassgen", themeable = "graphics::mixin::Themeable::sgclassgen";
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  const auto lines = [&](const std::string& channel, const char* hook) {
    int n = 0;
    for (const auto& r : capture.records())
      if (r.channel == channel && r.text.find(hook) != std::string::npos) ++n;
    return n;
  };
  const auto applyingDefaults = [](const COSInterfacePtr& object, const char* classId) {
    return static_cast<SGReference*>(object->getInstanceData(COSID(classId)))->isApplyingDefaults();
  };
  const char* hooks[] = {" Setup ", " CreationComplete ", " ApplyingDefaults ", " DefaultsApplied "};
  COSInterfacePtr quiet = sgclasses::create(sgclasses::kLineClass, axes);
  for (const char* hook : hooks) EXPECT_EQ(lines(line, hook), 0) << hook;
  EXPECT_FALSE(applyingDefaults(quiet, sgclasses::kLineClass));
  EXPECT_FALSE(applyingDefaults(quiet, "vantel.graphics.mixin.Themeable"));

  foundation::log::setChannelLevel(line, foundation::log::kTrace);
  foundation::log::setChannelLevel(themeable, foundation::log::kTrace);
  COSInterfacePtr traced = sgclasses::create(sgclasses::kLineClass, axes);
  for (const char* hook : hooks) EXPECT_EQ(lines(line, hook), 1) << hook;
  EXPECT_EQ(lines(themeable, " Setup "), 1);
  EXPECT_FALSE(applyingDefaults(traced, sgclasses::kLineClass));
  EXPECT_FALSE(applyingDefaults(traced, "vantel.graphics.mixin.Themeable"));
  foundation::log::setChannelLevel(line, 0);
  foundation::log::setChannelLevel(themeable, 0);
  // The trace off again: no more lines.
  sgclasses::create(sgclasses::kLineClass, axes);
  EXPECT_EQ(lines(line, " Setup "), 1);
}

}  // namespace
}  // namespace sgtest::classes
