// "vantel.graphics.GraphicsDisplay": the five display methods of graphics
// objects and the class that carries them.
//
// A scalar shows a header (class and label), the groups its class chooses,
// and a footer pointing at all properties; an array shows one line per
// object (a column) or a grid of class names (a matrix); an empty array one
// line. Hyperlinks appear only when utPrintfIsHot() is true.
#include "sgutils/classinfo/GraphicsDisplayClassInfo.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/i18n/MessageCatalog.h"
#include "foundation/io/Printing.h"
#include "foundation/text/Utf.h"
#include "sgutils/classinfo/GraphicsDisplayData.h"
#include "src/classinfo/HeterogeneousDisplay.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSInterface.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"
#include "vx/vx.h"

using foundation::core::except::Error;

namespace sgutils {

namespace {

constexpr const char* kMatrixIndent = "    ";
constexpr const char* kHeaderIndent = "  ";
constexpr std::size_t kWindowLimit = 360;
constexpr std::size_t kColumnGap = 4;
constexpr const char* kFallbackClassText = "Graphics";

const COSID& customDisplayId() {
  static const COSID id("vantel.mixin.CustomDisplay");
  return id;
}
const COSID& propertyGroupId() {
  static const COSID id("vantel.mixin.util.PropertyGroup");
  return id;
}
const COSID& getPropertyGroupsId() {
  static const COSID id("getPropertyGroups");
  return id;
}
const COSID& getLabelId() {
  static const COSID id("getDescriptiveLabelForDisplay");
  return id;
}

std::string text(const char* key, std::initializer_list<std::string> args = {}) {
  const std::vector<std::string> list(args);
  return i18n::MessageCatalog::get_message(std::string("VANTEL:graphicsDisplayText:") + key, list);
}

void print(const std::string& s) { utPrintf("%s", s.c_str()); }

std::size_t windowWidth() {
  const int columns = ioGetNumWindowColumns();
  return std::min<std::size_t>(columns > 0 ? static_cast<std::size_t>(columns) : 0, kWindowLimit);
}

const vxArray* input(const COSValue* prhs, int k) { return prhs[k].asPointer<const vxArray>(); }

// A static helper of the custom display mixin that answers text.
std::string callHelper(const char* method, const vxArray* array) {
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {array};
  omCallMethod(customDisplayId(), method, COSGetPublicClient(), 1, out, 1, in, /*dispatchOnObject=*/false);
  matrix::unique_vxArray result(out[0]);
  return result && vxIsChar(result.get()) ? vxArrayToStdString(result.get()) : std::string();
}

std::string dimensionsText(const vxArray* array) { return callHelper("convertDimensionsToString", array); }

const char* listedClassName(const COSInterface& object) { return object.getClass()->getName(); }

std::string arrayClassName(const vxArray* array) {
  const COSClass* cls = vcos::array::classOf(array);
  return cls ? cls->getName() : vxGetClassName(array);
}

// A 1-by-1 array of one element, for calls dispatched on that element.
matrix::unique_vxArray scalarOf(const COSInterfacePtr& object) { return matrix::unique_vxArray(omCreateVCOSScalar(object)); }

COSInterfacePtr liveScalar(const vxArray* array, const char* method) {
  COSInterfacePtr object = array && omIsVCOS(array) && !vxIsEmpty(array) ? omGetLiveArrayElement(array, 0) : nullptr;
  if (!object) throw Error("VANTEL:sgutils:DeletedObjectInDisplay", method);
  return object;
}

// ---- labels ---------------------------------------------------------------

bool isTextRow(const vxArray* a) { return a && vxIsChar(a) && vxGetM(a) <= 1 && vxGetNumberOfDimensions(a) == 2; }

std::string charText(const vxArray* a) {
  const std::u16string all = matrix::get_ustring(a);
  const vxSize m = vxGetM(a), n = vxGetN(a);
  if (vxGetNumberOfDimensions(a) > 2 || m <= 1 || n <= 1) return foundation::text::utf16ToUtf8(all);
  // A matrix reads row by row; rows are joined by a line break, which
  // becomes "/" below like any other.
  std::u16string rows;
  for (vxSize i = 0; i < m; ++i) {
    if (i) rows += u'\n';
    for (vxSize j = 0; j < n; ++j) rows += all[j * m + i];
  }
  return foundation::text::utf16ToUtf8(rows);
}

// The label of one live object, as one line; nothing when it has none.
std::optional<std::string> labelOf(const COSInterfacePtr& object) {
  matrix::unique_vxArray one = scalarOf(object);
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {one.get()};
  omCallMethod(object->getClass()->getID(), getLabelId(), COSGetPublicClient(), 1, out, 1, in,
               /*dispatchOnObject=*/true);
  matrix::unique_vxArray value(out[0]);
  if (!value) return std::nullopt;
  const vxArray* v = value.get();
  bool valid = vxIsChar(v);
  if (vxIsCell(v)) {
    valid = true;
    for (vxSize i = 0, n = vxGetNumberOfElements(v); i < n && valid; ++i) valid = isTextRow(vxGetCell(v, i));
  }
  if (!valid) throw Error("VANTEL:sgutils:InvalidDescriptiveLabel", listedClassName(*object));
  if (vxIsEmpty(v)) return std::nullopt;
  std::string label;
  if (vxIsChar(v)) {
    label = charText(v);
  } else {
    for (vxSize i = 0, n = vxGetNumberOfElements(v); i < n; ++i) {
      if (i) label += ", ";
      const vxArray* e = vxGetCell(v, i);
      if (!vxIsEmpty(e)) label += charText(e);
    }
  }
  for (char& c : label)
    if (c == '\b' || c == '\t' || c == '\n' || c == '\r') c = '/';
  return label;
}

std::string cutLabel(const std::string& label, std::size_t room) {
  if (utStrlen(label.c_str()) <= room) return label;
  return ioWrapString(label.c_str(), label.size(), room, services::io::kCutToWidth, ioVantelDesktopInUse());
}

// ---- scalar ---------------------------------------------------------------

void printHeaderLine(const std::string& line) { print(kHeaderIndent + line + "\n\n"); }

void printScalarHeader(const vxArray* array, const COSInterfacePtr& object) {
  static const COSID rootId("vantel.ui.Root");
  const std::string classText = callHelper("getClassNameForHeader", array);
  if (object->getClass()->getID() == rootId) {
    printHeaderLine(text("ScalarHeaderText", {classText, kFallbackClassText}));
    return;
  }
  const std::optional<std::string> label = labelOf(object);
  if (!label) {
    printHeaderLine(text("ScalarHeaderTextNoLabel", {classText}));
    return;
  }
  const std::size_t width = windowWidth();
  const std::size_t room = width > 0 ? width - 1 : 0;
  const std::size_t fixed =
      utStrlen(text("ScalarHeaderText", {"", ""}).c_str()) + 2 + utStrlen(listedClassName(*object));
  if (room <= fixed) {
    printHeaderLine(text("ScalarHeaderTextNoLabel", {classText}));
    return;
  }
  std::string inParentheses(1, '(');
  inParentheses.append(cutLabel(*label, room - fixed)).push_back(')');
  printHeaderLine(text("ScalarHeaderText", {classText, inParentheses}));
}

void printFooter(const vxArray* array) {
  const std::string name = ioGetArrayName(array, 1);
  const char* newline = GetNewline();
  if (newline[0] != '\n') print("\n");
  print(kHeaderIndent);
  if (utPrintfIsHot() && !name.empty()) {
    const std::string cls = arrayClassName(array);
    const std::string link = "<a href=\"vantel:if exist('" + name + "', 'var'), vantel.graphics.internal.getForDisplay('" +
                             name + "', " + name + ", '" + cls + "'), else, vantel.graphics.internal.getForDisplay('" +
                             name + "'), end\">" + text("AllPropertiesText") + "</a>";
    print(text("FooterTextWithArrayName", {link}));
  } else if (utPrintfIsHot()) {
    print(text("FooterTextNoArrayName", {"<a href=\"vantel:helpTip get\">get</a>"}));
  } else {
    print(text("FooterTextNoArrayName", {"GET"}));
  }
  utPrintf("%s\n", newline);
}

void displayScalar(const vxArray* array) {
  if (!array || !omIsVCOS(array) || !vxIsScalar(array))
    throw Error("VANTEL:sgutils:ScalarDisplayMustBeScalar", "displayScalarObject");
  const COSInterfacePtr object = liveScalar(array, "displayScalarObject");
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {array};
  omCallMethod(object->getClass()->getID(), getPropertyGroupsId(), COSGetPublicClient(), 1, out, 1, in,
               /*dispatchOnObject=*/true);
  matrix::unique_vxArray groups(out[0]);
  if (!groups || !omIsVCOS(groups.get()) || !vxIsA(groups.get(), propertyGroupId().c_str()))
    throw Error("VANTEL:class:BadPropertyGroup", listedClassName(*object), "PropertyGroup");
  if (vxIsEmpty(groups.get())) {
    utPrintf("    %s\n%s", listedClassName(*object), GetNewline());
    return;
  }
  matrix::unique_vxArray count(vxGetProperty(groups.get(), 0, "NumProperties"));
  if (count && vxGetScalar(count.get()) != 0) {
    printScalarHeader(array, object);
    const vxArray* both[2] = {array, groups.get()};
    omCallMethod(customDisplayId(), "displayPropertyGroups", COSGetPublicClient(), 0, nullptr, 2, both, false);
    printFooter(array);
  } else {
    const std::string classText = callHelper("getClassNameForHeader", array);
    printHeaderLine(i18n::MessageCatalog::get_message("VANTEL:ObjectText:DISPLAY_SCALAR_WITH_NO_PROPS",
                                                      std::vector<std::string>{classText}));
  }
}

// ---- arrays ---------------------------------------------------------------

// Every graphics array may mix classes; it is shown as a mixed one when
// some live element is not of the array's own class (an array of lines with
// a deleted member stays an array of lines).
bool isHeterogeneous(const vxArray* array) { return detail::isHeterogeneousForDisplay(array); }

// The class text of an array's header: "graphics" for a heterogeneous one.
std::string arrayClassText(const vxArray* array, bool heterogeneous) {
  if (!heterogeneous) return callHelper("getClassNameForHeader", array);
  if (!utPrintfIsHot()) return "graphics";
  return "<a href=\"vantel:helpBrowse ([helproot '/vantel/creating_plots/creating_plots.map'],"
         "'heterogeneous_graphics_arrays')\">graphics</a>";
}

void printColumn(const vxArray* array, std::size_t width, bool heterogeneous) {
  const std::string arrayName = arrayClassName(array);
  const std::size_t window = windowWidth();
  const std::size_t room = window > width + 8 ? window - width - 8 : 0;
  const std::string format = "  %-" + std::to_string(width) + "s    (";
  std::string line;
  for (vxSize i = 0, n = vxGetNumberOfElements(array); i < n; ++i) {
    std::string classText = arrayName;
    std::optional<std::string> label;
    if (const COSInterfacePtr object = omGetLiveArrayElement(array, i)) {
      classText = listedClassName(*object);
      label = labelOf(object);
      if (label) label = cutLabel(*label, room);
    } else if (heterogeneous) {
      label = "deleted handle";
      classText = kFallbackClassText;
    }
    if (label && !label->empty()) {
      utPrintf(format.c_str(), classText.c_str());
      print(*label + ")");
    } else {
      utPrintf("  %s", classText.c_str());
    }
    print("\n");
  }
  utPrintf("%s", GetNewline());
}

void printMatrix(const vxArray* array, std::size_t width, bool heterogeneous) {
  const std::string arrayName = arrayClassName(array);
  const vxSize rows = vxGetM(array), cols = vxGetN(array);
  const std::size_t window = windowWidth();
  const std::size_t indent = std::char_traits<char>::length(kMatrixIndent);
  const std::size_t space = window > indent + 1 ? window - indent - 1 : 0;
  std::size_t perBlock = space / (width + kColumnGap);
  if (space % (width + kColumnGap) >= width) ++perBlock;  // the last column needs no gap
  perBlock = std::max<std::size_t>(perBlock, 1);
  std::string row;
  for (vxSize first = 0; first < cols; first += perBlock) {
    const vxSize last = std::min<vxSize>(first + perBlock, cols);
    if (perBlock < cols) {
      const std::string heading =
          last - first == 1
              ? i18n::MessageCatalog::get_message("VANTEL:ClassText:DISPLAY_ONE_COLUMN_ENUMERATION_HEADER",
                                                  std::vector<std::string>{std::to_string(first + 1)})
              : i18n::MessageCatalog::get_message(
                    "VANTEL:ClassText:DISPLAY_TWO_COLUMN_ENUMERATION_HEADER",
                    std::vector<std::string>{std::to_string(first + 1), std::to_string(last)});
      utPrintf("  %s%s", heading.c_str(), GetNewline());
    }
    for (vxSize r = 0; r < rows; ++r) {
      row.clear();
      for (vxSize c = first; c < last; ++c) {
        const COSInterfacePtr object = omGetLiveArrayElement(array, c * rows + r);
        const std::size_t start = row.size();
        row += object ? listedClassName(*object) : heterogeneous ? kFallbackClassText : arrayName.c_str();
        row.append(width + kColumnGap - std::min(width + kColumnGap, row.size() - start), ' ');
      }
      row.resize(row.size() - std::min(row.size(), kColumnGap));
      utPrintf("%s%s\n", kMatrixIndent, row.c_str());
    }
    utPrintf("%s", GetNewline());
  }
}

void displayNonScalar(const vxArray* array) {
  if (!array || !omIsVCOS(array) || vxIsScalar(array) || vxIsEmpty(array))
    throw Error("VANTEL:sgutils:NonScalarDisplayMustBeNonScalar", "displayNonScalarObject");
  const bool heterogeneous = isHeterogeneous(array);
  print(kHeaderIndent + text("NonScalarHeaderText", {dimensionsText(array), arrayClassText(array, heterogeneous)}));
  if (vxGetNumberOfDimensions(array) > 2) {
    utPrintf(".\n%s", GetNewline());
    return;
  }
  print(":\n\n");
  const std::string arrayName = arrayClassName(array);
  std::size_t width = utStrlen(arrayName.c_str());
  if (heterogeneous) {
    width = 0;
    for (vxSize i = 0, n = vxGetNumberOfElements(array); i < n; ++i) {
      const COSInterfacePtr object = omGetLiveArrayElement(array, i);
      width = std::max(width, object ? utStrlen(listedClassName(*object))
                                     : std::char_traits<char>::length(kFallbackClassText));
    }
  } else {
    for (vxSize i = 0, n = vxGetNumberOfElements(array); i < n; ++i)
      if (!omGetLiveArrayElement(array, i)) {
        width = std::max(width, std::char_traits<char>::length(kFallbackClassText));
        break;
      }
  }
  if (vxGetN(array) > 1)
    printMatrix(array, width, heterogeneous);
  else
    printColumn(array, width, heterogeneous);
}

void displayEmpty(const vxArray* array) {
  if (!array || !omIsVCOS(array) || !vxIsEmpty(array))
    throw Error("VANTEL:sgutils:EmptyDisplayMustBeEmpty", "displayEmptyObject");
  print(kHeaderIndent + text("EmptyArrayText", {dimensionsText(array), arrayClassText(array, isHeterogeneous(array))}));
  utPrintf("\n%s", GetNewline());
}

// ---- the methods ----------------------------------------------------------

// Every method takes the input "object"; `output` names its one output, if any.
COSMethodSignaturePtr signature(const char* name, const char* output) {
  std::vector<COSMethodSignature::Argument> outputs;
  if (output) outputs.push_back({COSID(output), COSDataTypePtr(), false});
  return COSMethodSignature::createMethodSignature(COSID(name), {{COSID("object"), COSDataTypePtr(), false}},
                                                   std::move(outputs));
}

class DisplayMethod : public COSMethodBase {
 public:
  DisplayMethod(COSID classId, const char* name, const char* description, const char* output = nullptr)
      : COSMethodBase(classId, COSID(name), PublicAccess, description, signature(name, output)) {}
};

class GraphicsDisplayGetPropertyGroups final : public DisplayMethod {
 public:
  explicit GraphicsDisplayGetPropertyGroups(COSID cls)
      : DisplayMethod(cls, "getPropertyGroups", "The default implementation of getPropertyGroups for graphics display.",
                      "group") {}
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    const COSInterfacePtr object = liveScalar(nrhs > 0 ? input(prhs, 0) : nullptr, "getPropertyGroups");
    const std::vector<GraphicsDisplayData::Group> groups =
        GraphicsDisplayData::forClass(object->getClass()).getPropertyGroups(*object);
    matrix::unique_vxArray result(omCreateVCOSMatrix(groups.empty() ? 0 : 1, groups.size(), propertyGroupId()));
    for (std::size_t g = 0; g < groups.size(); ++g) {
      // Names the class does not have are left out, so a list may name
      // properties that only some builds define.
      const COSClass* cls = object->getClass();
      std::vector<const std::string*> shown;
      for (const std::string& n : groups[g].names)
        if (cls->findPropertyExact(COSID(n.c_str()))) shown.push_back(&n);
      matrix::unique_vxArray list(vxCreateCellMatrix(shown.empty() ? 0 : 1, shown.size()));
      for (std::size_t i = 0; i < shown.size(); ++i) vxSetCell(list.get(), i, vxCreateString(shown[i]->c_str()));
      matrix::unique_vxArray title(vxCreateString(groups[g].title.c_str()));
      const vxArray* in[2] = {list.get(), title.get()};
      matrix::unique_vxArray made(omConstructObjectWithClient(propertyGroupId(), 2, in, client));
      omSetArrayElement(result.get(), g, omGetArrayElement(made.get(), 0));
    }
    plhs[0] = COSValue(result.release());
    nlhs = 1;
  }
};

class GraphicsDisplayGetDescriptiveLabelForDisplay final : public DisplayMethod {
 public:
  explicit GraphicsDisplayGetDescriptiveLabelForDisplay(COSID cls)
      : DisplayMethod(cls, "getDescriptiveLabelForDisplay",
                      "The default implementation of getDescriptiveLabelForDisplay for graphics display.",
                      "label") {}
  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    const COSInterfacePtr object = liveScalar(nrhs > 0 ? input(prhs, 0) : nullptr, "getDescriptiveLabelForDisplay");
    vxArray* label = GraphicsDisplayData::forClass(object->getClass()).getDescriptiveLabelForDisplay(*object);
    plhs[0] = COSValue(label ? label : vxCreateString(""));
    nlhs = 1;
  }
};

