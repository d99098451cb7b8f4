// The display data of the concrete classes: one row per class with the
// properties a scalar display shows (names a class lacks are left out) and
// where its label comes from.
#include "sgclasses/DisplayData.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgutils/classinfo/GraphicsDisplayData.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {

enum class Label {
  None,
  Property,       // the text of one property (DisplayName, String)
  FigureNumber,   // "Number: Name", or the number alone when there is no name
};

class TableDisplayData final : public sgutils::GraphicsDisplayData {
 public:
  TableDisplayData(std::vector<std::string> names, Label label, const char* property = "")
      : names_(std::move(names)), label_(label), property_(property) {}

  std::vector<Group> getPropertyGroups(COSInterface&) const override { return {Group{"", names_}}; }

  vxArray* getDescriptiveLabelForDisplay(COSInterface& object) const override {
    matrix::unique_vxArray one(omCreateVCOSScalar(COSInterfacePtr(&object)));
    switch (label_) {
      case Label::None:
        return nullptr;
      case Label::Property:
        return textOf(one.get(), property_);
      case Label::FigureNumber: {
        matrix::unique_vxArray number(read(one.get(), "Number"));
        const std::string name = textString(one.get(), "Name");
        std::string label;
        if (number && vxIsNumeric(number.get()) && !vxIsEmpty(number.get()))
          label = std::to_string(static_cast<long long>(vxGetScalar(number.get())));
        if (!name.empty()) label += label.empty() ? name : ": " + name;
        return label.empty() ? nullptr : vxCreateString(label.c_str());
      }
    }
    return nullptr;
  }

 private:
  static vxArray* read(const vxArray* one, const char* name) {
    const COSClass* cls = vcos::array::classOf(one);
    if (!cls || !cls->findPropertyExact(COSID(name))) return nullptr;
    return vxGetProperty(one, 0, name);
  }
  // A char or string value as a char array; null otherwise.
  static vxArray* textOf(const vxArray* one, const char* name) {
    matrix::unique_vxArray v(read(one, name));
    if (!v) return nullptr;
    if (vxIsChar(v.get()) || vxIsCell(v.get())) return v.release();
    if (vxIsString(v.get()) && vxIsScalar(v.get())) return vxCreateString(vxArrayToStdString(v.get()).c_str());
    return nullptr;
  }
  static std::string textString(const vxArray* one, const char* name) {
    matrix::unique_vxArray v(textOf(one, name));
    return v && vxIsChar(v.get()) && vxGetM(v.get()) == 1 ? vxArrayToStdString(v.get()) : std::string();
  }

  std::vector<std::string> names_;
  Label label_;
  const char* property_;
};

void set(const char* cls, std::vector<std::string> names, Label label = Label::None, const char* property = "") {
  sgutils::GraphicsDisplayData::setForClass(
      COSID(cls), std::make_shared<const TableDisplayData>(std::move(names), label, property));
}

}  // namespace

void registerDisplayData() {
  set(kLineClass,
      {"Color", "LineStyle", "LineWidth", "Marker", "MarkerSize", "MarkerFaceColor", "XData", "YData", "ZData"},
      Label::Property, "DisplayName");
  set(kFigureClass, {"Number", "Name", "Color", "Position", "Units"}, Label::FigureNumber);
  set(kAxesClass, {"XLim", "YLim", "XScale", "YScale", "GridLineStyle", "Position", "Units"});
  set(kTextClass, {"String", "FontSize", "FontWeight", "FontName", "Color", "HorizontalAlignment", "Position", "Units"},
      Label::Property, "String");
  set(kPatchClass, {"FaceColor", "FaceAlpha", "EdgeColor", "LineStyle", "Faces", "Vertices"}, Label::Property,
      "DisplayName");
  set(kGroupClass, {"Children", "Visible", "HitTest"});
  set(kRootClass, {"CallbackObject", "ShowHiddenHandles", "CurrentFigure", "ScreenPixelsPerInch", "ScreenSize",
                   "MonitorPositions", "Units"});
  set(kContextMenuClass, {"ContextMenuOpeningFcn", "Callback", "Children"});
}

}  // namespace sgclasses
