// Figures of the real classes rendered to files, checked by their pixels,
// their SVG text and the errors bad input gives.
#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <vector>
#include <unistd.h>

#include "sgclasses/AxesTexts.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Picking.h"
#include "sgclasses/Registration.h"
#include "sgclasses/Drawnow.h"
#include "sgrender/FigureRenderer.h"
#include "sgrender/FigureView.h"
#include "sgrender/FigureViews.h"
#include "sgrender/TickSteps.h"
#include "support/ErrorId.h"
#include "support/PropertyAccess.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

namespace fs = std::filesystem;
using Arr = matrix::unique_vxArray;
using sgrender::FigureRenderer;

Arr row(std::initializer_list<double> v) {
  Arr a(vxCreateDoubleMatrix(1, v.size(), vxREAL));
  double* p = vxGetPr(a.get());
  for (double d : v) *p++ = d;
  return a;
}
Arr str(const char* s) { return Arr(vxCreateString(s)); }

struct Rgb {
  int r, g, b;
};

// A PNG read back, its pixels as 0-255 channels.
class Picture {
 public:
  explicit Picture(const fs::path& file) : surface_(cairo_image_surface_create_from_png(file.c_str())) {}
  ~Picture() { cairo_surface_destroy(surface_); }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  int width() const { return cairo_image_surface_get_width(surface_); }
  int height() const { return cairo_image_surface_get_height(surface_); }
  Rgb at(int x, int y) const {
    cairo_surface_flush(surface_);
    const unsigned char* d = cairo_image_surface_get_data(surface_) + y * cairo_image_surface_get_stride(surface_);
    const auto px = reinterpret_cast<const std::uint32_t*>(d)[x];  // opaque ARGB32
    return {int(px >> 16 & 0xff), int(px >> 8 & 0xff), int(px & 0xff)};
  }

 private:
  cairo_surface_t* surface_;
};

::testing::AssertionResult near(Rgb got, Rgb want, int tolerance = 3) {
  if (std::abs(got.r - want.r) <= tolerance && std::abs(got.g - want.g) <= tolerance &&
      std::abs(got.b - want.b) <= tolerance)
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "pixel (" << got.r << "," << got.g << "," << got.b << "), wanted ("
                                       << want.r << "," << want.g << "," << want.b << ")";
}

class RenderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    sgclasses::registerClasses();
    dir_ = fs::temp_directory_path() / ("sgrender-test-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    // A 200 by 100 figure whose axes fill the middle half each way:
    // pixels 50..150 across, 25..75 down; limits [0 10] and [0 10].
    figure_ = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    sgtest::set(figure_, "Position", row({0, 0, 200, 100}).get());
    sgtest::set(figure_, "Color", row({0.2, 0.4, 0.6}).get());
    axes_ = sgclasses::create(sgclasses::kAxesClass, figure_);
    sgtest::set(axes_, "Position", row({0.25, 0.25, 0.5, 0.5}).get());
    sgtest::set(axes_, "Color", row({1, 1, 1}).get());
    sgtest::set(axes_, "XLim", row({0, 10}).get());
    sgtest::set(axes_, "YLim", row({0, 10}).get());
  }
  void TearDown() override {
    axes_.reset();
    figure_.reset();
    sgclasses::releaseRoot();
    fs::remove_all(dir_);
  }
  COSInterfacePtr line(std::initializer_list<double> x, std::initializer_list<double> y, Arr color) {
    COSInterfacePtr l = sgclasses::create(sgclasses::kLineClass, axes_);
    sgtest::set(l, "XData", row(x).get());
    sgtest::set(l, "YData", row(y).get());
    sgtest::set(l, "Color", color.get());
    sgtest::set(l, "LineWidth", Arr(vxCreateDoubleScalar(4)).get());
    return l;
  }
  std::size_t filesIn() const { return std::distance(fs::directory_iterator(dir_), fs::directory_iterator()); }

  fs::path dir_;
  COSInterfacePtr figure_, axes_;
};

TEST_F(RenderTest, PngShowsBackgroundsLinesAndClipsToTheAxes) {
  // A red line across y = 5, and a green one that runs on past x = 10.
  line({0, 10}, {5, 5}, row({1, 0, 0}));
  line({0, 20}, {7, 7}, row({0, 1, 0}));
  const fs::path file = dir_ / "fig.png";
  const sgrender::RenderStats stats = FigureRenderer::exportFigure(figure_, file.string());
  EXPECT_EQ(stats.axes, 1u);
  EXPECT_EQ(stats.lines, 2u);

  Picture pic(file);
  ASSERT_EQ(pic.width(), 200);
  ASSERT_EQ(pic.height(), 100);
  EXPECT_TRUE(near(pic.at(2, 2), {51, 102, 153}));     // the figure's colour at a corner
  EXPECT_TRUE(near(pic.at(100, 65), {255, 255, 255}));  // the axes' background
  EXPECT_TRUE(near(pic.at(100, 50), {255, 0, 0}));      // y = 5 is halfway down the box
  EXPECT_TRUE(near(pic.at(120, 40), {0, 255, 0}));      // y = 7 is 35 down
  // Past the right edge of the axes the green line is clipped away.
  EXPECT_TRUE(near(pic.at(175, 40), {51, 102, 153}));
}

