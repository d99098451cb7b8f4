// Registration with the class-object system: namespaces, the graphics types,
// and the conversions between each type and "any" (what a user types and
// reads), and between "double" and "vantel.graphics.datatype.COSInterface"
// (numeric handles).
#include "sgdatatypes/Registration.h"

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "DataTypes.h"
#include "ObjectArrays.h"
#include "sgdatatypes/AlphaMap.h"
#include "sgdatatypes/AutoManual.h"
#include "sgdatatypes/BusyAction.h"
#include "sgdatatypes/ColorMap.h"
#include "sgdatatypes/ColorOrder.h"
#include "sgdatatypes/EraseMode.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgdatatypes/HandleOrEmpty.h"
#include "sgdatatypes/HandleVisibility.h"
#include "sgdatatypes/LayoutOrEmpty.h"
#include "sgdatatypes/OnOff.h"
#include "sgdatatypes/PickableParts.h"
#include "sgdatatypes/Point3.h"
#include "sgdatatypes/Position.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgdatatypes/Tile.h"
#include "sgdatatypes/TiledGridSize.h"
#include "sgdatatypes/TypeName.h"
#include "sgdatatypes/Units.h"
#include "sgdatatypes/VCallback.h"
#include "sgdatatypes/ZeroToOne.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSFunctionConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype {
namespace {

class CallbackNamespaceInfo final : public COSNamespaceInfo {
 public:
  CallbackNamespaceInfo(const char* name, DescriptionFn describe, DescriptionFn details)
      : name_(name), describe_(describe), details_(details) {}
  const char* getName() const override { return name_.c_str(); }
  const char* getDescription() const override { return describe_ ? describe_() : ""; }
  const char* getDetails() const override { return details_ ? details_() : ""; }

