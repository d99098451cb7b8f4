// "vantel.mixin.util.PropertyGroup": a titled list of properties that a
// custom display shows together.
#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSPropCPPT.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/builtin/ClassMembers.h"
#include "vcos/src/builtin/CustomDisplayBlock.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

using foundation::core::except::Error;

namespace vcos::builtin {

namespace {

bool isTextRow(const vxArray* a) { return a && vxIsChar(a) && (vxGetM(a) == 1 || vxIsEmpty(a)); }

matrix::unique_vxArray keep(const vxArray* a) {
  matrix::unique_vxArray copy(vxCreateSharedDataCopy(a));
  vxSetArrayScope(copy.get(), vxSCOPE_PERSISTENT);
  return copy;
}

}  // namespace

vxArray* PropertyGroupBlock::titleArray() const {
  return title ? vxCreateSharedDataCopy(title.get()) : vxCreateString("");
}

void PropertyGroupBlock::setTitle(vxArray* value) {
  if (value && !vxIsEmpty(value) && !isTextRow(value)) throw Error("VANTEL:vcos:PropertyGroup:BadTitle");
  title = value && !vxIsEmpty(value) ? keep(value) : nullptr;
}

vxArray* PropertyGroupBlock::propertyListArray() const {
  return propertyList ? vxCreateSharedDataCopy(propertyList.get()) : vxCreateCellMatrix(0, 0);
}

void PropertyGroupBlock::setPropertyList(vxArray* value) {
  if (!value || vxIsEmpty(value)) {
    propertyList.reset();
    return;
  }
  if (vxIsCell(value)) {
    for (vxSize i = 0, n = vxGetNumberOfElements(value); i < n; ++i)
      if (!isTextRow(vxGetCell(value, i)) || vxIsEmpty(vxGetCell(value, i)))
        throw Error("VANTEL:vcos:PropertyGroup:BadPropertyList");
  } else if (!(vxIsStruct(value) && vxIsScalar(value))) {
    throw Error("VANTEL:vcos:PropertyGroup:BadPropertyList");
  }
  propertyList = keep(value);
}

std::size_t PropertyGroupBlock::numProperties() const {
  if (!propertyList) return 0;
  if (vxIsStruct(propertyList.get())) return static_cast<std::size_t>(vxGetNumberOfFields(propertyList.get()));
  return vxGetNumberOfElements(propertyList.get());
}

vxArray* PropertyGroupBlock::numPropertiesArray() const {
  return vxCreateDoubleScalar(static_cast<double>(numProperties()));
}

namespace {

// The constructor: PropertyGroup(), PropertyGroup(list) or
// PropertyGroup(list, title). As for every constructor, the new object is
// element 0 of the array in plhs[0].
void constructPropertyGroup(const COSClient*, int&, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  COSInterfacePtr self = omGetArrayElement(plhs[0], 0);
  auto* block = static_cast<PropertyGroupBlock*>(self->getInstanceData(names().propertyGroup));
  assert(block && "a property group without its block");
  if (nrhs > 0) block->setPropertyList(const_cast<vxArray*>(prhs[0]));
  if (nrhs > 1) block->setTitle(const_cast<vxArray*>(prhs[1]));
}

constexpr Method::Row kPropertyGroupMethods[] = {
    {"PropertyGroup", &constructPropertyGroup, "A group of properties with a title.", 0, 2, 1, false},
};

template <class T>
void addProperty(COSClass* cls, const char* name, T (PropertyGroupBlock::*getter)() const,
                 void (PropertyGroupBlock::*setter)(T)) {
  cls->addProperty(new COSPropCPPT<PropertyGroupBlock, T>(cls->getID(), COSID(name), COSDataTypePtr("any"), getter,
                                                          setter, PublicAccess, setter ? PublicAccess : NoAccess));
}

}  // namespace

void addPropertyGroupMembers(COSClass* cls) {
  addProperty<vxArray*>(cls, "Title", &PropertyGroupBlock::titleArray, &PropertyGroupBlock::setTitle);
  addProperty<vxArray*>(cls, "PropertyList", &PropertyGroupBlock::propertyListArray,
                        &PropertyGroupBlock::setPropertyList);
  addProperty<vxArray*>(cls, "NumProperties", &PropertyGroupBlock::numPropertiesArray, nullptr);
  Method::addAll(cls, kPropertyGroupMethods);
}

}  // namespace vcos::builtin
