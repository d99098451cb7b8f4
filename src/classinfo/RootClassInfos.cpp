// The class infos of the four roots of the object tree (Graphics,
// ReferenceObject, GraphicsPropertyHandler, StorageObject) and of
// GraphicsPlaceholder: one row each, then allocation and the members each
// adds.
#include <algorithm>
#include <iterator>

#include "foundation/graphicsstate/GraphicsState.h"
#include "sgutils/classinfo/GetGraphicsPlaceholderMI.h"
#include "sgutils/classinfo/GraphicsPlaceholderCI.h"
#include "sgutils/classinfo/AddListenerBaseMI.h"
#include "sgutils/classinfo/ResetEI.h"
#include "sgutils/classinfo/ResetMI.h"
#include "sgutils/classinfo/EqMI.h"
#include "sgutils/classinfo/IsChildPropertyMI.h"
#include "sgutils/classinfo/MethodAliasMI.h"
#include "sgutils/classinfo/OverloadCustomCompactDisplayProviderMI.h"
#include "sgutils/classinfo/NeMI.h"
#include "sgutils/classinfo/SGDoubleHandleMI.h"
#include "sgutils/classinfo/SGHandleConvertMI.h"
#include "sgutils/classinfo/SGIsPropMI.h"
#include "sgutils/classinfo/SGCloMI.h"
#include "sgutils/classinfo/SGFilterDefaultFactoryPropMI.h"
#include "sgutils/classinfo/SGGetDefaultPropValueMI.h"
#include "sgutils/classinfo/SGGetDispMI.h"
#include "sgutils/classinfo/SGGetFactoryPropValueMI.h"
#include "sgutils/classinfo/SGSetDefaultPropValueMI.h"
#include "sgutils/classinfo/SGSetDispMI.h"
#include "sgutils/classinfo/RootClassInfo.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/tree/FindobjMI.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "sgutils/lifecycle/SGPropHandler.h"
#include "sgutils/classinfo/SGPropHandlerClassInfo.h"
#include "sgutils/classinfo/SGReferenceClassInfo.h"
#include "sgutils/classinfo/SGStorageClassInfo.h"
#include "sgutils/objects/GraphicsProperties.gen.h"
#include "vcos/COSClass.h"