TEST_F(RenderTest, InvisibleAndInvalidObjectsDrawNothing) {
  COSInterfacePtr hidden = line({0, 10}, {5, 5}, row({1, 0, 0}));
  sgtest::set(hidden, "Visible", str("off").get());
  COSInterfacePtr invalid = line({0, 10}, {3, 3}, row({0, 0, 1}));
  sgtest::set(invalid, "XData", row({0, 5, 10}).get());  // three x against two y
  COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes_);
  COSInterfacePtr inGroup = sgclasses::create(sgclasses::kLineClass, group);
  sgtest::set(inGroup, "XData", row({0, 10}).get());
  sgtest::set(inGroup, "YData", row({8, 8}).get());
  sgtest::set(inGroup, "LineWidth", Arr(vxCreateDoubleScalar(4)).get());
  sgtest::set(inGroup, "Color", row({0, 0, 0}).get());

  // 3-D data is drawn from above; a ZData of another length is invalid.
  COSInterfacePtr spatial = line({0, 10}, {1, 1}, row({0, 0, 1}));
  sgtest::set(spatial, "ZData", row({-5, 40}).get());
  COSInterfacePtr badZ = line({0, 10}, {9, 9}, row({0, 0, 1}));
  sgtest::set(badZ, "ZData", row({1, 2, 3}).get());

  const fs::path file = dir_ / "hidden.png";
  sgrender::RenderStats stats = FigureRenderer::exportFigure(figure_, file.string());
  EXPECT_EQ(stats.lines, 2u);  // the group's line and the 3-D one
  EXPECT_EQ(stats.skippedInvalid, 2u);
  Picture pic(file);
  EXPECT_TRUE(near(pic.at(100, 70), {0, 0, 255}));       // y = 1, whatever its z
  EXPECT_TRUE(near(pic.at(100, 30), {255, 255, 255}));  // y = 9, bad ZData
  EXPECT_TRUE(near(pic.at(100, 50), {255, 255, 255}));
  EXPECT_TRUE(near(pic.at(100, 60), {255, 255, 255}));
  EXPECT_TRUE(near(pic.at(100, 35), {0, 0, 0}));  // y = 8 inside the group

  // A hidden group hides what it holds.
  sgtest::set(group, "Visible", str("off").get());
  stats = FigureRenderer::exportFigure(figure_, file.string());
  EXPECT_EQ(stats.lines, 1u);  // the 3-D line outside the group
  EXPECT_TRUE(near(Picture(file).at(100, 35), {255, 255, 255}));
}

TEST_F(RenderTest, DenseLinesKeepTheirExtentAndNaNBreaksThem) {
  // 20,000 points swinging between y = 2 and y = 8: many share each pixel
  // column, and the column must still be covered from top to bottom.
  COSInterfacePtr dense = sgclasses::create(sgclasses::kLineClass, axes_);
  Arr x(vxCreateDoubleMatrix(1, 20000, vxREAL)), y(vxCreateDoubleMatrix(1, 20000, vxREAL));
  for (int i = 0; i < 20000; ++i) {
    vxGetPr(x.get())[i] = 4 + 2.0 * i / 19999;  // x in [4, 6]
    vxGetPr(y.get())[i] = i % 2 ? 8 : 2;
  }
  sgtest::set(dense, "XData", x.get());
  sgtest::set(dense, "YData", y.get());
  sgtest::set(dense, "Color", row({0, 0, 1}).get());
  sgtest::set(dense, "LineWidth", Arr(vxCreateDoubleScalar(4)).get());
  // A red line with a gap where its data holds NaN.
  line({0, 3, NAN, 7, 10}, {9, 9, 9, 9, 9}, row({1, 0, 0}));
  const fs::path file = dir_ / "dense.png";
  FigureRenderer::exportFigure(figure_, file.string());
  Picture pic(file);
  for (int py : {36, 45, 55, 64}) EXPECT_TRUE(near(pic.at(100, py), {0, 0, 255})) << "row " << py;
  EXPECT_TRUE(near(pic.at(100, 20), {51, 102, 153}));  // above the box: nothing
  EXPECT_TRUE(near(pic.at(60, 30), {255, 0, 0}));      // x = 2 on the red line
  EXPECT_TRUE(near(pic.at(100, 30), {255, 255, 255}));  // x = 5 in its gap
  EXPECT_TRUE(near(pic.at(140, 30), {255, 0, 0}));     // x = 9
}

TEST_F(RenderTest, PatchFaceBlendsByItsAlpha) {
  COSInterfacePtr patch = sgclasses::create(sgclasses::kPatchClass, axes_);
  sgtest::set(patch, "XData", row({2, 8, 8, 2}).get());
  sgtest::set(patch, "YData", row({2, 2, 8, 8}).get());
  sgtest::set(patch, "FaceColor", row({0, 0, 1}).get());
  sgtest::set(patch, "FaceAlpha", Arr(vxCreateDoubleScalar(0.5)).get());
  const fs::path file = dir_ / "patch.png";
  EXPECT_EQ(FigureRenderer::exportFigure(figure_, file.string()).patches, 1u);
  Picture pic(file);
  EXPECT_TRUE(near(pic.at(100, 50), {127, 127, 255}, 4));  // half blue over white
  EXPECT_TRUE(near(pic.at(55, 30), {255, 255, 255}));       // outside the square
}

