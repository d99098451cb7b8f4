#include "src/persistence/SavedDynamicProperties.h"

#include <string>
#include <string_view>

#include "foundation/core/except/Error.h"
#include "foundation/log/Logger.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/GraphicsLoader.h"
#include "src/persistence/LoadedValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSInterface.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/DynamicProperties.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace sgutils::persistence {

namespace {

const char* kFields[] = {"Name", "Type", "Value", "Visible"};
constexpr int kName = 0, kType = 1, kValue = 2, kVisible = 3;

bool isStored(const COSPropInfo* property) {
  return !property->isTransient() && std::string_view(property->getName()) != GraphicsFile::kDefaultsField &&
         copy::hasArrayForm(property->getDataType());
}

// The text of a 1-by-n char field, non-empty; raises otherwise.
std::string textField(const vxArray* saved, std::size_t i, int field, const COSInterfacePtr& object) {
  const vxArray* text = vxGetFieldByNumber(saved, i, field);
  if (!text || !vxIsChar(text) || vxGetM(text) != 1 || vxGetNumberOfDimensions(text) != 2)
    throw Error("VANTEL:sg:load:BadDynamicProperties", object->getClass()->getName());
  std::string out = vxArrayToStdString(text);
  if (out.empty()) throw Error("VANTEL:sg:load:BadDynamicProperties", object->getClass()->getName());
  return out;
}

}  // namespace

matrix::unique_vxArray savedDynamicProperties(COSInterface* object) {
  const std::span<const COSInterfacePtr> all = vcos::dynamicProperties(object);
  std::size_t n = 0;
  for (const COSInterfacePtr& p : all) n += isStored(static_cast<const COSPropInfo*>(p.get())) ? 1 : 0;
  if (n == 0) return nullptr;
  matrix::unique_vxArray out(vxCreateStructMatrix(1, n, 4, kFields));
  std::size_t i = 0;
  for (const COSInterfacePtr& p : all) {
    const auto* property = static_cast<const COSPropInfo*>(p.get());
    if (!isStored(property)) continue;
    const COSDataTypePtr type = property->getDataType();
    const COSValue read = property->getValue(object);
    matrix::unique_vxArray value;
    try {
      value = copy::toArray(type, read);
    } catch (...) {
      property->releaseValue(object, read);
      throw;
    }
    property->releaseValue(object, read);
    vxSetFieldByNumber(out.get(), i, kName, vxCreateString(property->getName()));
    vxSetFieldByNumber(out.get(), i, kType, vxCreateString(type->getID().c_str()));
    vxSetFieldByNumber(out.get(), i, kValue, value.release());
    vxSetFieldByNumber(out.get(), i, kVisible, vxCreateLogicalScalar(property->isVisible()));
    ++i;
  }
  return out;
}

void restoreDynamicProperties(const COSInterfacePtr& object, const vxArray* saved) {
  COSClass* cls = object->getClass();
  if (!saved || !vxIsStruct(saved) || vxGetNumberOfFields(saved) != 4)
    throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());
  for (int f = 0; f < 4; ++f)
    if (vxGetFieldNumber(saved, kFields[f]) != f) throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());
  const std::size_t n = vxGetNumberOfElements(saved);
  for (std::size_t i = 0; i < n; ++i) {
    const std::string name = textField(saved, i, kName, object);
    const std::string typeName = textField(saved, i, kType, object);
    const vxArray* visible = vxGetFieldByNumber(saved, i, kVisible);
    if (!visible || !vxIsLogical(visible) || vxGetNumberOfElements(visible) != 1)
      throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());
    const vxArray* value = vxGetFieldByNumber(saved, i, kValue);
    const COSID id(name.c_str());
    // The class's own property of that name (one it gained since) wins.
    if (cls->findPropertyExact(id)) continue;
    COSInterfacePtr found;
    object->findDynamicProperty(found, id);
    auto* property = static_cast<COSPropInfo*>(found.get());
    if (!property || std::string_view(property->getName()) != name) {
      if (property) throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());  // differs by case only
      const COSDataTypePtr type = COSTypeRepository::getType(COSID(typeName.c_str()));
      if (!type || !copy::hasArrayForm(type)) throw Error("VANTEL:sg:load:UnknownPropertyType", name, typeName);
      COSInterfacePtr made(COSGenericProp::createNewDynamicProp(COSString(name), cls->getID(), type->getID()));
      auto* generic = static_cast<COSGenericProp*>(made.get());
      generic->setTransient(false);
      generic->setVisible(*vxGetLogicals(visible));
      object->addDynamicProperty(generic);
      property = generic;
    }
    if (!value) continue;
    setLoadedValue(object, property, value, name);
  }
}

}  // namespace sgutils::persistence