namespace {

// The closed list of "vantel.graphics.Graphics"; the repeated names stand.
constexpr const char* kGraphicsSubclasses[] = {
    "sg2sample.ExampleStackManager",
    "sg2examples.NewCircle",
    "vantel.graphics.internal.GraphicsCoreProperties",
    "vantel.graphics.GraphicsPlaceholder",
    "vantel.graphics.shape.internal.AnnotationPane",
    "vantel.ui.Root",
    "vantel.ui.control.Component",
    "vantel.ui.control.Noncomponent",
    "vantel.ui.internal.UnitsService",
    "vantel.graphics.primitive.world.SceneNode",
    "vantel.graphics.primitive.canvas.Canvas",
    "vantel.graphics.shape.internal.ScribeStackManager",
    "vantel.graphics.axis.SceneViewer",
    "vantel.graphics.axis.GraphicsObject",
    "vantel.graphics.axis.canvas.Canvas",
    "vantel.graphics.shape.Arrow",
    "vantel.graphics.illustration.ColorBar",
    "vantel.ui.Figure",
    "vantel.graphics.axis.Axes",
    "vantel.graphics.axis.PolarAxes",
    "vantel.graphics.axis.GeographicAxesBase",
    "vantel.graphics.axis.MapAxesBase",
    "vantel.graphics.axis.AbstractAxes",
    "vantel.graphics.primitive.Image",
    "vantel.graphics.shape.internal.AxesForColorBar",
    "vantel.graphics.shape.internal.AxesLayoutManagerForColorBar",
    "vantel.graphics.primitive.Surface",
    "vantel.graphics.primitive.Line",
    "vantel.graphics.shape.DoubleEndArrow",
    "vantel.graphics.shape.Ellipse",
    "vantel.graphics.shape.Rectangle",
    "vantel.graphics.shape.internal.AxesForLegend",
    "vantel.graphics.primitive.world.SceneNode",
    "vantel.graphics.illustration.Legend",
    "vantel.graphics.shape.Line",
    "vantel.graphics.shape.internal.Cursor",
    "vantel.graphics.shape.internal.GraphicsTip",
    "vantel.graphics.shape.internal.PointDataTip",
    "vantel.graphics.shape.TextArrow",
    "vantel.graphics.shape.TextBox",
    "sg2sample.ExampleStackManager",
    "vantel.graphics.GraphicsTestBase",
    "sg2utils.TestUpdateViewInfo",
    "sg2utils.TestPropertyDefinition",
    "sg2utils.TestPostSetFcn",
    "sg2utils.TestPropertyFlags",
    "sg2utils.TestStubPropertyDefinition",
    "TestObjectCOSInfo",
    "sg2utils.TestLoadObjBase",
    "vantel.ui.internal.mixin.ConcreteTerminalStateRepresentable",
    "vantel.ui.internal.mixin.ConcreteSelectable",
};

constexpr const char* kPropHandlerSubclasses[] = {
    "vantel.graphics.internal.GraphicsBaseFunctions",  "sg2utils.ConcreteSGPropHandler",
    "sg2utils.ConcreteTestSubclass",                   "vantel.graphics.chart.internal.UserChartBase",
    "vantel.graphics.chart.internal.ChartBaseProxy",   "vantel.graphics.chart.Chart",
    "vantel.graphics.chart.HeatmapChart",              "vantel.graphics.chart.internal.SubplotPositionableChart",
};

constexpr const char* kReferenceSubclasses[] = {
    "vantel.graphics.internal.GraphicsPropertyHandler",
    "vantel.graphics.Graphics",
    "vantel.graphics.axis.colorspace.ColorsIterator",
    "vantel.graphics.axis.dataspace.PointsIterator",
    "vantel.graphics.mixin.Mixin",
    "vantel.graphics.primitive.canvas.CanvasFactory",
    "vantel.ui.container.SceneViewerFactorySpy",
    "vantel.ui.internal.mixin.TerminalStateRepresentable",
    "vantel.ui.internal.UnitsServiceStorageInterface",
    "plotspecTwo.Annotation",
    "plotspecTwo.LegendEntry",
    "vantel.graphics.eventdata.Annotation",
    "vantel.graphics.eventdata.LegendEntry",
    "TestMethodObj.sgtest",
    "sg2test.TestMethodObj",
    "sg2test.TestIsProp",
};

constexpr const char* kGraphicsSuperclasses[] = {
    "vantel.graphics.internal.ReferenceObject", "dynamicprops", "vantel.mixin.Heterogeneous",
    "vantel.graphics.GraphicsDisplay",          "vantel.graphics.mixin.internal.Copyable",
};
constexpr const char* kPropHandlerSuperclasses[] = {
    "vantel.graphics.internal.ReferenceObject",
    "vantel.mixin.internal.DefaultFactoryPropHandler",
};
constexpr const char* kPlaceholderSuperclasses[] = {"vantel.graphics.Graphics"};

// name, description, detailed description, handle, abstract, sealed,
// children saved, truncation allowed, superclasses (how many first),
// allowed subclasses.
constexpr RootClassRow kGraphicsRow = {
    "Graphics", "The baseclass for all graphics objects", "All graphics objects must subclass this class",
    true, true, false, false, false, kGraphicsSuperclasses, 4, kGraphicsSubclasses};
constexpr RootClassRow kPlaceholderRow = {
    "GraphicsPlaceholder", "A placeholder for a missing graphics object",
    "Fills the gaps in arrays of graphics objects", true, false, true, false, false, kPlaceholderSuperclasses, 1, {}};
constexpr RootClassRow kReferenceRow = {
    "ReferenceObject", "The baseclass for all non-Heterogeneous objects",
    "All non-Heterogeneous objects must subclass this class", true, true, false, std::nullopt, true, {}, 0,
    kReferenceSubclasses};
constexpr RootClassRow kPropHandlerRow = {
    "GraphicsPropertyHandler", "The baseclass for all graphics objects which support ambiguous property names",
    "All graphics objects must subclass this class", true, true, false, false, true, kPropHandlerSuperclasses, 2,
    kPropHandlerSubclasses};
constexpr RootClassRow kStorageRow = {
    "StorageObject", "The baseclass for all non-handle storage objects",
    "All non-handle storage objects must subclass this class", false, true, false, std::nullopt, false, {}, 0, {}};

void* asBlock(SGReference* block) { return static_cast<void*>(block); }

const COSID& referenceObjectId() {
  static const COSID id("vantel.graphics.internal.ReferenceObject");
  return id;
}

// What making the block of a new object asks of its class, kept for the last
// class seen, since objects of one class tend to come in runs: whether its
// objects have a Graphics block (their ReferenceObject slot holds that block
// too rather than a block of its own: the Graphics block is an SGReference
// with the same state), the class info that makes it when the class has its
// own SGHandle subclass (the cross-cast), and the Graphics class that counts
// a new Graphics block. Not kept per thread: like the block pools, it serves
// the interpreter thread, and a thread-local costs a look-up on every use.
struct ClassBlockPlan {
  const COSClass* cls = nullptr;
  const COSClassInfo* info = nullptr;
  bool carriesGraphics = false;
  SGHandleBlockFactory* factory = nullptr;
  COSClass* graphics = nullptr;
};
ClassBlockPlan lastBlockPlan;

const ClassBlockPlan& blockPlanFor(const COSClass* cls) {
  ClassBlockPlan& last = lastBlockPlan;
  const COSClassInfo* info = cls->getClassInfo();
  if (cls != last.cls || info != last.info || !last.graphics) {
    static const COSID graphicsId("vantel.graphics.Graphics");
    last = {cls, info, cls->getID() == graphicsId || cls->isSubclassOf(graphicsId),
            dynamic_cast<SGHandleBlockFactory*>(const_cast<COSClassInfo*>(info)), SGHandle::getClassInstance()};
  }
  return last;
}

// The Graphics block of a new object: a concrete class with its own SGHandle
// subclass makes it.
SGHandle* makeGraphicsBlock(COSInterface* instance, const ClassBlockPlan& plan) {
  // The factory may make objects of other classes, which changes the plan.
  COSClass* graphics = plan.graphics;
  SGHandle* block = plan.factory ? plan.factory->createHandleBlock() : new SGHandle;
  if (graphics) graphics->notifyInstanceAllocated(instance);
  block->setCOSReference(COSInterfacePtr(instance, COSWeakReference));
  return block;
}

}  // namespace

