// The class infos of the four roots of the object tree (Graphics,
// ReferenceObject, GraphicsPropertyHandler, StorageObject) and of
// GraphicsPlaceholder: names, answers, allocation, and the members each adds.
#include <iterator>

#include "foundation/graphicsstate/GraphicsState.h"
#include "sgutils/GetGraphicsPlaceholderMI.h"
#include "sgutils/GraphicsPlaceholderCI.h"
#include "sgutils/ResetEI.h"
#include "sgutils/ResetMI.h"
#include "sgutils/tree/FindobjMI.h"
#include "sgutils/SGHandle.h"
#include "sgutils/SGHandleClassInfo.h"
#include "sgutils/SGPropHandler.h"
#include "sgutils/SGPropHandlerClassInfo.h"
#include "sgutils/SGReferenceClassInfo.h"
#include "sgutils/SGStorageClassInfo.h"
#include "src/classinfo/GraphicsProperties.h"
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

// The closed lists apply while graphics classes are sealed.
template <std::size_t N>
void addAllowedSubclasses(COSClass* cls, const char* const (&names)[N]) {
  if (!GraphicsState::sgSealGraphicsClasses()) return;
  for (const char* name : names) cls->addAllowedSubclass(COSID(name));
}

void* asBlock(SGReference* block) { return static_cast<void*>(block); }

}  // namespace

const char* const* sgutils::graphicsAllowedSubclasses(std::size_t& count) noexcept {
  count = std::size(kGraphicsSubclasses);
  return kGraphicsSubclasses;
}

// ---- Graphics

SGHandleBlockFactory::~SGHandleBlockFactory() = default;

const char* SGHandleClassInfo::getName() const { return "Graphics"; }
const char* SGHandleClassInfo::getDescription() const { return "The baseclass for all graphics objects"; }
const char* SGHandleClassInfo::getDetailedDescription() const { return "All graphics objects must subclass this class"; }
bool SGHandleClassInfo::isHandleClass() const { return true; }
bool SGHandleClassInfo::isAbstract() const { return true; }
bool SGHandleClassInfo::classIsAbstract() const { return isAbstract(); }
bool SGHandleClassInfo::areChildrenSaved() const { return false; }
bool SGHandleClassInfo::arePropertiesCaseInsensitive() const { return false; }
bool SGHandleClassInfo::isPropertyTruncationAllowed() const { return false; }

void SGHandleClassInfo::initializeClass(COSClass* cls, const COSClient*) {
  setClient(cls);
  cls->addSuperclass(COSID("vantel.graphics.internal.ReferenceObject"), true, 0, 1);
  cls->addSuperclass(COSID("dynamicprops"), true, 0, 1);
  cls->addSuperclass(COSID("vantel.mixin.Heterogeneous"), true, 0, 1);
  cls->addSuperclass(COSID("vantel.graphics.GraphicsDisplay"), true, 0, 1);
  cls->addSuperclass(COSID("vantel.graphics.mixin.internal.Copyable"), false, 0, 1);
  addAllowedSubclasses(cls, kGraphicsSubclasses);
  sgutils::addGraphicsProperties(cls);
  const COSID me = cls->getID();
  cls->addMethod(new GetGraphicsPlaceholderMI(me));
  cls->addMethod(new ResetMI(me));
  cls->addMethod(new sgutils::FindobjMI(me));
  cls->addEvent(new ResetEI);
}

void* SGHandleClassInfo::allocateInstance(COSInterface* instance) {
  // A concrete class with its own SGHandle subclass makes the block. The
  // cross-cast is remembered for the last class info seen (class infos live
  // for the process), since objects of one class tend to come in runs.
  struct LastFactory {
    const COSClassInfo* info = nullptr;
    SGHandleBlockFactory* factory = nullptr;
  };
  thread_local LastFactory last;
  const COSClassInfo* info = instance->getClass()->getClassInfo();
  if (info != last.info) last = {info, dynamic_cast<SGHandleBlockFactory*>(const_cast<COSClassInfo*>(info))};
  SGHandle* block = last.factory ? last.factory->createHandleBlock() : new SGHandle;
  if (COSClass* graphics = SGHandle::getClassInstance()) graphics->notifyInstanceAllocated(instance);
  block->setCOSReference(COSInterfacePtr(instance, COSWeakReference));
  return asBlock(block);
}

void SGHandleClassInfo::deallocateInstance(COSInterface*, void* data) {
  if (data) delete static_cast<SGReference*>(data);
}

// ---- GraphicsPlaceholder