TEST_F(RenderTest, ResolutionScalesThePicture) {
  const fs::path file = dir_ / "big.png";
  FigureRenderer::exportFigure(figure_, file.string(), 2.0);
  Picture pic(file);
  EXPECT_EQ(pic.width(), 400);
  EXPECT_EQ(pic.height(), 200);
  EXPECT_TRUE(near(pic.at(200, 100), {255, 255, 255}));
}

TEST_F(RenderTest, SvgAndPdfHoldTheFigure) {
  line({0, 10}, {5, 5}, row({1, 0, 0}));
  COSInterfacePtr text = sgclasses::create(sgclasses::kTextClass, axes_);
  sgtest::set(text, "String", str("label").get());
  sgtest::set(text, "Position", row({5, 5, 0}).get());
  const fs::path svg = dir_ / "fig.svg";
  EXPECT_EQ(FigureRenderer::exportFigure(figure_, svg.string()).texts, 1u);
  std::stringstream s;
  s << std::ifstream(svg).rdbuf();
  const std::string doc = s.str();
  EXPECT_NE(doc.find("<svg"), std::string::npos);
  EXPECT_NE(doc.find("width=\"200pt\" height=\"100pt\""), std::string::npos);
  EXPECT_NE(doc.find("fill:rgb(20%,40%,60%)"), std::string::npos);   // figure background
  EXPECT_NE(doc.find("stroke:rgb(100%,0%,0%)"), std::string::npos);  // the red line
  EXPECT_NE(doc.find("<use xlink:href=\"#glyph"), std::string::npos);  // text as glyphs

  const fs::path pdf = dir_ / "fig.PDF";
  FigureRenderer::exportFigure(figure_, pdf.string());
  std::ifstream in(pdf, std::ios::binary);
  char head[5] = {};
  in.read(head, 4);
  EXPECT_EQ(std::string(head), "%PDF");
}

TEST_F(RenderTest, BadInputRaisesAndLeavesNoFile) {
  using sgtest::errorId;
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(figure_, (dir_ / "fig.bmp").string()); }),
            "VANTEL:sgrender:UnknownFormat");
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(figure_, (dir_ / "png").string()); }),
            "VANTEL:sgrender:UnknownFormat");
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(figure_, (dir_ / "no/such/fig.png").string()); }),
            "VANTEL:sgrender:FolderNotFound");
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(axes_, (dir_ / "axes.png").string()); }),
            "VANTEL:sgrender:NotFigure");
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(figure_, (dir_ / "f.png").string(), 0); }),
            "VANTEL:sgrender:BadScale");
  EXPECT_EQ(filesIn(), 0u);

  // A folder that cannot be written: the rename fails and the part is gone.
  if (::geteuid() != 0) {
    const fs::path locked = dir_ / "locked";
    fs::create_directory(locked);
    fs::permissions(locked, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(figure_, (locked / "fig.svg").string()); }),
              "VANTEL:sgrender:CannotWrite");
    EXPECT_TRUE(fs::is_empty(locked));
    fs::permissions(locked, fs::perms::owner_all);
  }
  // A path that is a folder: written beside it, then the rename fails.
  fs::create_directory(dir_ / "taken.png");
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(figure_, (dir_ / "taken.png").string()); }),
            "VANTEL:sgrender:CannotWrite");
  fs::remove(dir_ / "taken.png");

  COSInterfacePtr gone = figure_;
  gone->deleteObject(COSGetPublicClient());
  EXPECT_EQ(errorId([&] { FigureRenderer::exportFigure(gone, (dir_ / "gone.png").string()); }),
            "VANTEL:sg:DeletedObject");
  EXPECT_EQ(filesIn(), 0u);
}

TEST(TickSteps, ReadableStepsWithinTheLimits) {
  using sgrender::TickSteps;
  EXPECT_EQ(TickSteps::ticksFor(0, 10, 6), (std::vector<double>{0, 2, 4, 6, 8, 10}));
  EXPECT_EQ(TickSteps::ticksFor(0, 1, 3), (std::vector<double>{0, 0.5, 1}));
  EXPECT_DOUBLE_EQ(TickSteps::stepFor(0, 1000, 11), 100);
  EXPECT_DOUBLE_EQ(TickSteps::stepFor(0, 7, 5), 2);
  // Ends off the steps: only multiples inside; zero has no sign.
  const std::vector<double> t = TickSteps::ticksFor(-0.3, 0.7, 6);
  ASSERT_EQ(t.size(), 5u);
  EXPECT_NEAR(t.front(), -0.2, 1e-12);
  EXPECT_FALSE(std::signbit(t[1]));
  EXPECT_EQ(t[1], 0.0);
  EXPECT_NEAR(t.back(), 0.6, 1e-12);
  // Empty, reversed or endless ranges give none.
  EXPECT_TRUE(TickSteps::ticksFor(1, 1, 5).empty());
  EXPECT_TRUE(TickSteps::ticksFor(2, 1, 5).empty());
  EXPECT_TRUE(TickSteps::ticksFor(0, INFINITY, 5).empty());
}

