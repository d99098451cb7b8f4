// The handle-holding value types, HandleOrEmpty and LayoutOrEmpty, and the
// object-array helpers they share.
#include "ArrayValues.h"
#include "ObjectArrays.h"
#include "foundation/core/except/Error.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgdatatypes/HandleOrEmpty.h"
#include "sgdatatypes/LayoutOrEmpty.h"
#include "vcos/COSClass.h"
#include "vx/vxCreate.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype {
namespace detail {

vxArray* objectScalar(COSInterface* object) {
  COSClass* cls = object->getClass();
  vxArray* a = vxCreateObjectMatrix(1, 1, cls ? cls->getID().entry() : nullptr);
  vxGetObjectElements(a)[0] = object;
  return a;
}

bool readSingleObject(const vxArray* value, COSInterfacePtr& out, const char* errorId) {
  out.reset();
  if (!value || vxIsEmpty(value)) return true;
  if (vxIsObject(value)) {
    if (vxGetNumberOfElements(value) != 1) throw Error(errorId, describe(value));
    out = vxGetObjectElements(value)[0];
    return true;
  }
  if (isRealNumeric(value) && vxIsScalar(value)) {
    COSInterface* o = HandleNumberTable::entryFor(numberAt(value, 0));
    if (!o) throw Error(errorId, describe(value));
    out = o;
    return true;
  }
  return false;
}

}  // namespace detail

HandleOrEmpty HandleOrEmpty::fromArray(const vxArray* value) {
  COSInterfacePtr o;
  if (!detail::readSingleObject(value, o, "VANTEL:datatypes:InvalidHandleOrEmpty"))
    throw Error("VANTEL:datatypes:InvalidHandleOrEmpty", detail::describe(value));
  return HandleOrEmpty(std::move(o));
}

vxArray* HandleOrEmpty::toArray() const {
  return object_ ? detail::objectScalar(object_.get()) : vxCreateDoubleMatrix(0, 0, vxREAL);
}

LayoutOrEmpty::LayoutOrEmpty(COSInterfacePtr options) : options_(std::move(options)) {
  options_.setReferenceType(COSStrongReference);
  static const COSID layoutOptions("vantel.ui.layout.LayoutOptions");
  if (!options_) return;
  COSClass* cls = options_->getClass();
  if (!cls || !cls->isSubclassOf(layoutOptions))
    throw Error("VANTEL:datatypes:InvalidLayout", cls ? cls->getName() : "object");
}

LayoutOrEmpty LayoutOrEmpty::fromArray(const vxArray* value) {
  COSInterfacePtr o;
  if (!detail::readSingleObject(value, o, "VANTEL:datatypes:InvalidLayout"))
    throw Error("VANTEL:datatypes:InvalidLayout", detail::describe(value));
  return LayoutOrEmpty(std::move(o));
}

vxArray* LayoutOrEmpty::toArray() const {
  return options_ ? detail::objectScalar(options_.get()) : vxCreateDoubleMatrix(0, 0, vxREAL);
}

}  // namespace graphics::datatype
