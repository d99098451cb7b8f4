// The hand-written half of Axes: limits that follow the children's data
// while their mode is auto, the colour order walk, clearing before a plot,
// and the title (a hidden text child made with the axes).
#include "sgutils/objects/Axes.gen.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/copy/Copyable.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/Line.gen.h"
#include "sgutils/objects/Patch.gen.h"
#include "sgutils/objects/Root.gen.h"
#include "sgutils/objects/Text.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClient.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

using foundation::core::except::Error;
using graphics::datatype::AutoManual;

namespace {

constexpr std::array<double, 2> kDefaultLimits[3] = {{0, 1}, {0, 1}, {-1, 1}};

struct Range {
  double lo = std::numeric_limits<double>::infinity();
  double hi = -std::numeric_limits<double>::infinity();
  // On a log scale only positive values have a place.
  bool positiveOnly = false;
  void take(double v) {
    if (!std::isfinite(v) || (positiveOnly && !(v > 0))) return;
    lo = std::min(lo, v);
    hi = std::max(hi, v);
  }
  void add(const vxArray* data) {
    if (!data || !vxIsDouble(data) || vxIsComplex(data)) return;
    const double* values = vxGetPr(data);
    for (std::size_t i = 0, n = vxGetNumberOfElements(data); i < n; ++i) take(values[i]);
  }
  // One column of an n-by-k matrix (the vertices of a patch).
  void addColumn(const vxArray* data, std::size_t column) {
    if (!data || !vxIsDouble(data) || vxIsComplex(data) || vxGetN(data) <= column) return;
    const double* values = vxGetPr(data) + column * vxGetM(data);
    for (std::size_t i = 0, n = vxGetM(data); i < n; ++i) take(values[i]);
  }
};

// The data range of the objects below `node` (groups are walked into).
void collect(const COSInterface* node, int dimension, Range& range) {
  for (COSInterface* child = node->getNewestChild(); child; child = child->getOlderSibling()) {
    if (child->isBeingDestroyed() || child->isDestroyed()) continue;
    const COSClass* cls = child->getClass();
    if (cls->isSubclassOf(Line::classID())) {
      const Line* line = sgutils::blockOf<Line>(child, Line::classID());
      if (!line->isDataValid()) continue;
      range.add(dimension == 0 ? line->getXData() : dimension == 1 ? line->getYData() : line->getZData());
    } else if (cls->isSubclassOf(Patch::classID())) {
      const Patch* patch = sgutils::blockOf<Patch>(child, Patch::classID());
      if (patch->getVertices()) range.addColumn(patch->getVertices(), static_cast<std::size_t>(dimension));
      else if (dimension < 2) range.add(dimension == 0 ? patch->getXData() : patch->getYData());
    } else if (isOfClass(child, {kGroupClass})) {
      collect(child, dimension, range);
    }
  }
}

const char* modeText(AutoManual mode) { return mode == AutoManual::Manual ? "manual" : "auto"; }

}  // namespace

bool Axes::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kFigureClass}); }

void Axes::parentChanged(COSInterface* object, COSInterface* parent) {
  sgutils::blockOf<Figure>(parent, Figure::classID())->setCurrentAxes(COSInterfacePtr(object));
  if (COSInterface* root = parent->getOwnerObject(); root && isOfClass(root, {kRootClass}))
    sgutils::blockOf<Root>(root, Root::classID())->setCurrentFigure(COSInterfacePtr(parent));
}

