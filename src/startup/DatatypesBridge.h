// Not installed; internal to sgutils.
// The few calls that the frame makes into the data types library, in one
// place, so that the frame's sources name only what they need.
#pragma once

#include "vcos/COSInterfacePtr.h"

class COSDataType;
class COSPackage;

namespace sgutils::bridge {

using DescriptionFn = const char* (*)();

COSPackage* registerNamespace(const char* name, DescriptionFn describe, DescriptionFn details);
void registerDatatype(COSDataType* type);
void initializeDatatypes();
void terminateDatatypes();
// The class listener that runs "CreateFcn" of a new object.
COSInterfacePtr createCreateFcnListener();
// The class listener that runs "ButtonDownFcn" when a hit is reported; it
// honours Interruptible and BusyAction.
COSInterfacePtr createButtonDownFcnListener();
// Forgets the numeric handle of an object being deleted.
void destroyHandleNumber(double number) noexcept;
void destroyHandleNumberOf(COSInterface* object) noexcept;

}  // namespace sgutils::bridge
