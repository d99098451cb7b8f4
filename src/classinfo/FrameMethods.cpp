// The members of graphics classes that belong to the frame: the reset method
// and its event, the default element of heterogeneous arrays, and the
// BeingDeleted property.
#include "sgutils/classinfo/BeingDeletedPI.h"
#include "sgutils/classinfo/GetGraphicsPlaceholderMI.h"
#include "sgutils/classinfo/ResetEI.h"
#include "sgutils/classinfo/ResetMI.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vx/vxQuery.h"

// ---- reset

ResetMI::ResetMI(COSID classId)
    : COSMethodBase(classId, COSID("reset"), PublicAccess,
                    "Reset method override for the vantel.graphics.internal.ReferenceObject subclasses.") {}

void ResetMI::invoke(const COSClient*, int& /*nlhs*/, COSValue*, int nrhs, const COSValue* prhs) const {
  if (nrhs < 1) return;
  const vxArray* objects = prhs[0].asPointer<const vxArray>();
  if (!objects || !omIsVCOS(objects)) return;
  const std::size_t n = vxGetNumberOfElements(objects);
  for (std::size_t i = 0; i < n; ++i) {
    COSInterfacePtr element = omGetArrayElement(objects, i);
    if (!element || element->isBeingDestroyed()) continue;
    SGHandle::Reset(element);
  }
}

const char* ResetEI::getName() const { return "Reset"; }
const char* ResetEI::getDescription() const { return "notifies when an sg object is reset"; }
COSID ResetEI::getDataClassID() const {
  static const COSID id("ResetGraphicsEvent");
  return id;
}
COSID ResetEI::eventId() {
  static const COSID id("Reset");
  return id;
}

// ---- getDefaultScalarElement

GetGraphicsPlaceholderMI::GetGraphicsPlaceholderMI(COSID classId)
    : COSMethodBase(classId, COSID("getDefaultScalarElement"), PublicAccess, "Return default common object (concrete)",
                    COSMethodSignature::createMethodSignature(COSID("getDefaultScalarElement"), {},
                                                              {{COSID("obj"), COSDataTypePtr(), false}},
                                                              COSMethodSignature::Static)) {}

void GetGraphicsPlaceholderMI::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int, const COSValue*) const {
  static const COSID placeholder("vantel.graphics.GraphicsPlaceholder");
  COSClass* cls = COSClass::getClass(placeholder);
  if (!cls) return;
  COSInterfacePtr element = cls->createInstance(client);
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(omCreateVCOSScalar(element));
}

// ---- BeingDeleted

BeingDeletedPI::BeingDeletedPI(COSID classId, COSDataTypePtr type, unsigned flags)
    : COSPropT(classId, COSID("BeingDeleted"), std::move(type), COSValue(), PublicAccess, PublicAccess, flags,
               "Whether the object is being deleted") {}

COSValue BeingDeletedPI::getValue(COSInterface* object) const {
  return COSValue::fromBool(SGHandle::isBeingDeleted(object));
}

void BeingDeletedPI::setValue(COSInterface*, COSValue) {}