const char* GraphicsPlaceholderCI::getName() const { return "GraphicsPlaceholder"; }
const char* GraphicsPlaceholderCI::getDescription() const { return "A placeholder for a missing graphics object"; }
const char* GraphicsPlaceholderCI::getDetailedDescription() const {
  return "Fills the gaps in arrays of graphics objects";
}
bool GraphicsPlaceholderCI::isAbstract() const { return false; }
bool GraphicsPlaceholderCI::classIsAbstract() const { return false; }
bool GraphicsPlaceholderCI::isSealed() const { return true; }
void GraphicsPlaceholderCI::initializeClass(COSClass* cls, const COSClient*) {
  setClient(cls);
  cls->addSuperclass(COSID("vantel.graphics.Graphics"), true, 0, 1);
  cls->addMethod(new GetGraphicsPlaceholderMI(cls->getID()));
}
void* GraphicsPlaceholderCI::allocateInstance(COSInterface*) { return nullptr; }
bool GraphicsPlaceholderCI::willAllocateData() const { return false; }

// ---- ReferenceObject

const char* SGReferenceClassInfo::getName() const { return "ReferenceObject"; }
const char* SGReferenceClassInfo::getDescription() const { return "The baseclass for all non-Heterogeneous objects"; }
const char* SGReferenceClassInfo::getDetailedDescription() const {
  return "All non-Heterogeneous objects must subclass this class";
}
bool SGReferenceClassInfo::isHandleClass() const { return true; }
bool SGReferenceClassInfo::isAbstract() const { return true; }
bool SGReferenceClassInfo::classIsAbstract() const { return true; }
bool SGReferenceClassInfo::arePropertiesCaseInsensitive() const { return false; }
bool SGReferenceClassInfo::isPropertyTruncationAllowed() const { return true; }
void SGReferenceClassInfo::initializeClass(COSClass* cls, const COSClient*) {
  setClient(cls);
  addAllowedSubclasses(cls, kReferenceSubclasses);
}
void* SGReferenceClassInfo::allocateInstance(COSInterface* instance) {
  auto* block = new SGReference;
  block->setCOSReference(COSInterfacePtr(instance, COSWeakReference));
  return asBlock(block);
}
void SGReferenceClassInfo::deallocateInstance(COSInterface*, void* data) {
  if (data) delete static_cast<SGReference*>(data);
}

// ---- GraphicsPropertyHandler

const char* SGPropHandlerClassInfo::getName() const { return "GraphicsPropertyHandler"; }
const char* SGPropHandlerClassInfo::getDescription() const {
  return "The baseclass for all graphics objects which support ambiguous property names";
}
const char* SGPropHandlerClassInfo::getDetailedDescription() const {
  return "All graphics objects must subclass this class";
}
bool SGPropHandlerClassInfo::isHandleClass() const { return true; }
bool SGPropHandlerClassInfo::isAbstract() const { return true; }
bool SGPropHandlerClassInfo::classIsAbstract() const { return true; }
bool SGPropHandlerClassInfo::areChildrenSaved() const { return false; }
bool SGPropHandlerClassInfo::arePropertiesCaseInsensitive() const { return false; }
bool SGPropHandlerClassInfo::isPropertyTruncationAllowed() const { return true; }
void SGPropHandlerClassInfo::initializeClass(COSClass* cls, const COSClient*) {
  setClient(cls);
  cls->addSuperclass(COSID("vantel.graphics.internal.ReferenceObject"), true, 0, 1);
  cls->addSuperclass(COSID("vantel.mixin.internal.DefaultFactoryPropHandler"), true, 0, 1);
  addAllowedSubclasses(cls, kPropHandlerSubclasses);
}
void* SGPropHandlerClassInfo::allocateInstance(COSInterface* instance) {
  auto* block = new SGPropHandler;
  if (COSClass* cls = SGPropHandler::getClassInstance()) cls->notifyInstanceAllocated(instance);
  return asBlock(block);
}
void SGPropHandlerClassInfo::deallocateInstance(COSInterface*, void* data) {
  if (data) delete static_cast<SGReference*>(data);
}

// ---- StorageObject

const char* SGStorageClassInfo::getName() const { return "StorageObject"; }
const char* SGStorageClassInfo::getDescription() const { return "The baseclass for all non-handle storage objects"; }
const char* SGStorageClassInfo::getDetailedDescription() const {
  return "All non-handle storage objects must subclass this class";
}
bool SGStorageClassInfo::isHandleClass() const { return false; }
bool SGStorageClassInfo::isAbstract() const { return true; }
bool SGStorageClassInfo::classIsAbstract() const { return true; }
bool SGStorageClassInfo::arePropertiesCaseInsensitive() const { return false; }
bool SGStorageClassInfo::isPropertyTruncationAllowed() const { return false; }
