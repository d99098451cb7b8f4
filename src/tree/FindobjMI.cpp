// The method "findobj" of graphics objects.
#include "sgutils/tree/FindobjMI.h"

#include <cctype>
#include <string>
#include <vector>

#include "vcos/COSDataType.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgutils {

namespace {

const COSID& placeholderId() {
  static const COSID id("vantel.graphics.GraphicsPlaceholder");
  return id;
}

vxArray* emptyResult() { return omCreateVCOSMatrix(0, 0, placeholderId()); }

// Whether the value is the text "flat" (any case): a char row or string
// scalar, or a cell whose first element is one.
bool isFlat(const vxArray* value) {
  if (!value || vxIsEmpty(value)) return false;
  if (vxIsCell(value)) value = vxGetCell(value, 0);
  if (!value || !(vxIsChar(value) || vxIsString(value))) return false;
  std::string text;
  try {
    text = vxArrayToStdString(value);
  } catch (...) {
    return false;  // not a single line of text
  }
  if (text.size() != 4) return false;
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text == "flat";
}

}  // namespace

FindobjMI::FindobjMI(COSID classId)
    : COSMethodBase(classId, COSID("findobj"), PublicAccess, "The findobj method for SGHandle subclasses.",
                    COSMethodSignature::createMethodSignature(
                        COSID("findobj"), {{COSID("object"), COSDataTypePtr(), false}, {COSID("varargin"), COSDataTypePtr(), true}},
                        {{COSID("handle"), COSDataTypePtr(), false}}, COSMethodSignature::VarArgIn)) {}

void FindobjMI::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  static const COSID handle("handle"), findobj("findobj");
  auto input = [&](int k) { return prhs[k].asPointer<const vxArray>(); };
  if (nrhs < 1 || !input(0) || vxIsEmpty(input(0))) {
    plhs[0] = COSValue(emptyResult());
    nlhs = 1;
    return;
  }
  std::vector<const vxArray*> args;
  args.reserve(static_cast<std::size_t>(nrhs) + 1);
  for (int k = 0; k < nrhs; ++k) args.push_back(input(k));
  matrix::unique_vxArray depthWord, zero;
  if (nrhs >= 2 && isFlat(input(1))) {
    // 'flat': the objects themselves, no descendants.
    depthWord.reset(vxCreateString("-depth"));
    zero.reset(vxCreateDoubleScalar(0));
    args.erase(args.begin() + 1);
    args.insert(args.begin() + 1, {depthWord.get(), zero.get()});
  }
  vxArray* out[1] = {nullptr};
  const int wanted = nlhs > 1 ? nlhs : 1;
  if (!omCallMethod(handle, findobj, client, wanted, out, static_cast<int>(args.size()), args.data(), false) ||
      !out[0]) {
    plhs[0] = COSValue(emptyResult());
    nlhs = 1;
    return;
  }
  if (vxIsEmpty(out[0])) {
    matrix::destroyArray(out[0]);
    out[0] = emptyResult();
  }
  plhs[0] = COSValue(out[0]);
  nlhs = 1;
}

}  // namespace sgutils
