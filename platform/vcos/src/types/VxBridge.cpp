// The class-object system's side of the array runtime: the class knowledge
// that object arrays need (name, is-a, heterogeneous), and get and set of a
// property of an array element by name through the public client path, with
// the value converted between the property's type and an array.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "vcos/BorrowedPropertyValue.h"
#include "vcos/ConvertedValue.h"
#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/FaultInjection.h"
#include "vcos/PropertyRouteEpoch.h"
#include "vx/src/SpareHeaderScope.h"
#include "vx/vxCreate.h"
#include "vx/vxObjectStorage.h"
#include "vcos/VxProperty.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace vcos::internal {
namespace {

COSClass* classOf(const void* classId) {
  return COSClass::getClass(COSID(static_cast<const InternedEntry*>(classId)));
}

}  // namespace

void installArrayHooks() {
  vxObjectHooks hooks;
  hooks.className = [](const void* classId) -> const char* {
    return classId ? static_cast<const InternedEntry*>(classId)->text.c_str() : "object";
  };
  hooks.isA = [](const void* classId, const char* name) {
    COSClass* cls = classOf(classId);
    return cls && cls->isSubclassOf(COSID(name));
  };
  hooks.isHeterogeneous = [](const void* classId) {
    static const COSID root("vantel.mixin.Heterogeneous");
    COSClass* cls = classOf(classId);
    return cls && cls->isSubclassOf(root);
  };
  vxSetObjectHooks(hooks);
}

}  // namespace vcos::internal

