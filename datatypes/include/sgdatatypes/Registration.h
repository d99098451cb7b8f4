// Start-up and shut-down of the data types library, and the calls through
// which it and the libraries above it register namespaces and data types
// with the class-object system.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "vcos/COSDataTypePtr.h"

class COSDataType;
class COSPackage;

namespace graphics::datatype {

// Full names of the types this library registers.
inline constexpr const char kTypePrefix[] = "vantel.graphics.datatype.";
inline constexpr const char kOnOffType[] = "vantel.graphics.datatype.on_off";
inline constexpr const char kAutoManualType[] = "vantel.graphics.datatype.AutoManual";
inline constexpr const char kHandleVisibilityType[] = "vantel.graphics.datatype.HandleVisibility";
inline constexpr const char kPickablePartsType[] = "vantel.graphics.datatype.PickableParts";
inline constexpr const char kEraseModeType[] = "vantel.graphics.datatype.EraseMode";
inline constexpr const char kBusyActionType[] = "vantel.graphics.datatype.BusyAction";
inline constexpr const char kUnitsType[] = "vantel.graphics.datatype.Units";
inline constexpr const char kRGBAColorType[] = "vantel.graphics.datatype.RGBAColor";
inline constexpr const char kColorOrderType[] = "vantel.graphics.datatype.ColorOrder";
inline constexpr const char kColorMapType[] = "vantel.graphics.datatype.ColorMap";
inline constexpr const char kAlphaMapType[] = "vantel.graphics.datatype.AlphaMap";
inline constexpr const char kZeroToOneType[] = "vantel.graphics.datatype.ZeroToOne";
inline constexpr const char kPoint3Type[] = "vantel.graphics.datatype.Point3";
inline constexpr const char kPositionType[] = "vantel.graphics.datatype.Position";
inline constexpr const char kTileType[] = "vantel.graphics.datatype.Tile";
inline constexpr const char kTiledGridSizeType[] = "vantel.graphics.datatype.TiledGridSize";
inline constexpr const char kTypeNameType[] = "vantel.graphics.datatype.TypeName";
inline constexpr const char kCallbackType[] = "vantel.graphics.datatype.Callback";
inline constexpr const char kHandleOrEmptyType[] = "vantel.graphics.datatype.HandleOrEmpty";
inline constexpr const char kLayoutOrEmptyType[] = "vantel.graphics.datatype.LayoutOrEmpty";
inline constexpr const char kCOSInterfaceType[] = "vantel.graphics.datatype.COSInterface";

// Answers a namespace's description or details.
using DescriptionFn = const char* (*)();

// The package of that full name; made, with a namespace info that answers
// through the two callbacks, when it does not exist yet.
SGDATATYPES_API COSPackage* register_namespace(const char* name, DescriptionFn describe, DescriptionFn details);

// Adds the type (taken) to the type repository. When a type of that name is
// registered already, the new one is dropped and the registered one returned.
SGDATATYPES_API COSDataTypePtr register_datatype(COSDataType* type);

struct EnumerationDescription;

// Registers a one-byte enumeration type under `fullName` with its
// conversions from and to "any", for libraries above that define
// enumerations of their own. The description must live for the life of the
// process. Returns the type (the one already registered under that name, if
// any; its conversions are replaced).
SGDATATYPES_API COSDataTypePtr register_enumeration(const char* fullName, const EnumerationDescription& description);

}  // namespace graphics::datatype

extern "C" {
// Registers the namespace "vantel.graphics.datatype", the types and their
// conversions. Safe to call more than once.
SGDATATYPES_API void VLInitialize_sgdatatypes();
// Removes the conversions and empties the number table; the types stay
// registered (the repository keeps types for the life of the process).
SGDATATYPES_API void VLTerminate_sgdatatypes();
}