const char* const* sgutils::graphicsAllowedSubclasses(std::size_t& count) noexcept {
  count = std::size(kGraphicsSubclasses);
  return kGraphicsSubclasses;
}

// ---- the row

void sgutils::addRowSuperclasses(COSClass* cls, const RootClassRow& row) {
  const std::size_t first = std::min(row.firstCount, row.superclasses.size());
  for (std::size_t k = first; k-- > 0;) cls->addSuperclass(COSID(row.superclasses[k]), true, 0, 1);
  for (std::size_t k = first; k < row.superclasses.size(); ++k)
    cls->addSuperclass(COSID(row.superclasses[k]), false, 0, 1);
}

bool RootClassInfo::areChildrenSaved() const {
  return row_.childrenSaved ? *row_.childrenSaved : BaseObjectCOSInfo::areChildrenSaved();
}

void RootClassInfo::initializeClass(COSClass* cls, const COSClient*) {
  setClient(cls);
  sgutils::addRowSuperclasses(cls, row_);
  // The closed lists apply while graphics classes are sealed.
  if (!row_.allowedSubclasses.empty() && GraphicsState::sgSealGraphicsClasses())
    for (const char* name : row_.allowedSubclasses) cls->addAllowedSubclass(COSID(name));
  addMembers(cls);
}

// ---- Graphics

SGHandleBlockFactory::~SGHandleBlockFactory() = default;

SGHandleClassInfo::SGHandleClassInfo() noexcept : RootClassInfo(kGraphicsRow) {}