namespace {

COSInterface* elementAt(const vxArray* array, vxIndex index) {
  const COSInterfacePtr* element = vxGetObjectElementAt(array, index);
  COSInterface* o = element ? element->get() : nullptr;
  if (!o) throw Error(vcos::msg::InvalidHandle);
  o->checkValid();
  return o;
}

COSPropInfo* propertyOf(COSInterface* o, const char* name) {
  COSPropInfo* p = o->findPropertyInfo(COSID(name));
  if (!p) throw Error(vcos::msg::UnknownProperty, name, o->getClass() ? o->getClass()->getName() : "");
  return p;
}

COSTypeConversion* conversionFor(const COSDataType& type, bool toArray) {
  COSTypeConversion* c = COSTypeRepository::getArrayConversion(type, toArray);
  if (!c) {
    const std::string& id = type.getID().str();
    throw Error(vcos::msg::ConversionFailed, toArray ? id : "any", toArray ? "any" : id);
  }
  return c;
}

// What gets and sets by name need to know of one property of one class,
// worked out on the first use of the (class, interned name) pair and kept
// while the property route epoch stays. Only a property of the class found
// by its exact name is kept: that answer depends on the class alone (a
// dynamic property of the object comes after the class's own).
struct NamedProperty {
  const COSClass* cls = nullptr;
  const char* text = nullptr;  // the caller's name as given, compared again on a hit
  const vcos::internal::InternedEntry* name = nullptr;
  std::uint64_t epoch = 0;
  COSPropInfo* property = nullptr;
  const COSDataType* type = nullptr;  // kept alive by the property
  bool arrayType = false;
  // A public client reaches getValue, or setValue, directly: public access,
  // no custom path and no class listener on the property.
  bool plainGet = false;
  bool plainSet = false;
  COSTypeConversion* toArray = nullptr;  // null when the type has none
  COSTypeConversion* fromArray = nullptr;
  // fromArray takes a logical scalar as COSValue::fromBool of it (an on/off).
  bool logicalAsBool = false;
};

// The kept answers of this thread, made on its first get or set by name and
// freed at its end (after which nothing is kept). Reached through plain data
// of a fixed model, so that a get or set by name makes no call to find its
// thread's table.
using NamedProperties = std::array<NamedProperty, 64>;
struct KeptNamed {
  NamedProperties* table;
  bool ended;
};
[[gnu::tls_model("initial-exec")]] thread_local KeptNamed keptNamed{};

struct KeptNamedOwner {
  std::unique_ptr<NamedProperties> table = std::make_unique<NamedProperties>();
  ~KeptNamedOwner() {
    keptNamed.ended = true;
    keptNamed.table = nullptr;
  }
};

[[gnu::noinline]] NamedProperties* makeKeptNamed() {
  if (keptNamed.ended) return nullptr;
  thread_local KeptNamedOwner owner;
  keptNamed.table = owner.table.get();
  return keptNamed.table;
}

// Null when the name is not a property of the object's class by its exact
// name (dynamic properties, other cases, prefixes): the full look-up then.
// Callers name a property with the same literal again and again, so an
// answer is kept under the address of the caller's text and the name is not
// interned on a hit; the text is compared with the kept name, so a buffer
// reused for another name finds nothing.
const NamedProperty* namedProperty(const COSInterface* o, const char* name) {
  COSClass* cls = o->getClass();
  if (!cls || !name) return nullptr;
  NamedProperties* table = keptNamed.table ? keptNamed.table : makeKeptNamed();
  if (!table) return nullptr;
  NamedProperties& kept = *table;
  const auto key = reinterpret_cast<std::uintptr_t>(cls) ^ (reinterpret_cast<std::uintptr_t>(name) >> 3);
  NamedProperty& k = kept[(key ^ (key >> 6) ^ (key >> 12)) & 63];
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  if (k.cls == cls && k.text == name && k.epoch == epoch && std::strcmp(k.name->text.c_str(), name) == 0) return &k;
  const COSID id(name);
  COSPropInfo* p = id ? cls->findPropertyExact(id) : nullptr;
  const vcos::internal::PropSlot* slot = p ? cls->findSlot(p) : nullptr;
  if (!slot) return nullptr;
  COSDataTypePtr type = p->getDataType();
  NamedProperty e;
  e.cls = cls;
  e.text = name;
  e.name = id.entry();
  e.epoch = epoch;
  e.property = p;
  e.type = type.get();
  e.arrayType = type->isVANTELArrayType();
  e.plainGet = !(slot->route & vcos::internal::kGetRoutes) && !slot->customGet &&
               p->getMemberGetAccess() == PublicAccess && !p->getExtendedGetAccess();
  e.plainSet = !(slot->route & vcos::internal::kSetRoutes) && p->getMemberSetAccess() == PublicAccess &&
               !p->getExtendedSetAccess();
  if (!e.arrayType) {
    e.toArray = COSTypeRepository::getArrayConversion(*type, true);
    e.fromArray = COSTypeRepository::getArrayConversion(*type, false);
    e.logicalAsBool = e.fromArray && e.fromArray->takesLogicalScalarAsBool();
  }
  k = e;
  return &k;
}

// A value converted for a property, destroyed by its type when the guard goes.
struct Converted {
  const COSDataType& type;
  COSValue value;
  ~Converted() {
    if (!value.isEmpty()) type.destroy(value);
  }
};

// A value built in a caller's room by convertInPlace, ended when the guard goes.
struct InPlaceValue {
  void* room;
  COSTypeConversion::EndInPlace end;
  ~InPlaceValue() { end(room); }
};

// The array of a borrowed value, for the caller to own.
vxArray* arrayOf(const NamedProperty& e, COSValue value) {
  if (e.arrayType) {
    // A property may lend the array it stores: the caller gets a copy of its
    // own (sharing the data), and the lent value goes back through the guard.
    const vxArray* array = value.asPointer<const vxArray>();
    return array ? vxCreateSharedCopyNotOnArrayList(array) : nullptr;
  }
  return conversionFor(*e.type, /*toArray=*/true)->convert(value).asPointer<vxArray>();
}

vxArray* getThrough(COSInterface* o, const NamedProperty& e) {
  if (!e.plainGet || o->hasOwnPropertyListeners())
    return arrayOf(e, BorrowedPropertyValue::read(o, COSGetPublicClient(), e.property).get());
  // The client path would do no more than this: the property's getValue,
  // then its releaseValue. The new array goes straight to the caller, who
  // usually drops it soon: its header may be the one freed last.
  const vx::impl::SpareHeaderScope spareHeader;
  const BorrowedPropertyValue v = BorrowedPropertyValue::readDirect(o, e.property);
  if (e.toArray) return e.toArray->convert(v.get()).asPointer<vxArray>();
  return arrayOf(e, v.get());
}

void setThrough(COSInterface* o, const NamedProperty& e, const vxArray* array) {
  COSPropInfo* p = e.property;
  COSValue value(array);
  if (e.arrayType) {
    if (e.plainSet && !o->hasOwnPropertyListeners()) {
      vcos::fault::at(vcos::fault::Point::PropertySet);  // as the client path would
      p->setValue(o, value);
    } else {
      p->setAsPublicClient(o, value);
    }
    return;
  }
  if (!e.fromArray) conversionFor(*e.type, /*toArray=*/false);  // raises
  auto set = [&](COSValue v) {
    if (e.plainSet && !o->hasOwnPropertyListeners()) {
      vcos::fault::at(vcos::fault::Point::PropertySet);
      p->setValue(o, v);
    } else {
      p->setAsPublicClient(o, v);
    }
  };
  // A logical scalar for an on/off: its word, with nothing to convert or end.
  bool logical = false;
  if (e.logicalAsBool && vxGetLogicalScalar(array, &logical)) {
    set(COSValue::fromBool(logical));
    return;
  }
  // The value lives for the set only: built on the stack where the
  // conversion can, so that a colour, say, costs no heap value.
  alignas(std::max_align_t) unsigned char room[COSTypeConversion::kInPlaceBytes];
  COSValue inPlace;
  COSTypeConversion::EndInPlace end = nullptr;
  if (e.fromArray->convertInPlace(value, room, inPlace, end)) {
    const InPlaceValue guard{room, end};
    set(inPlace);
    return;
  }
  const Converted converted{*e.type, e.fromArray->convert(value)};
  set(converted.value);
}

vxArray* getFrom(COSInterface* o, const COSPropInfo* property) {
  COSDataTypePtr type = property->getDataType();
  const BorrowedPropertyValue v = BorrowedPropertyValue::read(o, COSGetPublicClient(), property);
  if (type->isVANTELArrayType()) {
    // A property may lend the array it stores: the caller gets a copy of its
    // own (sharing the data), and the lent value goes back through the guard.
    const vxArray* value = v.get().asPointer<const vxArray>();
    return value ? vxCreateSharedCopyNotOnArrayList(value) : nullptr;
  }
  return conversionFor(*type, /*toArray=*/true)->convert(v.get()).asPointer<vxArray>();
}

void setOn(COSInterface* o, const COSPropInfo* property, const vxArray* value) {
  COSDataTypePtr type = property->getDataType();
  if (type->isVANTELArrayType()) {
    o->setPropertyValue(COSGetPublicClient(), property, COSValue(value));
    return;
  }
  const ConvertedValue converted(type, conversionFor(*type, /*toArray=*/false)->convert(COSValue(value)));
  o->setPropertyValue(COSGetPublicClient(), property, converted.get());
}

}  // namespace