namespace {
// A hidden, centred text child of the axes, held weakly (the tree holds it).
COSInterfacePtr makeOwnText(COSInterface* axes, double rotation) {
  matrix::unique_vxArray made(omConstructObjectWithClient(kTextClass, 0, nullptr, COSGetPublicClient()));
  COSInterfacePtr text = omGetArrayElement(made.get(), 0);
  Text* block = sgutils::blockOf<Text>(text.get(), Text::classID());
  block->setHandleVisibility(graphics::datatype::HandleVisibility::Off, graphics::datatype::PrivateClient);
  block->setHorizontalAlignment(HorizontalAlignment::Center, graphics::datatype::PrivateClient);
  if (rotation != 0) block->setRotation(rotation, graphics::datatype::PrivateClient);
  block->reparent(text.get(), axes);
  // A copy of the axes makes its own texts and takes the values of these
  // (AxesCopy.cpp), so they are no objects of their own in a copy.
  if (sgutils::CopyableData* data = sgutils::Copyable::dataOf(text.get())) data->copyable = false;
  return COSInterfacePtr(text.get(), COSWeakReference);
}

COSValue ownTextValue(const COSInterfacePtr& held) {
  COSInterface* text = held.get();
  if (!text || text->isDestroyed()) return COSValue(vxCreateDoubleMatrix(0, 0, vxREAL));
  return COSValue(omCreateVCOSScalar(COSInterfacePtr(text)));
}

// A text object given for one of the axes' own texts, moved under the axes.
COSInterfacePtr adoptOwnText(COSInterface* axes, COSValue value, const char* errorId) {
  const auto* array = value.asPointer<const vxArray>();
  COSInterfacePtr text = array && omIsVCOS(array) && vxGetNumberOfElements(array) == 1
                             ? omGetLiveArrayElement(array, 0)
                             : COSInterfacePtr();
  if (!text || !isOfClass(text.get(), {kTextClass})) throw Error(errorId);
  sgutils::blockOf<Text>(text.get(), Text::classID())->reparent(text.get(), axes);
  return COSInterfacePtr(text.get(), COSWeakReference);
}
}  // namespace

void Axes::makeTitle(COSInterfacePtr object) { title_ = makeOwnText(object.get(), 0); }

COSInterfacePtr Axes::label(COSInterface* object, int axis, bool make) {
  COSInterfacePtr& held = axis == 0 ? xLabel_ : yLabel_;
  if (held && !held->isDestroyed() && !held->isBeingDestroyed()) return held;
  if (!make || !object || object->isBeingDestroyed() || object->isDestroyed()) return {};
  held = makeOwnText(object, axis == 0 ? 0 : 90);
  return held;
}

bool Axes::isOwnText(const COSInterface* child) const {
  return child && (child == title_.get() || child == xLabel_.get() || child == yLabel_.get());
}

std::array<double, 2> Axes::limits(int dimension) const {
  if (limitModes_[dimension] == AutoManual::Manual) return limits_[dimension];
  const bool log = (dimension == 0 && getXScale() == AxisScale::Log) || (dimension == 1 && getYScale() == AxisScale::Log);
  Range range;
  range.positiveOnly = log;
  collect(getCOSObject(), dimension, range);
  if (log) {
    // A decade each way around a single value; no data: one decade.
    if (range.lo > range.hi) return {1, 10};
    if (range.lo == range.hi) return {range.lo / 10, range.hi * 10};
    return {range.lo, range.hi};
  }
  if (range.lo > range.hi) return kDefaultLimits[dimension];
  if (range.lo == range.hi) return {range.lo - 1, range.hi + 1};
  return {range.lo, range.hi};
}

COSValue Axes::getLimImpl(int dimension) const {
  const std::array<double, 2> lim = limits(dimension);
  vxArray* row = vxCreateDoubleMatrix(1, 2, vxREAL);
  vxGetPr(row)[0] = lim[0];
  vxGetPr(row)[1] = lim[1];
  return COSValue(row);
}

void Axes::setLimImpl(int dimension, COSValue value) {
  const auto* array = value.asPointer<const vxArray>();
  if (!array || !vxIsDouble(array) || vxIsComplex(array) || vxGetNumberOfElements(array) != 2)
    throw Error("VANTEL:sgclasses:InvalidLimits");
  const double lo = vxGetPr(array)[0], hi = vxGetPr(array)[1];
  if (!(lo < hi)) throw Error("VANTEL:sgclasses:InvalidLimits");
  limits_[dimension] = {lo, hi};
  limitModes_[dimension] = AutoManual::Manual;
}