TEST(TickSteps, LogScalesTickByDecadesAndMinorGridsFillBetween) {
  using sgrender::TickSteps;
  EXPECT_EQ(TickSteps::ticksFor(0.5, 1000, 6, true), (std::vector<double>{1, 10, 100, 1000}));
  // Too many decades for the room: every second one.
  EXPECT_EQ(TickSteps::ticksFor(1, 1e6, 4, true), (std::vector<double>{1, 100, 1e4, 1e6}));
  // Less than two decades: the linear steps read better.
  EXPECT_EQ(TickSteps::ticksFor(2, 8, 4, true), TickSteps::ticksFor(2, 8, 4));
  const std::vector<double> minorLog = TickSteps::minorTicksFor(1, 100, 6, true);
  ASSERT_EQ(minorLog.size(), 16u);  // 2..9 and 20..90
  EXPECT_EQ(minorLog.front(), 2);
  EXPECT_EQ(minorLog.back(), 90);
  // Linear: fifths of a step of 1 or 5, quarters of a step of 2, ticks left out.
  const std::vector<double> fifths = TickSteps::minorTicksFor(0, 2, 3);  // step 1
  ASSERT_EQ(fifths.size(), 8u);
  EXPECT_NEAR(fifths.front(), 0.2, 1e-12);
  EXPECT_NEAR(fifths[4], 1.2, 1e-12);
  EXPECT_EQ(TickSteps::minorTicksFor(0, 4, 3).size(), 6u);  // step 2: 0.5 1 1.5 2.5 3 3.5
  EXPECT_TRUE(TickSteps::minorTicksFor(1, 1, 3).empty());
}

}  // namespace

