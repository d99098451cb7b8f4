// What a registered view is told by drawnow: the names of the view
// properties of each changed object, once each, then nothing until the next
// change.
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/ViewUpdates.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

using Names = std::vector<std::string>;

// A view that writes down what it is told, per object.
struct RecordingView : sgclasses::ViewUpdateListener {
  std::map<const COSInterface*, std::vector<Names>> told;
  std::map<const COSInterface*, bool> visible;
  std::map<const COSInterface*, sgutils::UpdateViewInfo> infos;
  void viewPropertiesChanged(COSInterface* object, const Names& names, const sgutils::UpdateViewInfo& info) override {
    told[object].push_back(names);
    EXPECT_TRUE(info.isInVisibleHierarchyInitialized());
    EXPECT_TRUE(info.isInDrawnowSyncableHierarchyInitialized());
    visible[object] = info.getIsInVisibleHierarchy();
    infos.insert_or_assign(object, info);
  }
  std::vector<Names> of(const COSInterfacePtr& object) const {
    auto it = told.find(object.get());
    return it == told.end() ? std::vector<Names>{} : it->second;
  }
};

Arr row(std::initializer_list<double> values) {
  Arr a(vxCreateDoubleMatrix(1, values.size(), vxREAL));
  double* p = vxGetPr(a.get());
  for (double v : values) *p++ = v;
  return a;
}

graphics::mixin::ViewPropertiesManager& managerOf(const COSInterfacePtr& object) {
  return *sgutils::blockOf<sgclasses::GraphicsNode>(object.get(), sgclasses::GraphicsNode::classID())->viewProperties();
}

TEST_F(ClassesTest, DrawnowTellsTheViewEachChangedNameOnceAndEmptiesTheSet) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  sgclasses::drawnow();
  EXPECT_TRUE(sgclasses::pendingViewProperties(line.get()).empty());

  RecordingView view;
  sgclasses::ScopedViewRegistration registration(view);
  for (const char* color : {"r", "g", "b"}) set(line, "Color", Arr(vxCreateString(color)).get());
  set(line, "LineWidth", Arr(vxCreateDoubleScalar(2)).get());
  set(line, "Color", Arr(vxCreateString("r")).get());
  EXPECT_EQ(sgclasses::pendingViewProperties(line.get()), (Names{"Color", "LineWidth"}));
  sgclasses::drawnow();
  EXPECT_EQ(view.of(line), (std::vector<Names>{{"Color", "LineWidth"}}));
  EXPECT_TRUE(sgclasses::pendingViewProperties(line.get()).empty());

  // A set of the value the property has adds nothing, and the view hears nothing.
  set(line, "Color", Arr(vxCreateString("r")).get());
  EXPECT_TRUE(sgclasses::pendingViewProperties(line.get()).empty());
  sgclasses::drawnow();
  EXPECT_EQ(view.of(line).size(), 1u);
}

// Defaults write through the internal face; the view knows the visible name.
TEST_F(ClassesTest, AWriteThroughTheInternalFaceReachesTheView) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  sgclasses::drawnow();
  set(line, "Color_I", Arr(vxCreateString("m")).get());
  EXPECT_EQ(text(line, "ColorMode"), "auto");
  EXPECT_EQ(sgclasses::pendingViewProperties(line.get()), (Names{"Color"}));
  sgclasses::drawnow();

  sgutils::DefaultNameAccess::set(axes, "defaultLineLineWidth", Arr(vxCreateDoubleScalar(4)).get());
  COSInterfacePtr second = sgclasses::create(sgclasses::kLineClass, axes);
  const Names pending = sgclasses::pendingViewProperties(second.get());
  EXPECT_NE(std::find(pending.begin(), pending.end(), "LineWidth"), pending.end());
  EXPECT_EQ(std::count(pending.begin(), pending.end(), "LineWidth"), 1);
}

