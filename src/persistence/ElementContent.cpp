#include "src/persistence/ElementContent.h"

#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectSerialization.h"
#include "vx/vx.h"

namespace sgutils::persistence {

bool restoresElements(const COSClass* cls) {
  static const COSID mixin(object_serialization::CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME);
  // A load meets runs of objects of one class: the last answer is kept
  // (classes live as long as the process).
  thread_local const COSClass* lastClass = nullptr;
  thread_local bool lastAnswer = false;
  if (cls != lastClass) {
    lastClass = cls;
    lastAnswer = cls && cls->isSubclassOf(mixin);
  }
  return lastAnswer;
}

matrix::unique_vxArray elementsOf(const std::vector<vxNamedValue>& fields) {
  matrix::unique_vxArray out(vxCreateStructMatrix(1, 1, 0, nullptr));
  for (const vxNamedValue& field : fields) {
    if (field.name == GraphicsFile::kChildrenField || field.name == GraphicsFile::kDefaultsField ||
        field.name == GraphicsFile::kDynamicPropertiesField)
      continue;
    const int number = vxAddField(out.get(), field.name.c_str());
    if (number < 0) continue;
    vxSetFieldByNumber(out.get(), 0, number, field.value ? vxCreateSharedDataCopy(field.value.get()) : nullptr);
  }
  return out;
}

}  // namespace sgutils::persistence