namespace {

// The picture kept as a view: what drawnow reports changed is redrawn, the
// rest is replayed, and the picture is the same as a full draw would give.
TEST_F(RenderTest, ViewRedrawsOnlyWhatChanged) {
  COSInterfacePtr red = line({0, 10}, {2, 2}, row({1, 0, 0}));
  COSInterfacePtr green = line({0, 10}, {5, 5}, row({0, 1, 0}));
  COSInterfacePtr black = line({0, 10}, {8, 8}, row({0, 0, 0}));
  COSInterfacePtr label = sgclasses::create(sgclasses::kTextClass, axes_);
  sgtest::set(label, "String", str("W").get());
  sgtest::set(label, "Position", row({1, 3.5, 0}).get());
  const fs::path file = dir_ / "view.png";
  {
    sgrender::FigureView view(figure_);
    sgrender::RenderStats stats = view.exportTo(file.string());
    EXPECT_EQ(stats.lines, 3u);
    EXPECT_EQ(stats.texts, 1u);
    EXPECT_EQ(stats.reused, 0u);
    EXPECT_EQ(view.keptObjects(), 4u);

    // One colour change: one line drawn again, and the picture shows it.
    sgtest::set(green, "Color", row({0, 0, 1}).get());
    stats = view.exportTo(file.string());
    EXPECT_EQ(stats.lines, 1u);
    EXPECT_EQ(stats.texts, 0u);
    EXPECT_EQ(stats.reused, 3u);
    {
      Picture pic(file);
      EXPECT_TRUE(near(pic.at(100, 65), {255, 0, 0}));  // y = 2, replayed
      EXPECT_TRUE(near(pic.at(100, 50), {0, 0, 255}));  // y = 5, redrawn blue
      EXPECT_TRUE(near(pic.at(100, 35), {0, 0, 0}));    // y = 8, replayed
    }
    // Nothing changed: nothing drawn, the same picture.
    stats = view.exportTo(file.string());
    EXPECT_EQ(stats.lines + stats.texts, 0u);
    EXPECT_EQ(stats.reused, 4u);
    EXPECT_TRUE(near(Picture(file).at(100, 50), {0, 0, 255}));

    // New limits move every object: all drawn again, at their new places.
    sgtest::set(axes_, "YLim", row({0, 20}).get());
    stats = view.exportTo(file.string());
    EXPECT_EQ(stats.lines, 3u);
    EXPECT_EQ(stats.reused, 0u);
    {
      Picture pic(file);
      EXPECT_TRUE(near(pic.at(100, 55), {0, 0, 0}));  // y = 8 of 20
      EXPECT_TRUE(near(pic.at(100, 35), {255, 255, 255}));
    }

    // A deleted line and a hidden one are dropped, a new one drawn; a new
    // scale draws everything again.
    red->deleteObject(COSGetPublicClient());
    sgtest::set(black, "Visible", str("off").get());
    COSInterfacePtr extra = line({0, 10}, {15, 15}, row({1, 0, 1}));
    stats = view.exportTo(file.string());
    EXPECT_EQ(stats.lines, 1u);
    EXPECT_EQ(stats.reused, 2u);  // the blue line and the text
    EXPECT_EQ(view.keptObjects(), 3u);
    {
      Picture pic(file);
      EXPECT_TRUE(near(pic.at(100, 70), {255, 255, 255}));  // y = 2 gone
      EXPECT_TRUE(near(pic.at(100, 55), {255, 255, 255}));  // y = 8 hidden
      EXPECT_TRUE(near(pic.at(100, 38), {255, 0, 255}));    // y = 15 new
    }
    stats = view.exportTo(file.string(), 2.0);
    EXPECT_EQ(stats.lines, 2u);
    EXPECT_EQ(stats.reused, 0u);
    EXPECT_EQ(Picture(file).width(), 400);
  }
  // The view is gone and its registration with it: a drawnow after a change
  // must not reach it (the sanitizer build sees a call into a dead view).
  sgtest::set(green, "Color", row({1, 1, 0}).get());
  EXPECT_EQ(sgclasses::drawnow(), 1u);
}

// A view's picture equals a full draw's, also in SVG, and bad input gives
// the same errors with no file left behind.
TEST_F(RenderTest, ViewPicturesMatchAFullDrawAndCheckInput) {
  COSInterfacePtr a = line({0, 10}, {3, 3}, row({1, 0, 0}));
  COSInterfacePtr b = line({0, 10}, {6, 6}, row({0, 0, 1}));
  // A heavy line, whose pixels the view keeps for raster pictures.
  COSInterfacePtr heavy = sgclasses::create(sgclasses::kLineClass, axes_);
  Arr x(vxCreateDoubleMatrix(1, 6000, vxREAL)), y(vxCreateDoubleMatrix(1, 6000, vxREAL));
  for (int i = 0; i < 6000; ++i) {
    vxGetPr(x.get())[i] = 10.0 * i / 5999;
    vxGetPr(y.get())[i] = 5 + 4 * std::sin(i * 0.01);
  }
  sgtest::set(heavy, "XData", x.get());
  sgtest::set(heavy, "YData", y.get());
  // Enough short lines that runs hold several objects each.
  std::vector<COSInterfacePtr> shorts;
  for (int i = 0; i < 30; ++i) {
    shorts.push_back(line({0.3 * i, 0.3 * i + 1}, {0.3 * i, 9 - 0.2 * i}, row({0.03 * i, 0.5, 1 - 0.03 * i})));
    sgtest::set(shorts.back(), "LineWidth", Arr(vxCreateDoubleScalar(1)).get());
  }
  sgrender::FigureView view(figure_);
  view.exportTo((dir_ / "first.png").string());
  // A vector picture is drawn whole, and leaves what the view keeps.
  EXPECT_EQ(view.exportTo((dir_ / "first.svg").string()).reused, 0u);
  sgtest::set(b, "LineWidth", Arr(vxCreateDoubleScalar(8)).get());
  sgtest::set(shorts[17], "Color", row({1, 0.5, 0}).get());
  const sgrender::RenderStats stats = view.exportTo((dir_ / "kept.png").string());
  EXPECT_EQ(stats.lines, 2u);
  EXPECT_EQ(stats.reused, 31u);
  FigureRenderer::exportFigure(figure_, (dir_ / "full.png").string());
  Picture kept(dir_ / "kept.png"), full(dir_ / "full.png");
  int differing = 0;
  for (int y = 0; y < kept.height(); y += 2)
    for (int x = 0; x < kept.width(); x += 2) differing += !near(kept.at(x, y), full.at(x, y), 2);
  EXPECT_EQ(differing, 0);

  std::ifstream svg(dir_ / "first.svg");
  std::stringstream text;
  text << svg.rdbuf();
  EXPECT_NE(text.str().find("<svg"), std::string::npos);
  EXPECT_NE(text.str().find("stroke:rgb(100%,0%,0%)"), std::string::npos);

  const std::size_t before = filesIn();
  EXPECT_EQ(sgtest::errorId([&] { view.exportTo((dir_ / "x.gif").string()); }), "VANTEL:sgrender:UnknownFormat");
  EXPECT_EQ(sgtest::errorId([&] { view.exportTo((dir_ / "no" / "x.png").string()); }),
            "VANTEL:sgrender:FolderNotFound");
  figure_->deleteObject(COSGetPublicClient());
  EXPECT_EQ(sgtest::errorId([&] { view.exportTo((dir_ / "x.png").string()); }), "VANTEL:sg:DeletedObject");
  EXPECT_EQ(filesIn(), before);
}

// The views behind the export built-ins: one per figure, made on its first
// export, gone when the figure goes (by delete or with the root), while the
// figure never waits on its view to go.
TEST_F(RenderTest, FigureViewsFollowTheirFigures) {
  using sgrender::FigureViews;
  COSInterfacePtr red = line({0, 10}, {2, 2}, row({1, 0, 0}));
  COSInterfacePtr blue = line({0, 10}, {5, 5}, row({0, 0, 1}));
  const fs::path file = dir_ / "views.png";
  const std::size_t before = FigureViews::count();
  EXPECT_EQ(FigureViews::find(figure_.get()), nullptr);
  EXPECT_EQ(FigureViews::exportFigure(figure_, file.string()).lines, 2u);
  ASSERT_NE(FigureViews::find(figure_.get()), nullptr);
  EXPECT_EQ(FigureViews::count(), before + 1);

  sgtest::set(red, "Color", row({0, 1, 0}).get());
  const sgrender::RenderStats stats = FigureViews::exportFigure(figure_, file.string());
  EXPECT_EQ(stats.lines, 1u);
  EXPECT_EQ(stats.reused, 1u);
  EXPECT_EQ(FigureViews::find(figure_.get())->lastStats().reused, 1u);
  EXPECT_EQ(FigureViews::count(), before + 1);
  EXPECT_TRUE(near(Picture(file).at(100, 65), {0, 255, 0}));

  // Objects that are not figures make no view and give their errors.
  EXPECT_EQ(sgtest::errorId([&] { FigureViews::exportFigure(axes_, file.string()); }), "VANTEL:sgrender:NotFigure");
  EXPECT_EQ(sgtest::errorId([&] { FigureViews::exportFigure(COSInterfacePtr(), file.string()); }),
            "VANTEL:sg:DeletedObject");
  EXPECT_EQ(FigureViews::count(), before + 1);

  // A second figure's view; deleting the first drops only its own, and the
  // deleted figure's export makes no new one.
  COSInterfacePtr other = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  FigureViews::exportFigure(other, (dir_ / "other.png").string());
  EXPECT_EQ(FigureViews::count(), before + 2);
  const COSInterface* gone = figure_.get();
  figure_->deleteObject(COSGetPublicClient());
  EXPECT_EQ(FigureViews::find(gone), nullptr);
  EXPECT_EQ(FigureViews::count(), before + 1);
  EXPECT_EQ(sgtest::errorId([&] { FigureViews::exportFigure(figure_, file.string()); }), "VANTEL:sg:DeletedObject");
  EXPECT_EQ(FigureViews::count(), before + 1);
  // The last reference of a figure that is still in the tree is the tree's:
  // the view must not hold it, or it would never go.
  const COSInterface* second = other.get();
  other.reset();
  sgclasses::releaseRoot();
  EXPECT_EQ(FigureViews::find(second), nullptr);
  EXPECT_EQ(FigureViews::count(), before);
}

// Picking hits a line on a log axis where the picture shows it: the rows a
// column of the picture paints, read back as data, lie on the line.
TEST_F(RenderTest, PickingHitsALogAxisLineWhereItIsDrawn) {
  sgtest::set(axes_, "YScale", str("log").get());
  sgtest::set(axes_, "YLim", row({1, 1000}).get());
  COSInterfacePtr red = line({0, 10}, {1, 1000}, row({1, 0, 0}));
  const fs::path file = dir_ / "log.png";
  FigureRenderer::exportFigure(figure_, file.string());
  Picture picture(file);
  // Column 100 is x = 5; rows 25..75 are three decades, 75 at the bottom.
  double sum = 0;
  int count = 0;
  for (int y = 25; y < 75; ++y)
    if (near(picture.at(100, y), {255, 0, 0}, 60)) sum += y + 0.5, ++count;
  ASSERT_GT(count, 0);
  const double drawnY = std::pow(10.0, 3 * (75 - sum / count) / 50);
  std::array<double, 3> at{};
  EXPECT_EQ(sgclasses::pickInAxes(axes_.get(), 5.05, drawnY, at).get(), red.get()) << drawnY;
  // Half way between the ends' values is far above what is drawn.
  EXPECT_EQ(sgclasses::pickInAxes(axes_.get(), 5.05, 500.5, at).get(), axes_.get());
}

// Vector pictures through a figure's view are drawn whole and leave the
// view's drawings for the next raster picture; the drawings go with the
// figure (a leak here shows under the sanitizer build).
TEST_F(RenderTest, VectorExportsThroughTheViewLeaveItsDrawingsWhichGoWithTheFigure) {
  using sgrender::FigureViews;
  COSInterfacePtr red = line({0, 10}, {2, 2}, row({1, 0, 0}));
  COSInterfacePtr blue = line({0, 10}, {5, 5}, row({0, 0, 1}));
  COSInterfacePtr patch = sgclasses::create(sgclasses::kPatchClass, axes_);
  sgtest::set(patch, "XData", row({1, 3, 3}).get());
  sgtest::set(patch, "YData", row({6, 6, 9}).get());
  COSInterfacePtr note = sgclasses::create(sgclasses::kTextClass, axes_);
  const std::size_t views = FigureViews::count();
  sgtest::set(note, "String", str("note").get());
  sgtest::set(note, "Position", row({6, 8, 0}).get());

  EXPECT_EQ(FigureViews::exportFigure(figure_, (dir_ / "a.png").string()).reused, 0u);
  const sgrender::FigureView* view = FigureViews::find(figure_.get());
  ASSERT_NE(view, nullptr);
  const std::size_t kept = view->keptObjects();
  EXPECT_EQ(kept, 4u);
  for (const char* name : {"a.svg", "a.pdf"}) {
    const sgrender::RenderStats stats = FigureViews::exportFigure(figure_, (dir_ / name).string());
    EXPECT_EQ(stats.lines, 2u) << name;
    EXPECT_EQ(stats.patches, 1u) << name;
    EXPECT_EQ(stats.reused, 0u) << name;
    EXPECT_EQ(view->keptObjects(), kept) << name;
    EXPECT_GT(fs::file_size(dir_ / name), 0u) << name;
  }
  const sgrender::RenderStats again = FigureViews::exportFigure(figure_, (dir_ / "b.png").string());
  EXPECT_EQ(again.lines + again.patches, 0u);
  EXPECT_EQ(again.reused, kept);

  // Texts live in axes and groups only: a figure has none of its own to draw.
  EXPECT_EQ(sgtest::errorId([&] { sgclasses::create(sgclasses::kTextClass, figure_); }),
            "VANTEL:sgclasses:InvalidParent");

  const COSInterface* gone = figure_.get();
  figure_->deleteObject(COSGetPublicClient());
  EXPECT_EQ(FigureViews::find(gone), nullptr);
  EXPECT_EQ(FigureViews::count(), views);
}

// A log scale places values by their logarithm and has no place for the
// others; the minor grid shows only when asked for.
TEST_F(RenderTest, LogScalesPlaceDataByDecadesAndMinorGridsShowWhenOn) {
  // A box 180 pixels wide (10..190), room for a tick at each decade.
  sgtest::set(axes_, "Position", row({0.05, 0.25, 0.9, 0.5}).get());
  sgtest::set(axes_, "XScale", str("log").get());
  sgtest::set(axes_, "XLim", row({1, 100}).get());
  sgtest::set(axes_, "MinorGridColor", row({0, 0, 0}).get());
  sgtest::set(axes_, "MinorGridAlpha", Arr(vxCreateDoubleScalar(1)).get());
  line({10, 10}, {0, 10}, row({1, 0, 0}));     // x = 10: halfway across
  line({0, 10, 100}, {2, 2, 2}, row({0, 1, 0}));  // x = 0 has no place: starts at 10
  const fs::path file = dir_ / "log.png";
  FigureRenderer::exportFigure(figure_, file.string());
  {
    Picture pic(file);
    EXPECT_TRUE(near(pic.at(100, 35), {255, 0, 0}));
    EXPECT_TRUE(near(pic.at(55, 65), {255, 255, 255}));
    EXPECT_TRUE(near(pic.at(145, 65), {0, 255, 0}));
    for (int y = 26; y < 74; ++y) EXPECT_TRUE(near(pic.at(37, y), {255, 255, 255}));  // x = 2, no minor grid yet
  }
  sgtest::set(axes_, "XMinorGrid", str("on").get());
  FigureRenderer::exportFigure(figure_, file.string());
  {
    // x = 2 at 37.09: a dotted line down the box.
    Picture pic(file);
    int darkest = 765;
    for (int y = 26; y < 74; ++y) darkest = std::min(darkest, pic.at(37, y).r + pic.at(37, y).g + pic.at(37, y).b);
    EXPECT_LT(darkest, 600);
    EXPECT_TRUE(near(pic.at(55, 40), {255, 255, 255}));  // between minor lines
  }
  // Auto limits on a log scale take the positive data only.
  sgtest::set(axes_, "XLimMode", str("auto").get());
  Arr lim = sgtest::get(axes_, "XLim");
  EXPECT_EQ(vxGetPr(lim.get())[0], 10);
  EXPECT_EQ(vxGetPr(lim.get())[1], 100);
}

// The labels are drawn outside the box, below the x tick labels and left of
// the y ones; an axes whose labels were never asked for has none.
TEST_F(RenderTest, AxisLabelsAreDrawnBelowAndLeftOfTheBox) {
  // Box 60..180 across, 10..60 down: room below and to the left.
  sgtest::set(axes_, "Position", row({0.3, 0.4, 0.6, 0.5}).get());
  auto inked = [&](const fs::path& file, int x0, int y0, int x1, int y1) {
    Picture pic(file);
    int n = 0;
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x) n += !near(pic.at(x, y), {51, 102, 153}, 40);
    return n;
  };
  const fs::path file = dir_ / "labels.png";
  FigureRenderer::exportFigure(figure_, file.string());
  EXPECT_EQ(sgclasses::axesOwnTexts(axes_.get())[1], nullptr);  // drawing made no label
  const int belowBefore = inked(file, 90, 82, 150, 100), leftBefore = inked(file, 0, 15, 34, 55);

