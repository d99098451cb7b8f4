// How a C++ value type maps onto the COSValue word (docs/datatypes.md):
// bool, the arithmetic types, std::string (a pointer to a new string owned by
// the receiver), std::u16string likewise, pointers as they are, and
// COSInterfacePtr (the object, with one strong reference for the receiver).
#pragma once

#include <string>
#include <type_traits>

#include "vcos/COSInterfacePtr.h"
#include "vcos/COSValue.h"

template <class T, class Enable = void>
struct COSValueTraits;

template <>
struct COSValueTraits<bool> {
  static COSValue toValue(bool v) noexcept { return COSValue::fromBool(v); }
  static bool fromValue(COSValue v) noexcept { return v.asBool(); }
};

template <class T>
struct COSValueTraits<T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>>> {
  static COSValue toValue(T v) noexcept { return COSValue::fromInt(static_cast<std::int64_t>(v)); }
  static T fromValue(COSValue v) noexcept { return static_cast<T>(v.asInt()); }
};

template <>
struct COSValueTraits<double> {
  static COSValue toValue(double v) noexcept { return COSValue::fromDouble(v); }
  static double fromValue(COSValue v) noexcept { return v.asDouble(); }
};

template <>
struct COSValueTraits<float> {
  static COSValue toValue(float v) noexcept { return COSValue::fromFloat(v); }
  static float fromValue(COSValue v) noexcept { return v.asFloat(); }
};

template <class C>
struct COSValueTraits<std::basic_string<C>> {
  static COSValue toValue(const std::basic_string<C>& v) { return COSValue(new std::basic_string<C>(v)); }
  static std::basic_string<C> fromValue(COSValue v) {
    auto* s = v.asPointer<const std::basic_string<C>>();
    return s ? *s : std::basic_string<C>();
  }
};

template <class T>
struct COSValueTraits<T*> {
  static COSValue toValue(T* v) noexcept { return COSValue(v); }
  static T* fromValue(COSValue v) noexcept { return v.asPointer<T>(); }
};

template <>
struct COSValueTraits<COSInterfacePtr> {
  static COSValue toValue(const COSInterfacePtr& v) noexcept {
    if (v) v->addReference(COSStrongReference);
    return COSValue(v.get());
  }
  static COSInterfacePtr fromValue(COSValue v) noexcept { return COSInterfacePtr(v.asPointer<COSInterface>()); }
};