// The classes here are neither custom nor framework components: each gets
// the legacy strategy on its first mark, with its class's starting names.
TEST_F(ClassesTest, ConcreteObjectsTakeTheLegacyStrategyOnFirstMark) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr menu = sgclasses::create(sgclasses::kContextMenuClass, figure);
  const Names figureNames = sgclasses::pendingViewProperties(figure.get());
  ASSERT_GE(figureNames.size(), 4u);
  EXPECT_EQ(Names(figureNames.begin(), figureNames.begin() + 4), (Names{"Uuid", "Visible", "Icon", "ContextMenu"}));
  const Names menuNames = sgclasses::pendingViewProperties(menu.get());
  ASSERT_FALSE(menuNames.empty());
  EXPECT_EQ(menuNames.front(), "ObjectID");
  EXPECT_EQ(std::count(menuNames.begin(), menuNames.end(), "ContextMenu"), 0);

  graphics::mixin::ViewPropertiesManager& manager = managerOf(figure);
  EXPECT_TRUE(manager.isCacheReady());
  EXPECT_FALSE(graphics::mixin::ViewPropertiesManager::isCustomComponent(figure.get()));
  EXPECT_FALSE(graphics::mixin::ViewPropertiesManager::isInAppBuildingFigure(menu.get()));
  EXPECT_FALSE(graphics::mixin::ViewPropertiesManager::isAppBuildingFigure({}));

  // The array form of the names, and marks given as a cell of names.
  sgclasses::drawnow();
  Arr cell(vxCreateCellMatrix(1, 2));
  vxSetCell(cell.get(), 0, vxCreateString("Name_I"));
  vxSetCell(cell.get(), 1, vxCreateString("Units"));
  manager.markViewPropertiesDirty(figure.get(), cell.get());
  Arr names(manager.getDirtyProperties());
  ASSERT_TRUE(vxIsString(names.get()));
  ASSERT_EQ(vxGetN(names.get()), 2u);
  EXPECT_EQ(*vxGetStringElement(names.get(), 0), u"Name");
  EXPECT_EQ(*vxGetStringElement(names.get(), 1), u"Units");
  try {
    manager.markViewPropertiesDirty(figure.get(), Arr(vxCreateString("Units")).get());
    ADD_FAILURE() << "a char array of names was taken";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_STREQ(e.what(), "Array is not cell array.");
  }
  manager.markClean();
}

// Names marked through the manager's method on a concrete object reach the
// views at the next drawnow like those of a set, once each, and are gone
// after it.
TEST_F(ClassesTest, NamesMarkedThroughTheMethodReachTheViewsAtTheNextDrawnow) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  sgclasses::drawnow();
  RecordingView view;
  sgclasses::ScopedViewRegistration registration(view);
  Arr self = obj(line);
  Arr cell(vxCreateCellMatrix(1, 2));
  vxSetCell(cell.get(), 0, vxCreateString("A"));
  vxSetCell(cell.get(), 1, vxCreateString("B_I"));
  const vxArray* inputs[] = {self.get(), cell.get()};
  vxArray* outputs[1] = {nullptr};
  ASSERT_TRUE(omCallMethod(line->getClass()->getID(), "markViewPropertiesDirty", COSGetPublicClient(), 0, outputs, 2,
                           inputs, true));
  set(line, "Color", Arr(vxCreateString("r")).get());
  EXPECT_EQ(sgclasses::pendingViewProperties(line.get()), (Names{"A", "B", "Color"}));
  sgclasses::drawnow();
  EXPECT_EQ(view.of(line), (std::vector<Names>{{"A", "B", "Color"}}));
  EXPECT_TRUE(sgclasses::pendingViewProperties(line.get()).empty());
}

// The view hears whether the object is shown: hidden by itself or by any
// ancestor counts as hidden.
TEST_F(ClassesTest, TheViewIsToldWhetherTheObjectsHierarchyIsVisible) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, group);
  sgclasses::drawnow();
  RecordingView view;
  sgclasses::ScopedViewRegistration registration(view);
  set(line, "LineWidth", Arr(vxCreateDoubleScalar(2)).get());
  sgclasses::drawnow();
  EXPECT_TRUE(view.visible.at(line.get()));
  set(group, "Visible", Arr(vxCreateString("off")).get());
  set(line, "LineWidth", Arr(vxCreateDoubleScalar(3)).get());
  sgclasses::drawnow();
  EXPECT_FALSE(view.visible.at(line.get()));
  EXPECT_FALSE(view.visible.at(group.get()));
}

TEST_F(ClassesTest, DeletedObjectsAndUnregisteredViewsHearNothing) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  COSInterfacePtr kept = sgclasses::create(sgclasses::kLineClass, axes);
  COSInterfacePtr gone = sgclasses::create(sgclasses::kLineClass, axes);
  sgclasses::drawnow();
  RecordingView view, later;
  {
    sgclasses::ScopedViewRegistration registration(view);
    set(kept, "Marker", Arr(vxCreateString("o")).get());
    set(gone, "Marker", Arr(vxCreateString("o")).get());
    gone->deleteObject(COSGetPublicClient());
    sgclasses::drawnow();
  }
  EXPECT_EQ(view.of(kept), (std::vector<Names>{{"Marker"}}));
  EXPECT_TRUE(view.of(gone).empty());
  sgclasses::ScopedViewRegistration registration(later);
  set(kept, "Marker", Arr(vxCreateString("x")).get());
  sgclasses::drawnow();
  EXPECT_EQ(view.of(kept).size(), 1u);
  EXPECT_EQ(later.of(kept), (std::vector<Names>{{"Marker"}}));
}