  Arr xLabel = sgtest::get(axes_, "XLabel"), yLabel = sgtest::get(axes_, "YLabel");
  COSInterfacePtr x = omGetArrayElement(xLabel.get(), 0), y = omGetArrayElement(yLabel.get(), 0);
  sgtest::set(x, "String", str("MMMM").get());
  sgtest::set(y, "String", str("MMMM").get());
  sgtest::set(x, "Color", row({0, 0, 0}).get());
  sgtest::set(y, "Color", row({0, 0, 0}).get());
  EXPECT_EQ(FigureRenderer::exportFigure(figure_, file.string()).texts, 2u);
  EXPECT_EQ(belowBefore, 0);
  EXPECT_EQ(leftBefore, 0);
  EXPECT_GT(inked(file, 90, 82, 150, 100), 20);
  EXPECT_GT(inked(file, 0, 15, 34, 55), 20);
  // Upright: the y label is taller than wide.
  Picture pic(file);
  int top = 100, bottom = 0, left = 200, right = 0;
  for (int py = 0; py < 100; ++py)
    for (int px = 0; px < 34; ++px)
      if (near(pic.at(px, py), {0, 0, 0}, 60)) {
        top = std::min(top, py), bottom = std::max(bottom, py);
        left = std::min(left, px), right = std::max(right, px);
      }
  EXPECT_GT(bottom - top, 2 * (right - left));
}