vxArray* vxGetProperty(const vxArray* array, vxIndex index, const char* propertyName) {
  COSInterface* o = elementAt(array, index);
  if (const NamedProperty* e = namedProperty(o, propertyName)) return getThrough(o, *e);
  return getFrom(o, propertyOf(o, propertyName));
}

void vxCheckPropertyValue(const vxArray* array, vxIndex index, const char* propertyName, const vxArray* value) {
  COSInterface* o = elementAt(array, index);
  COSPropInfo* p = propertyOf(o, propertyName);
  COSDataTypePtr type = p->getDataType();
  if (type->isVANTELArrayType()) {
    type->checkValue(COSValue(value), /*raise=*/true);
    return;
  }
  const ConvertedValue converted(type, conversionFor(*type, /*toArray=*/false)->convert(COSValue(value)));
  type->checkValue(converted.get(), /*raise=*/true);
}

void vxSetProperty(vxArray* array, vxIndex index, const char* propertyName, const vxArray* value) {
  COSInterface* o = elementAt(array, index);
  if (const NamedProperty* e = namedProperty(o, propertyName)) {
    setThrough(o, *e, value);
    return;
  }
  setOn(o, propertyOf(o, propertyName), value);
}

vxArray* vxGetProperty(const vxArray* array, vxIndex index, const COSPropInfo* property) {
  return getFrom(elementAt(array, index), property);
}

void vxSetProperty(vxArray* array, vxIndex index, const COSPropInfo* property, const vxArray* value) {
  setOn(elementAt(array, index), property, value);
}