// Each object comes with what its containers tell it: the frame it is
// placed in, the background it lies on, whether drawnow reaches it.
TEST_F(ClassesTest, TheViewIsToldTheObjectsSurroundings) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  set(figure, "Position", row({10, 20, 400, 200}).get());
  set(figure, "Color", row({0.5, 0.5, 0.5}).get());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  set(axes, "Position", row({0.25, 0.5, 0.5, 0.25}).get());
  set(axes, "Color", row({1, 1, 0}).get());
  COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, group);
  COSInterfacePtr loose = sgclasses::create(sgclasses::kLineClass, COSInterfacePtr());
  RecordingView view;
  sgclasses::ScopedViewRegistration registration(view);
  sgclasses::drawnow();
  using Rect = gui_objects::Rectangle2d;
  const sgutils::UpdateViewInfo& ofFigure = view.infos.at(figure.get());
  EXPECT_EQ(ofFigure.getRefFrame(), (Rect{10, 20, 400, 200}));
  EXPECT_EQ(ofFigure.getScreenResolution(), 96);
  EXPECT_TRUE(ofFigure.isInDrawnowSyncableHierarchy());
  EXPECT_EQ(view.infos.at(axes.get()).getRefFrame(), (Rect{0, 0, 400, 200}));
  EXPECT_EQ(view.infos.at(axes.get()).getColor(), graphics::datatype::RGBAColor(0.5, 0.5, 0.5));
  // Below the axes, inside a group too: the axes' box and colour.
  for (const COSInterfacePtr& inAxes : {group, line}) {
    const sgutils::UpdateViewInfo& info = view.infos.at(inAxes.get());
    EXPECT_EQ(info.getRefFrame(), (Rect{100, 100, 200, 50}));
    EXPECT_EQ(info.getColor(), graphics::datatype::RGBAColor(1, 1, 0));
    EXPECT_TRUE(info.isInDrawnowSyncableHierarchy());
  }
  // An object in no figure: nothing to place it in, and drawnow does not
  // keep it in step; its Visible still counts.
  const sgutils::UpdateViewInfo& ofLoose = view.infos.at(loose.get());
  EXPECT_FALSE(ofLoose.isInDrawnowSyncableHierarchy());
  EXPECT_EQ(ofLoose.getRefFrame(), Rect{});
  EXPECT_TRUE(ofLoose.getIsInVisibleHierarchy());

  // A changed box reaches the next update; an axes without colour shows the
  // figure's.
  set(axes, "Color", Arr(vxCreateString("none")).get());
  set(figure, "Position", row({0, 0, 800, 400}).get());
  set(line, "LineWidth", Arr(vxCreateDoubleScalar(2)).get());
  sgclasses::drawnow();
  EXPECT_EQ(view.infos.at(line.get()).getRefFrame(), (Rect{200, 200, 400, 100}));
  EXPECT_EQ(view.infos.at(line.get()).getColor(), graphics::datatype::RGBAColor(0.5, 0.5, 0.5));
  loose->deleteObject(COSGetPublicClient());
}

// A new Layout is a changed view property of the object, once however often
// it is set, and not for an equal value.
TEST_F(ClassesTest, ANewLayoutReachesTheView) {
  COSInterfacePtr axes = sgclasses::currentAxes(true);
  Arr made(omConstructObjectWithClient("vantel.graphics.layout.TiledChartLayoutOptions", 0, nullptr,
                                       COSGetPublicClient()));
  COSInterfacePtr options = omGetArrayElement(made.get(), 0);
  sgclasses::drawnow();
  RecordingView view;
  sgclasses::ScopedViewRegistration registration(view);
  Arr value(omCreateVCOSScalar(options));
  set(axes, "Layout", value.get());
  set(axes, "Layout", value.get());
  sgclasses::drawnow();
  EXPECT_EQ(view.of(axes), (std::vector<Names>{{"Layout"}}));
  set(axes, "Layout", value.get());
  sgclasses::drawnow();
  EXPECT_EQ(view.of(axes).size(), 1u);
  set(axes, "Layout", Arr(vxCreateDoubleMatrix(0, 0, vxREAL)).get());
  sgclasses::drawnow();
  EXPECT_EQ(view.of(axes), (std::vector<Names>{{"Layout"}, {"Layout"}}));
  options->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::classes