// Patch vertices with a third column are drawn from above, as lines with
// ZData are: the picture is that of their X and Y.
TEST_F(RenderTest, PatchWith3DVerticesIsDrawnFromAbove) {
  COSInterfacePtr patch = sgclasses::create(sgclasses::kPatchClass, axes_);
  Arr verts(vxCreateDoubleMatrix(4, 3, vxREAL));
  const double v[] = {2, 8, 8, 2, 2, 2, 8, 8, 1, 5, -3, 9};  // column-major: x, y, z
  std::copy(std::begin(v), std::end(v), vxGetPr(verts.get()));
  sgtest::set(patch, "Vertices", verts.get());
  sgtest::set(patch, "Faces", row({1, 2, 3, 4}).get());
  sgtest::set(patch, "FaceColor", row({0, 0, 1}).get());
  const fs::path file = dir_ / "patch3d.png";
  EXPECT_EQ(FigureRenderer::exportFigure(figure_, file.string()).patches, 1u);
  Picture pic(file);
  EXPECT_TRUE(near(pic.at(100, 50), {0, 0, 255}));
  EXPECT_TRUE(near(pic.at(55, 30), {255, 255, 255}));
}

}  // namespace

namespace {

Rgb rgbOf(const COSInterfacePtr& object, const char* name) {
  Arr v = sgtest::get(object, name);
  EXPECT_TRUE(vxIsDouble(v.get()) && vxGetNumberOfElements(v.get()) == 3) << name;
  const double* p = vxGetPr(v.get());
  return {int(std::lround(p[0] * 255)), int(std::lround(p[1] * 255)), int(std::lround(p[2] * 255))};
}

int luminance(Rgb c) { return c.r + c.g + c.b; }

// One figure in the light and the dark theme: the picture's backgrounds,
// axis lines and text take the colours the theme gave the objects, and the
// two pictures differ in background as the themes do.
TEST_F(RenderTest, ThemedPicturesTakeTheThemesColours) {
  COSInterfacePtr fig = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  sgtest::set(fig, "Position", row({0, 0, 200, 100}).get());
  COSInterfacePtr ax = sgclasses::create(sgclasses::kAxesClass, fig);
  sgtest::set(ax, "Position", row({0.25, 0.25, 0.5, 0.5}).get());
  sgtest::set(ax, "LineWidth", Arr(vxCreateDoubleScalar(4)).get());
  COSInterfacePtr words = sgclasses::create(sgclasses::kTextClass, ax);
  sgtest::set(words, "String", str("MMM").get());
  sgtest::set(words, "Position", row({0.1, 0.5, 0}).get());
  sgtest::set(words, "FontSize", Arr(vxCreateDoubleScalar(14)).get());
  sgtest::set(words, "FontWeight", str("bold").get());

  Rgb background[2];
  int k = 0;
  for (const char* theme : {"light", "dark"}) {
    sgtest::set(fig, "Theme", str(theme).get());
    const fs::path file = dir_ / (std::string(theme) + ".png");
    FigureRenderer::exportFigure(fig, file.string());
    Picture pic(file);
    background[k] = rgbOf(fig, "Color");
    EXPECT_TRUE(near(pic.at(2, 2), background[k])) << theme;
    EXPECT_TRUE(near(pic.at(100, 40), rgbOf(ax, "Color"))) << theme;
    EXPECT_TRUE(near(pic.at(100, 75), rgbOf(ax, "XColor"))) << theme;  // the bottom axis line
    EXPECT_TRUE(near(pic.at(50, 40), rgbOf(ax, "YColor"))) << theme;   // the left one
    // Somewhere in the text's glyphs the pixels are its colour.
    const Rgb ink = rgbOf(words, "Color");
    bool found = false;
    for (int y = 35; y < 65 && !found; ++y)
      for (int x = 52; x < 100 && !found; ++x) found = near(pic.at(x, y), ink, 12);
    EXPECT_TRUE(found) << theme;
    ++k;
  }
  EXPECT_GT(luminance(background[0]), luminance(background[1]) + 200);
  fig->deleteObject(COSGetPublicClient());
}

}  // namespace
