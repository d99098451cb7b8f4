#include "src/persistence/SavedDynamicProperties.h"

#include <string>
#include <string_view>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/log/Logger.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/GraphicsLoader.h"
#include "src/persistence/LoadedValue.h"
#include "src/persistence/SavedPropertyAttributes.h"
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

// The fifth field is written only when a property's attributes differ from
// a newly added one's, so that other lists read as before.
const char* kFields[] = {"Name", "Type", "Value", "Visible", "Attributes"};
constexpr int kName = 0, kType = 1, kValue = 2, kVisible = 3, kAttributes = 4;

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
  std::vector<const COSPropInfo*> stored;
  for (const COSInterfacePtr& p : all)
    if (const auto* property = static_cast<const COSPropInfo*>(p.get()); isStored(property)) stored.push_back(property);
  if (stored.empty()) return nullptr;
  std::vector<matrix::unique_vxArray> attributes;
  bool anyAttributes = false;
  for (const COSPropInfo* property : stored) {
    attributes.push_back(SavedPropertyAttributes::write(property));
    anyAttributes = anyAttributes || attributes.back();
  }
  matrix::unique_vxArray out(vxCreateStructMatrix(1, stored.size(), anyAttributes ? 5 : 4, kFields));
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const COSPropInfo* property = stored[i];
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
    if (attributes[i]) vxSetFieldByNumber(out.get(), i, kAttributes, attributes[i].release());
  }
  return out;
}

void restoreDynamicProperties(const COSInterfacePtr& object, const vxArray* saved) {
  COSClass* cls = object->getClass();
  const int fields = saved && vxIsStruct(saved) ? vxGetNumberOfFields(saved) : 0;
  if (fields != 4 && fields != 5) throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());
  for (int f = 0; f < fields; ++f)
    if (vxGetFieldNumber(saved, kFields[f]) != f) throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());
  const std::size_t n = vxGetNumberOfElements(saved);
  for (std::size_t i = 0; i < n; ++i) {
    const std::string name = textField(saved, i, kName, object);
    const std::string typeName = textField(saved, i, kType, object);
    const vxArray* visible = vxGetFieldByNumber(saved, i, kVisible);
    if (!visible || !vxIsLogical(visible) || vxGetNumberOfElements(visible) != 1)
      throw Error("VANTEL:sg:load:BadDynamicProperties", cls->getName());
    const vxArray* value = vxGetFieldByNumber(saved, i, kValue);
    const SavedPropertyAttributes attributes = SavedPropertyAttributes::read(
        fields == 5 ? vxGetFieldByNumber(saved, i, kAttributes) : nullptr, name, cls->getName());
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
    // The value first, past access checks; then the attributes, which may
    // make the property read-only.
    if (value) setLoadedValue(object, property, value, name);
    attributes.applyTo(property, name);
  }
}

}  // namespace sgutils::persistence