void SGHandleClassInfo::addMembers(COSClass* cls) {
  sgutils::addGraphicsProperties<SGHandle>(cls);
  const COSID me = cls->getID();
  cls->addMethod(new GetGraphicsPlaceholderMI(me));
  cls->addMethod(new ResetMI(me));
  cls->addMethod(new AddListenerBaseMI(me));
  cls->addMethod(new sgutils::FindobjMI(me));
  cls->addMethod(new EqMI(me));
  cls->addMethod(new NeMI(me));
  cls->addMethod(new SGDoubleHandleMI(me));
  cls->addMethod(new SGHandleConvertMI(me));
  cls->addMethod(new IsChildPropertyMI(me));
  cls->addMethod(new SGCloMI(me));
  cls->addMethod(new SGGetDispMI(me));
  cls->addMethod(new SGSetDispMI(me));
  cls->addMethod(new OverloadCustomCompactDisplayProviderMI(me, "compactRepresentationForSingleLine"));
  cls->addMethod(new OverloadCustomCompactDisplayProviderMI(me, "compactRepresentationForColumn"));
  // A longer name of clo that says what it does.
  cls->addMethod(new MethodAliasMI(me, "clearChildren", "clo"));
  cls->addEvent(new ResetEI);
}

void* SGHandleClassInfo::allocateInstance(COSInterface* instance) {
  // Made already for the ReferenceObject slot (blocks are made base first).
  const ClassBlockPlan& plan = blockPlanFor(instance->getClass());
  if (plan.carriesGraphics)
    if (void* shared = instance->getInstanceData(referenceObjectId())) return shared;
  return asBlock(makeGraphicsBlock(instance, plan));
}

bool SGHandleClassInfo::isSharedAnswerSkippable() const { return true; }

void SGHandleClassInfo::deallocateInstance(COSInterface* instance, void* data) {
  // A block shared with the ReferenceObject slot goes with that slot.
  if (data && instance->getInstanceData(referenceObjectId()) != data) delete static_cast<SGReference*>(data);
}

// ---- GraphicsPlaceholder

GraphicsPlaceholderCI::GraphicsPlaceholderCI() noexcept : SGHandleClassInfo(kPlaceholderRow) {}
void GraphicsPlaceholderCI::addMembers(COSClass* cls) { cls->addMethod(new GetGraphicsPlaceholderMI(cls->getID())); }
void* GraphicsPlaceholderCI::allocateInstance(COSInterface*) { return nullptr; }
bool GraphicsPlaceholderCI::willAllocateData() const { return false; }

// ---- ReferenceObject

SGReferenceClassInfo::SGReferenceClassInfo() noexcept : RootClassInfo(kReferenceRow) {}
void* SGReferenceClassInfo::allocateInstance(COSInterface* instance) {
  const ClassBlockPlan& plan = blockPlanFor(instance->getClass());
  if (plan.carriesGraphics) return asBlock(makeGraphicsBlock(instance, plan));
  auto* block = new SGReference;
  block->setCOSReference(COSInterfacePtr(instance, COSWeakReference));
  return asBlock(block);
}
void SGReferenceClassInfo::deallocateInstance(COSInterface*, void* data) {
  if (data) delete static_cast<SGReference*>(data);
}
void SGReferenceClassInfo::addMembers(COSClass* cls) { cls->addMethod(new SGIsPropMI(cls->getID())); }

// ---- GraphicsPropertyHandler

SGPropHandlerClassInfo::SGPropHandlerClassInfo() noexcept : RootClassInfo(kPropHandlerRow) {}
void* SGPropHandlerClassInfo::allocateInstance(COSInterface* instance) {
  auto* block = new SGPropHandler;
  if (COSClass* cls = SGPropHandler::getClassInstance()) cls->notifyInstanceAllocated(instance);
  return asBlock(block);
}
void SGPropHandlerClassInfo::deallocateInstance(COSInterface*, void* data) {
  if (data) delete static_cast<SGReference*>(data);
}
void SGPropHandlerClassInfo::addMembers(COSClass* cls) {
  const COSID me = cls->getID();
  cls->addMethod(new SGGetDefaultPropValueMI(me));
  cls->addMethod(new SGSetDefaultPropValueMI(me));
  cls->addMethod(new SGGetFactoryPropValueMI(me));
  cls->addMethod(new SGFilterDefaultFactoryPropMI(me));
}

// ---- StorageObject

SGStorageClassInfo::SGStorageClassInfo() noexcept : RootClassInfo(kStorageRow) {}
