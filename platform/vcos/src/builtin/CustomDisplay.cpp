// "vantel.mixin.CustomDisplay": the default display of objects, built from
// overridable pieces. disp picks the form (scalar, non-scalar, empty,
// deleted); each form asks the object's class, by dispatch, for its header,
// property groups and footer, so a subclass replaces any piece alone. The
// static helpers (displayPropertyGroups, getClassNameForHeader,
// convertDimensionsToString) serve custom displays as well.
#include <algorithm>
#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/io/Printing.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/builtin/ClassMembers.h"
#include "vcos/src/builtin/CustomDisplayBlock.h"
#include "vcos/src/builtin/ValueText.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vcos/VxProperty.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace vcos::builtin {

namespace {

void print(const std::string& s) { utPrintf("%s", s.c_str()); }

const vxArray* requireObjects(int nrhs, const vxArray* prhs[], const char* method) {
  if (nrhs < 1 || !omIsVCOS(prhs[0])) throw Error("VANTEL:vcos:display:NeedsObjects", method);
  return prhs[0];
}

// The text of a dispatched call that answers text (header, footer, class
// name); empty when the answer is not text.
std::string callForText(COSID method, const vxArray* objects) {
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {objects};
  omCallMethod(names().customDisplay, method, COSGetPublicClient(), 1, out, 1, in, /*dispatchOnObject=*/true);
  matrix::unique_vxArray result(out[0]);
  return result && vxIsChar(result.get()) ? vxArrayToStdString(result.get()) : std::string();
}

matrix::unique_vxArray callForArray(COSID method, const vxArray* objects) {
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {objects};
  omCallMethod(names().customDisplay, method, COSGetPublicClient(), 1, out, 1, in, /*dispatchOnObject=*/true);
  return matrix::unique_vxArray(out[0]);
}

void callForDisplay(COSID method, const vxArray* objects) {
  const vxArray* in[1] = {objects};
  omCallMethod(names().customDisplay, method, COSGetPublicClient(), 0, nullptr, 1, in, /*dispatchOnObject=*/true);
}

std::string classNameText(const vxArray* objects) {
  COSClass* cls = vcos::array::classOf(objects);
  const std::string full = cls ? cls->getName() : vxGetClassName(objects);
  if (!utPrintfIsHot()) return full;
  const std::string shortName = full.substr(full.rfind('.') == std::string::npos ? 0 : full.rfind('.') + 1);
  return "<a href=\"vantel:helpPopup " + full + "\" style=\"font-weight:bold\">" + shortName + "</a>";
}

PropertyGroupBlock* groupBlock(const COSInterfacePtr& group) {
  return group ? static_cast<PropertyGroupBlock*>(group->getInstanceData(names().propertyGroup)) : nullptr;
}

// The names a group lists, in order.
std::vector<std::string> groupNames(const PropertyGroupBlock& g) {
  std::vector<std::string> out;
  const vxArray* list = g.propertyList.get();
  if (!list) return out;
  if (vxIsStruct(list)) {
    for (int f = 0, n = vxGetNumberOfFields(list); f < n; ++f) out.emplace_back(vxGetFieldNameByNumber(list, f));
  } else {
    for (vxSize i = 0, n = vxGetNumberOfElements(list); i < n; ++i) out.push_back(vxArrayToStdString(vxGetCell(list, i)));
  }
  return out;
}

std::string valueOf(const vxArray* objects, const PropertyGroupBlock& g, const std::string& name) {
  const vxArray* list = g.propertyList.get();
  if (vxIsStruct(list)) return valueText(vxGetField(list, 0, name.c_str()));
  try {
    matrix::unique_vxArray v(vxGetProperty(objects, 0, name.c_str()));
    return valueText(v.get());
  } catch (const foundation::core::except::IMsgIDException&) {
    return "<unavailable>";
  }
}

std::vector<COSInterfacePtr> groupsOf(const vxArray* groups) {
  if (!groups || vxIsEmpty(groups)) return {};
  if (!omIsVCOS(groups) || !vxIsA(groups, names().propertyGroup.c_str()))
    throw Error("VANTEL:vcos:display:BadPropertyGroup", vxGetClassName(groups));
  std::vector<COSInterfacePtr> out;
  for (vxSize i = 0, n = vxGetNumberOfElements(groups); i < n; ++i) out.push_back(omGetLiveArrayElement(groups, i));
  return out;
}

// ---- static helpers --------------------------------------------------------

// displayPropertyGroups(object, groups): each group's title, then one line
// per property, names right-aligned, "name: value".
void displayPropertyGroups(const COSClient*, int&, vxArray*[], int nrhs, const vxArray* prhs[]) {
  if (nrhs != 2) throw Error("VANTEL:vcos:BadArgumentCount", 2);
  const vxArray* objects = requireObjects(nrhs, prhs, "displayPropertyGroups");
  for (const COSInterfacePtr& group : groupsOf(prhs[1])) {
    const PropertyGroupBlock* g = groupBlock(group);
    if (!g) continue;
    if (g->title) print("   " + vxArrayToStdString(g->title.get()) + "\n");
    const std::vector<std::string> names = groupNames(*g);
    std::size_t width = 0;
    for (const std::string& n : names) width = std::max(width, n.size());
    for (const std::string& n : names)
      print(std::string(4 + width - n.size(), ' ') + n + ": " + valueOf(objects, *g, n) + "\n");
    print("\n");
  }
}

void getClassNameForHeader(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  plhs[0] = vxCreateString(classNameText(requireObjects(nrhs, prhs, "getClassNameForHeader")).c_str());
  nlhs = 1;
}

void convertDimensionsToString(const COSClient*, int& nlhs, vxArray* plhs[], int, const vxArray* prhs[]) {
  plhs[0] = vxCreateString(dimensionsText(prhs[0]).c_str());
  nlhs = 1;
}

// ---- overridable pieces ----------------------------------------------------

void getHeader(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  const vxArray* objects = requireObjects(nrhs, prhs, "getHeader");
  const std::string cls = classNameText(objects);
  std::string text;
  if (vxIsScalar(objects))
    text = "  " + cls + " with properties:\n\n";
  else if (vxIsEmpty(objects))
    text = "  " + dimensionsText(objects) + " empty " + cls + " array with properties:\n\n";
  else
    text = "  " + dimensionsText(objects) + " " + cls + " array with properties:\n\n";
  plhs[0] = vxCreateString(text.c_str());
  nlhs = 1;
}

void getFooter(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  requireObjects(nrhs, prhs, "getFooter");
  plhs[0] = vxCreateString("");
  nlhs = 1;
}

// One group with the public, visible properties of the class.
void getPropertyGroups(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  const vxArray* objects = requireObjects(nrhs, prhs, "getPropertyGroups");
  COSClass* cls = vcos::array::classOf(objects);
  std::vector<const char*> shown;
  for (std::size_t i = 0, n = cls ? cls->getPropertyCount() : 0; i < n; ++i) {
    const COSPropInfo* p = cls->getPropertyAt(i);
    if (p->getMemberGetAccess() == PublicAccess && p->isVisible()) shown.push_back(p->getName());
  }
  matrix::unique_vxArray list(vxCreateCellMatrix(shown.empty() ? 0 : 1, shown.size()));
  for (std::size_t i = 0; i < shown.size(); ++i) vxSetCell(list.get(), i, vxCreateString(shown[i]));
  const vxArray* in[1] = {list.get()};
  plhs[0] = omConstructObjectWithClient(names().propertyGroup, 1, in, COSGetPublicClient());
  nlhs = 1;
}

void displayScalarObject(const COSClient*, int&, vxArray*[], int nrhs, const vxArray* prhs[]) {
  const vxArray* objects = requireObjects(nrhs, prhs, "displayScalarObject");
  if (!vxIsScalar(objects)) throw Error("VANTEL:vcos:display:NotScalar", "displayScalarObject");
  print(callForText(names().getHeader, objects));
  matrix::unique_vxArray groups = callForArray(names().getPropertyGroups, objects);
  const vxArray* in[2] = {objects, groups.get()};
  static const COSID displayGroups("displayPropertyGroups");
  omCallMethod(names().customDisplay, displayGroups, COSGetPublicClient(), 0, nullptr, 2, in, false);
  print(callForText(names().getFooter, objects));
}

// Non-scalar and empty arrays list the property names only.
void displayNames(const vxArray* objects) {
  print(callForText(names().getHeader, objects));
  matrix::unique_vxArray groups = callForArray(names().getPropertyGroups, objects);
  for (const COSInterfacePtr& group : groupsOf(groups.get()))
    if (const PropertyGroupBlock* g = groupBlock(group))
      for (const std::string& n : groupNames(*g)) print("    " + n + "\n");
  print("\n");
  print(callForText(names().getFooter, objects));
}

void displayNonScalarObject(const COSClient*, int&, vxArray*[], int nrhs, const vxArray* prhs[]) {
  const vxArray* objects = requireObjects(nrhs, prhs, "displayNonScalarObject");
  if (vxIsScalar(objects) || vxIsEmpty(objects)) throw Error("VANTEL:vcos:display:NotNonScalar", "displayNonScalarObject");
  displayNames(objects);
}

void displayEmptyObject(const COSClient*, int&, vxArray*[], int nrhs, const vxArray* prhs[]) {
  const vxArray* objects = requireObjects(nrhs, prhs, "displayEmptyObject");
  if (!vxIsEmpty(objects)) throw Error("VANTEL:vcos:display:NotEmpty", "displayEmptyObject");
  displayNames(objects);
}

void disp(const COSClient*, int&, vxArray*[], int nrhs, const vxArray* prhs[]) {
  const vxArray* objects = requireObjects(nrhs, prhs, "disp");
  if (vxIsEmpty(objects)) {
    callForDisplay(names().displayEmptyObject, objects);
  } else if (!vxIsScalar(objects)) {
    callForDisplay(names().displayNonScalarObject, objects);
  } else if (!omGetLiveArrayElement(objects, 0)) {
    print("  handle to deleted " + classNameText(objects) + "\n\n");
  } else {
    callForDisplay(names().displayScalarObject, objects);
  }
}

constexpr Method::Row kCustomDisplayMethods[] = {
    {"displayPropertyGroups", &displayPropertyGroups, "Shows property groups of an object.", 2, 2, 0, true},
    {"getClassNameForHeader", &getClassNameForHeader, "The class name as a display header shows it.", 1, 1, 1, true},
    {"convertDimensionsToString", &convertDimensionsToString, "The dimensions of an array as text.", 1, 1, 1, true},
    {"getHeader", &getHeader, "The first lines of a display.", 1, 1, 1, false},
    {"getFooter", &getFooter, "The last lines of a display.", 1, 1, 1, false},
    {"getPropertyGroups", &getPropertyGroups, "The groups of properties a scalar display shows.", 1, 1, 1, false},
    {"displayScalarObject", &displayScalarObject, "Display of one object.", 1, 1, 0, false},
    {"displayNonScalarObject", &displayNonScalarObject, "Display of an array of objects.", 1, 1, 0, false},
    {"displayEmptyObject", &displayEmptyObject, "Display of an empty array of objects.", 1, 1, 0, false},
    {"disp", &disp, "Shows the objects in the form that fits the array.", 1, 1, 0, false},
    {"display", &disp, "Shows the objects in the form that fits the array.", 1, 1, 0, false},
};

}  // namespace

void addCustomDisplayMembers(COSClass* cls) { Method::addAll(cls, kCustomDisplayMethods); }

}  // namespace vcos::builtin