namespace {
AutoManual modeFrom(COSValue value) {
  const auto* array = value.asPointer<const vxArray>();
  const std::string text = array && (vxIsChar(array) || vxIsString(array)) ? vxArrayToStdString(array) : std::string();
  if (text == "auto") return AutoManual::Auto;
  if (text == "manual") return AutoManual::Manual;
  throw Error("VANTEL:sgclasses:InvalidLimitMode");
}
}  // namespace

// Going from auto to manual keeps the limits as they read now.
void Axes::setLimModeImpl(int dimension, COSValue value) {
  const AutoManual mode = modeFrom(value);
  if (mode == AutoManual::Manual && limitModes_[dimension] == AutoManual::Auto) limits_[dimension] = limits(dimension);
  limitModes_[dimension] = mode;
}

COSValue Axes::getXLimImpl(COSPropInfo*, const COSClient*, COSInterface*) { return getLimImpl(0); }
COSValue Axes::getYLimImpl(COSPropInfo*, const COSClient*, COSInterface*) { return getLimImpl(1); }
COSValue Axes::getZLimImpl(COSPropInfo*, const COSClient*, COSInterface*) { return getLimImpl(2); }
void Axes::setXLimImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue v) { setLimImpl(0, v); }
void Axes::setYLimImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue v) { setLimImpl(1, v); }
void Axes::setZLimImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue v) { setLimImpl(2, v); }

COSValue Axes::getXLimModeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(vxCreateString(modeText(limitModes_[0])));
}
COSValue Axes::getYLimModeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(vxCreateString(modeText(limitModes_[1])));
}
COSValue Axes::getZLimModeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(vxCreateString(modeText(limitModes_[2])));
}
void Axes::setXLimModeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue v) { setLimModeImpl(0, v); }
void Axes::setYLimModeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue v) { setLimModeImpl(1, v); }
void Axes::setZLimModeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue v) { setLimModeImpl(2, v); }

graphics::datatype::RGBAColor Axes::takeNextColor(double* taken) {
  const graphics::datatype::ColorOrder& order = getColorOrder();
  const std::size_t rows = std::max<std::size_t>(order.rows(), 1);
  const double index = std::max(1.0, std::floor(colorOrderIndex_));
  colorOrderIndex_ = index + 1;
  if (taken) *taken = index;
  if (order.rows() == 0) return graphics::datatype::RGBAColor();
  return order.at((static_cast<std::size_t>(index) - 1) % rows);
}

void Axes::clearForPlot(std::span<const COSInterfacePtr> keep) {
  std::vector<COSInterfacePtr> doomed;
  for (COSInterface* child = getCOSObject()->getNewestChild(); child; child = child->getOlderSibling())
    if (!isOwnText(child) && !child->isBeingDestroyed() &&
        std::find(keep.begin(), keep.end(), COSInterfacePtr(child)) == keep.end())
      doomed.emplace_back(child);
  for (const COSInterfacePtr& child : doomed)
    if (!child->isDestroyed()) child->deleteObject(COSGetPublicClient());
  colorOrderIndex_ = 1;
  limitModes_ = {};
}

COSValue Axes::getTitleImpl(COSPropInfo*, const COSClient*, COSInterface*) { return ownTextValue(title_); }
COSValue Axes::getXLabelImpl(COSPropInfo*, const COSClient*, COSInterface* object) {
  return ownTextValue(label(object, 0, true));
}
COSValue Axes::getYLabelImpl(COSPropInfo*, const COSClient*, COSInterface* object) {
  return ownTextValue(label(object, 1, true));
}

void Axes::setTitleImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  title_ = adoptOwnText(object, value, "VANTEL:sgclasses:TitleNotText");
}
void Axes::setXLabelImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  xLabel_ = adoptOwnText(object, value, "VANTEL:sgclasses:LabelNotText");
}
void Axes::setYLabelImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  yLabel_ = adoptOwnText(object, value, "VANTEL:sgclasses:LabelNotText");
}

}  // namespace sgclasses
