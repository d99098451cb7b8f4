// The class methods of an axes: its copy (the default copy, the stored
// limits and their modes, then the values of the source's title and labels
// onto those that the new axes made for itself) and its theme map.
#include <string>
#include <utility>

#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableMethod.h"

#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/themes/ThemeMappingTable.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {
namespace {

class AxesCopyElementMI final : public sgutils::CopyableSubclassCopyElementMI {
 public:
  using CopyableSubclassCopyElementMI::CopyableSubclassCopyElementMI;
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    invokeDefaultImpl(client, nlhs, plhs, nrhs, prhs);
    const COSInterfacePtr source = omGetLiveArrayElement(prhs[0].asPointer<const vxArray>(), 0);
    const COSInterfacePtr copy = omGetLiveArrayElement(plhs[0].asPointer<const vxArray>(), 0);
    if (!source || !copy) return;
    Axes* from = sgutils::blockOf<Axes>(source.get(), Axes::classID());
    Axes* to = sgutils::blockOf<Axes>(copy.get(), Axes::classID());
    Axes::copyLimits(*from, *to, copy);
    // A label is made in the copy only where the source has one.
    std::pair<COSInterfacePtr, COSInterfacePtr> texts[] = {{from->title(), to->title()}, {}, {}};
    for (int axis = 0; axis < 2; ++axis)
      if (COSInterfacePtr sourceLabel = from->label(source.get(), axis, false))
        texts[axis + 1] = {sourceLabel, to->label(copy.get(), axis, true)};
    for (const auto& [sourceText, copyText] : texts)
      if (sourceText && copyText && !sourceText->isDestroyed() && !copyText->isDestroyed())
        sgutils::Copyable::copyValueProperties(sourceText, copyText, client);
  }
};

// Writes one property of the copy as the default copyElement writes a value.
void writeCopied(const COSInterfacePtr& copy, const COSID& name, const vxArray* value) {
  if (const COSPropInfo* property = copy->findPropertyInfo(name))
    vcos::omCopyPropertyWithNoPermissionCheck(copy, property, COSValue(value));
}

// The class's theme map: its row of the built-in table, and the colour order
// following the theme's discrete colour list.
void themeMapMethod(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) {
  vxArray* map = vxCreateStructMatrix(1, 1, 0, nullptr);
  auto put = [map](const std::string& property, const std::string& attribute) {
    const int field = vxAddField(map, property.c_str());
    vxSetFieldByNumber(map, 0, field, vxCreateString(attribute.c_str()));
  };
  if (const sgutils::themes::ThemeMap* row = sgutils::themes::findBuiltinThemeMap(Axes::getClassInstance()->getName()))
    for (const auto& [property, attribute] : *row) put(property, attribute);
  put("ColorOrder", "DiscreteColorList");
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(map);
}

}  // namespace

void Axes::copyLimits(const Axes& source, Axes& copy, const COSInterfacePtr& self) {
  static const COSID limitNames[3] = {COSID("XLim"), COSID("YLim"), COSID("ZLim")};
  static const COSID modeNames[3] = {COSID("XLimMode"), COSID("YLimMode"), COSID("ZLimMode")};
  using graphics::datatype::AutoManual;
  // The limits first: writing one makes its mode manual, which the mode's
  // own write then puts right.
  for (int d = 0; d < 3; ++d) {
    const auto& lim = source.limits_[d];
    if (source.limitModes_[d] != AutoManual::Manual) continue;
    if (copy.limitModes_[d] == AutoManual::Manual && copy.limits_[d] == lim) continue;
    matrix::unique_vxArray row(vxCreateDoubleMatrix(1, 2, vxREAL));
    vxGetPr(row.get())[0] = lim[0];
    vxGetPr(row.get())[1] = lim[1];
    writeCopied(self, limitNames[d], row.get());
  }
  for (int d = 0; d < 3; ++d) {
    if (copy.limitModes_[d] == source.limitModes_[d]) continue;
    const matrix::unique_vxArray mode(
        vxCreateString(source.limitModes_[d] == AutoManual::Manual ? "manual" : "auto"));
    writeCopied(self, modeNames[d], mode.get());
  }
}

void Axes::addMethods(COSClass* cls, COSID classId) {
  cls->addMethod(new AxesCopyElementMI(classId));
  sgutils::addMixinMethod(cls, classId, "getThemeMap", &themeMapMethod, {}, {"map"}, /*isStatic=*/true);
  addChildrenMethod(cls, classId);
}

}  // namespace sgclasses
