// The class methods of an axes: its copy (the default copy, then the values
// of the source's title and labels onto those that the new axes made for
// itself) and its theme map.
#include <string>
#include <utility>

#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableMethod.h"

#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/themes/ThemeMappingTable.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
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

void Axes::addMethods(COSClass* cls, COSID classId) {
  cls->addMethod(new AxesCopyElementMI(classId));
  sgutils::addMixinMethod(cls, classId, "getThemeMap", &themeMapMethod, {}, {"map"}, /*isStatic=*/true);
  addChildrenMethod(cls, classId);
}

}  // namespace sgclasses