class GraphicsDisplayScalarObject final : public DisplayMethod {
 public:
  explicit GraphicsDisplayScalarObject(COSID cls)
      : DisplayMethod(cls, "displayScalarObject", "Scalar display of graphics objects.") {}
  void invoke(const COSClient*, int& nlhs, COSValue*, int nrhs, const COSValue* prhs) const override {
    displayScalar(nrhs > 0 ? input(prhs, 0) : nullptr);
    nlhs = 0;
  }
};

class GraphicsDisplayNonScalarObject final : public DisplayMethod {
 public:
  explicit GraphicsDisplayNonScalarObject(COSID cls)
      : DisplayMethod(cls, "displayNonScalarObject", "Non-scalar display of graphics objects.") {}
  void invoke(const COSClient*, int& nlhs, COSValue*, int nrhs, const COSValue* prhs) const override {
    displayNonScalar(nrhs > 0 ? input(prhs, 0) : nullptr);
    nlhs = 0;
  }
};

class GraphicsDisplayEmptyObject final : public DisplayMethod {
 public:
  explicit GraphicsDisplayEmptyObject(COSID cls)
      : DisplayMethod(cls, "displayEmptyObject", "Empty display for graphics objects.") {}
  void invoke(const COSClient*, int& nlhs, COSValue*, int nrhs, const COSValue* prhs) const override {
    displayEmpty(nrhs > 0 ? input(prhs, 0) : nullptr);
    nlhs = 0;
  }
};

}  // namespace

void GraphicsDisplayClassInfo::initializeClass(COSClass* cls, const COSClient*) {
  const COSID me = cls->getID();
  cls->addSuperclass(customDisplayId());
  cls->addMethod(new GraphicsDisplayGetPropertyGroups(me));
  cls->addMethod(new GraphicsDisplayGetDescriptiveLabelForDisplay(me));
  cls->addMethod(new GraphicsDisplayScalarObject(me));
  cls->addMethod(new GraphicsDisplayNonScalarObject(me));
  cls->addMethod(new GraphicsDisplayEmptyObject(me));
}

}  // namespace sgutils