 private:
  std::string name_;
  DescriptionFn describe_;
  DescriptionFn details_;
};

// The conversions this library added, so that termination takes them out.
std::vector<std::pair<COSID, COSID>>& addedConversions() {
  static std::vector<std::pair<COSID, COSID>> added;
  return added;
}

// Conversions of this library's own types are tracked, so that termination
// takes them out; those registered for a library above are left to it.
enum class Track : bool { No, Yes };

template <class F>
COSTypeConversion* addConversion(const char* from, const char* to, F f, Track track = Track::Yes) {
  COSID a(from), b(to);
  COSTypeConversion* c = makeConversion(std::move(f));
  COSTypeRepository::addConversion(a, b, c);
  if (track == Track::Yes) addedConversions().emplace_back(a, b);
  return c;
}

const vxArray* arrayOf(COSValue v) { return v.asPointer<const vxArray>(); }

// What a user typed to a value class: a new value on the heap, or one built
// in the caller's room when it fits (a set by name lends it for the set).
template <class T>
class ValueFromArray final : public COSTypeConversion {
 public:
  COSValue convert(COSValue from) const override { return COSValue(new T(T::fromArray(arrayOf(from)))); }
  bool convertInPlace(COSValue from, void* room, COSValue& out, EndInPlace& end) const override {
    if constexpr (sizeof(T) <= kInPlaceBytes && alignof(T) <= alignof(std::max_align_t)) {
      out = COSValue(::new (room) T(T::fromArray(arrayOf(from))));
      end = [](void* r) noexcept { std::destroy_at(static_cast<T*>(r)); };
      return true;
    } else {
      return false;
    }
  }
};

template <class T>
void registerValueType(const char* name, bool holdsObjects = false) {
  register_datatype(new detail::ValueType<T>(COSID(name), holdsObjects));
  const COSID any("any"), type(name);
  COSTypeRepository::addConversion(any, type, new ValueFromArray<T>);
  addedConversions().emplace_back(any, type);
  addConversion(name, "any", [](COSValue v) { return COSValue(detail::ValueType<T>::valueOf(v).toArray()); });
}

// An array kept for the life of the process.
vxArray* keptArray(vxArray* array) {
  vxSetArrayScope(array, vxSCOPE_PERSISTENT);
  return array;
}

COSDataTypePtr registerEnumeration(const char* name, const EnumerationDescription& d, Track track) {
  COSDataTypePtr type = register_datatype(new detail::EnumerationType(COSID(name), d));
  const EnumerationDescription* desc = &d;
  addConversion(
      "any", name,
      [desc](COSValue v) { return COSValue(canonicalEnumerationByte(parseEnumeration(arrayOf(v), *desc))); }, track);
  // Each value's text is made once, as a kept array: a read (and every value
  // a save writes) gets a shared copy of it instead of a new text. The last
  // one is the empty text of a value outside the enumeration. The texts go
  // with the conversion (when the types are taken away at termination).
  auto texts = std::make_shared<std::vector<matrix::unique_vxArray>>();
  texts->reserve(std::size_t{d.count} + 1);
  for (unsigned i = 0; i <= d.count; ++i)
    texts->emplace_back(keptArray(enumerationToArray(static_cast<unsigned char>(i), d)));
  addConversion(
      name, "any",
      [texts](COSValue v) {
        const std::size_t b = v.isEmpty() ? 0 : *v.asPointer<const unsigned char>();
        return COSValue(vxCreateSharedDataCopy((*texts)[b < texts->size() ? b : texts->size() - 1].get()));
      },
      track);
  return type;
}

template <class E>
void registerEnumerationType(const char* name) {
  registerEnumeration(name, EnumerationTraits<E>::description, Track::Yes);
}

void registerTypes() {
  register_datatype(new detail::OnOffType);
  // A logical scalar is the whole of the first case of onOffFromArray, so a
  // set by name may take its word without the call.
  addConversion("any", kOnOffType, [](COSValue v) { return COSValue::fromBool(isOn(onOffFromArray(arrayOf(v)))); })
      ->setTakesLogicalScalarAsBool();
  addConversion(kOnOffType, "any", [](COSValue v) {
    // Reads ask for these two texts all the time: each read gets a shared
    // copy of a kept array instead of a new text.
    static vxArray* const texts[2] = {keptArray(enumerationToArray(toOnOff(false))),
                                      keptArray(enumerationToArray(toOnOff(true)))};
    return COSValue(vxCreateSharedDataCopy(texts[v.asBool() ? 1 : 0]));
  });

  registerEnumerationType<AutoManual>(kAutoManualType);
  registerEnumerationType<HandleVisibility>(kHandleVisibilityType);
  registerEnumerationType<PickableParts>(kPickablePartsType);
  registerEnumerationType<EraseMode>(kEraseModeType);
  registerEnumerationType<BusyAction>(kBusyActionType);
  registerEnumerationType<Units>(kUnitsType);

  registerValueType<RGBAColor>(kRGBAColorType);
  registerValueType<ColorOrder>(kColorOrderType);
  registerValueType<ColorMap>(kColorMapType);
  registerValueType<AlphaMap>(kAlphaMapType);
  registerValueType<ZeroToOne>(kZeroToOneType);
  registerValueType<Point3>(kPoint3Type);
  registerValueType<Position>(kPositionType);
  registerValueType<Tile>(kTileType);
  registerValueType<TiledGridSize>(kTiledGridSizeType);
  registerValueType<TypeName>(kTypeNameType);
  registerValueType<VCallback>(kCallbackType);
  registerValueType<HandleOrEmpty>(kHandleOrEmptyType, /*holdsObjects=*/true);
  registerValueType<LayoutOrEmpty>(kLayoutOrEmptyType, /*holdsObjects=*/true);

  // Numeric handles. A number converts to the object of the table, its shell
  // included when the object was deleted (so that the caller can tell a
  // deleted object from no object); an unknown number converts to null.
  register_datatype(new detail::COSInterfaceType);
  if (!COSTypeRepository::getType(COSID("double"))) register_datatype(new detail::DoubleWordType);
  addConversion("double", kCOSInterfaceType, [](COSValue v) {
    COSInterface* o = HandleNumberTable::entryFor(v.asDouble());
    if (o) o->addReference(COSStrongReference);
    return COSValue(o);
  });
  addConversion(kCOSInterfaceType, "double",
                [](COSValue v) { return COSValue::fromDouble(HandleNumberTable::numberFor(v.asPointer<COSInterface>())); });
  addConversion("any", kCOSInterfaceType, [](COSValue v) {
    COSInterfacePtr o;
    if (!detail::readSingleObject(arrayOf(v), o, "VANTEL:datatypes:InvalidHandleOrEmpty"))
      throw Error("VANTEL:datatypes:InvalidHandleOrEmpty", vxGetClassName(arrayOf(v)));
    if (o) o->addReference(COSStrongReference);
    return COSValue(o.get());
  });
  addConversion(kCOSInterfaceType, "any", [](COSValue v) {
    auto* o = v.asPointer<COSInterface>();
    return COSValue(o ? detail::objectScalar(o) : HandleOrEmpty().toArray());
  });
}

bool& initialized() {
  static bool flag = false;
  return flag;
}

const char* describeNamespace() { return "Graphics data types"; }
const char* namespaceDetails() { return "The value types of graphics object properties"; }

}  // namespace

COSPackage* register_namespace(const char* name, DescriptionFn describe, DescriptionFn details) {
  if (COSPackage* existing = COSPackage::getNamespace(name)) return existing;
  return COSPackage::addNamespace(new CallbackNamespaceInfo(name, describe, details));
}

COSDataTypePtr register_enumeration(const char* fullName, const EnumerationDescription& description) {
  return registerEnumeration(fullName, description, Track::No);
}

COSDataTypePtr register_datatype(COSDataType* type) {
  COSDataTypePtr fresh(type);  // drops the new type if it is not taken
  if (COSDataTypePtr existing = COSTypeRepository::getType(type->getID())) return existing;
  COSTypeRepository::addType(type);
  return fresh;
}

}  // namespace graphics::datatype

void VLInitialize_sgdatatypes() {
  using namespace graphics::datatype;
  if (initialized()) return;
  register_namespace("vantel.graphics.datatype", &describeNamespace, &namespaceDetails);
  registerTypes();
  initialized() = true;
}

void VLTerminate_sgdatatypes() {
  using namespace graphics::datatype;
  if (!initialized()) return;
  for (const auto& [from, to] : addedConversions()) COSTypeRepository::removeConversion(from, to);
  addedConversions().clear();
  HandleNumberTable::clear();
  initialized() = false;
}
