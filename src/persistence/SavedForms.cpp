#include "src/persistence/SavedForms.h"

#include <exception>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "src/copy/ArrayValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSInterface.h"
#include "vcos/COSTypeRepository.h"

using foundation::core::except::Error;
using foundation::core::except::IMsgIDException;

namespace sgutils::persistence {

namespace {

// Frees what a customSave handed over, whatever happens to it.
struct HandedOver {
  COSValue value;
  COSDataTypePtr type;
  ~HandedOver() {
    if (type) type->destroy(value);
    else if (auto* array = value.asPointer<vxArray>()) matrix::destroyArray(array);
  }
};

bool isGraphicsClass(const COSClass* cls) {
  static const COSID graphics("vantel.graphics.Graphics");
  return cls->isSubclassOf(graphics);
}

}  // namespace

std::int64_t SavedForms::indexOf(const COSInterface* object) {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return -1;
  auto [found, added] = index_.try_emplace(object, -1);
  if (!added) return found->second;
  // Graphics objects are saved in their trees; their class info saves no form.
  COSClass* cls = object->getClass();
  COSClassInfo* info = cls->getClassInfo();
  if (!info || SGHandle::fromObject(object)) return -1;
  HandedOver handed;
  bool saves = false;
  try {
    saves = info->customSave(const_cast<COSInterface*>(object), handed.value, handed.type);
  } catch (const std::exception& e) {
    throw Error("VANTEL:sg:save:CustomSaveFailed", cls->getName(), e.what());
  }
  if (!saves) return -1;
  // A form that could not be read back is refused now, not when it is loaded.
  if (!info->isConstructedOnLoad() || cls->isAbstract())
    throw Error("VANTEL:sg:save:NotConstructedOnLoad", cls->getName());
  Form form{COSInterfacePtr(const_cast<COSInterface*>(object)), {}, {}};
  if (handed.type) {
    if (copy::hasArrayForm(handed.type)) form.value = copy::toArray(handed.type, handed.value);
    form.typeName = handed.type->getName();
  } else if (auto* array = handed.value.asPointer<vxArray>()) {
    form.value.reset(array);
    handed.value = COSValue();
  }
  if (!form.value) throw Error("VANTEL:sg:save:NoSavedForm", cls->getName());
  found->second = static_cast<std::int64_t>(first_ + forms_.size());
  forms_.push_back(std::move(form));
  return found->second;
}

void SavedForms::writeTo(vxDocumentWriter& writer) {
  // Writing a form may meet further objects that save forms: they join the
  // list behind it.
  for (std::size_t k = 0; k < forms_.size(); ++k) {
    const vxArray* value = forms_[k].value.get();
    const std::string typeName = forms_[k].typeName;
    writer.addSavedForm(forms_[k].object->getClass()->getName(), typeName, value);
    forms_[k].value.reset();
  }
}

COSInterfacePtr makeSavedFormObject(const std::string& className) {
  COSClass* cls = COSClass::getClass(COSID(className.c_str()));
  const COSClassInfo* info = cls ? cls->getClassInfo() : nullptr;
  if (!info || !info->isConstructedOnLoad() || cls->isAbstract() || isGraphicsClass(cls))
    throw Error("VANTEL:sg:load:NotConstructedOnLoad", className);
  COSInterfacePtr object = cls->createInstance(COSGetPublicClient(), 0, nullptr);
  if (!object || object->isDestroyed()) throw Error("VANTEL:sg:load:NotConstructedOnLoad", className);
  return object;
}

void loadSavedForm(const COSInterfacePtr& object, const vxSavedForm& form) {
  COSClass* cls = object->getClass();
  COSClassInfo* info = cls->getClassInfo();
  if (!info) return;
  copy::OwnedValue converted;
  COSDataTypePtr type;
  COSValue value(form.value.get());
  if (!form.typeName.empty()) {
    type = COSTypeRepository::getType(COSID(form.typeName.c_str()));
    if (!type) throw Error("VANTEL:sg:load:UnknownType", form.typeName);
    if (!copy::hasArrayForm(type)) throw Error("VANTEL:sg:load:BadSavedForm", cls->getName(), form.typeName);
    try {
      converted = copy::OwnedValue(type, copy::fromArray(type, form.value.get()));
    } catch (const IMsgIDException&) {
      throw Error("VANTEL:sg:load:BadSavedForm", cls->getName(), form.typeName);
    }
    value = converted.get();
  }
  // The object stays the one the file's references were made to, whatever
  // customLoad does with its handle.
  COSInterfacePtr target = object;
  try {
    info->customLoad(target, value, type);
  } catch (const std::exception& e) {
    throw Error("VANTEL:sg:load:CustomLoadFailed", cls->getName(), e.what());
  }
}

}  // namespace sgutils::persistence
