// One word that holds a value of any property type. What the word means is
// fixed per data type (docs/datatypes.md): a vxArray*, a bool, the bits of a
// double, a pointer to a C++ value. Only the data type's copy, destroy,
// compare and the conversions interpret it.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

class COSValue {
 public:
  constexpr COSValue() noexcept = default;
  COSValue(const void* p) noexcept : w_(reinterpret_cast<std::uintptr_t>(p)) {}

  static constexpr COSValue fromWord(std::uintptr_t w) noexcept { COSValue v; v.w_ = w; return v; }
  static constexpr COSValue fromBool(bool b) noexcept { return fromWord(b ? 1u : 0u); }
  static COSValue fromDouble(double d) noexcept { return fromWord(std::bit_cast<std::uint64_t>(d)); }
  static COSValue fromFloat(float f) noexcept { return fromWord(std::bit_cast<std::uint32_t>(f)); }
  static constexpr COSValue fromInt(std::int64_t i) noexcept { return fromWord(static_cast<std::uintptr_t>(i)); }

  constexpr std::uintptr_t word() const noexcept { return w_; }
  constexpr bool isEmpty() const noexcept { return w_ == 0; }
  constexpr bool asBool() const noexcept { return w_ != 0; }
  double asDouble() const noexcept { return std::bit_cast<double>(static_cast<std::uint64_t>(w_)); }
  float asFloat() const noexcept { return std::bit_cast<float>(static_cast<std::uint32_t>(w_)); }
  constexpr std::int64_t asInt() const noexcept { return static_cast<std::int64_t>(w_); }
  template <class T>
  T* asPointer() const noexcept { return reinterpret_cast<T*>(w_); }
  void* getValue() const noexcept { return reinterpret_cast<void*>(w_); }

  friend constexpr bool operator==(COSValue a, COSValue b) noexcept { return a.w_ == b.w_; }

 private:
  std::uintptr_t w_ = 0;
};

static_assert(sizeof(COSValue) == sizeof(void*), "a COSValue is one word");
