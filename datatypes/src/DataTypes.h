// Not installed; internal to sgdatatypes.
//
// The data type classes: the only code that knows what a COSValue word means
// for each graphics type (docs/datatypes.md has the table).
//   on_off            the bool in the word
//   enumerations      a pointer to one byte; values made here point at the
//                     process-lifetime canonical bytes, so copy and destroy
//                     allocate and free nothing
//   value classes     a pointer to a C++ value made with new; copy makes a
//                     new one, destroy deletes it; null reads as the
//                     default value (the empty callback, the empty handle)
//   COSInterface      a COSInterface* holding one strong reference
#pragma once

#include <string>
#include <vector>

#include "sgdatatypes/Enumeration.h"
#include "vcos/COSDataType.h"
#include "vcos/COSInterface.h"

namespace graphics::datatype::detail {

// Raises "VANTEL:datatypes:InvalidValue" with the type's name.
[[noreturn]] void raiseInvalidValue(const COSDataType* type);

class OnOffType final : public COSDataType {
 public:
  OnOffType();
  bool checkValue(COSValue value, bool raise) const override;
  bool isPlainWord() const override { return true; }
  std::vector<std::string> getPossibleValues() const override;
};

class EnumerationType final : public COSDataType {
 public:
  EnumerationType(COSID name, const EnumerationDescription& description);
  bool checkValue(COSValue value, bool raise) const override;
  bool isEqual(COSValue a, COSValue b) const override;
  bool isIdentical(COSValue a, COSValue b) const override { return isEqual(a, b); }
  int compare(COSValue a, COSValue b) const override;
  COSValue copy(COSValue value) const override;
  std::size_t getHashCode(COSValue value) const override;
  std::vector<std::string> getPossibleValues() const override;
  const EnumerationDescription& description() const noexcept { return description_; }

 private:
  static int byteOf(COSValue v) noexcept { return v.isEmpty() ? 0 : *v.asPointer<const unsigned char>(); }
  const EnumerationDescription& description_;
};

// A C++ value class T held by pointer.
template <class T>
class ValueType final : public COSDataType {
 public:
  explicit ValueType(COSID name, bool holdsObjects = false) : COSDataType(name), holdsObjects_(holdsObjects) {}

  static const T& valueOf(COSValue v) {
    static const T empty{};
    const T* p = v.asPointer<const T>();
    return p ? *p : empty;
  }
  bool isEqual(COSValue a, COSValue b) const override { return a == b || valueOf(a) == valueOf(b); }
  bool isIdentical(COSValue a, COSValue b) const override { return isEqual(a, b); }
  COSValue copy(COSValue v) const override {
    const T* p = v.asPointer<const T>();
    return p ? COSValue(new T(*p)) : COSValue();
  }
  void destroy(COSValue v) const override { delete v.asPointer<T>(); }
  bool canContainInterfaces() const override { return holdsObjects_; }
  void getInterfaces(COSValue v, std::vector<COSInterfacePtr>& out) const override {
    if constexpr (requires(const T& t) { t.get(); }) {
      if (const T* p = v.asPointer<const T>(); p && p->get()) out.push_back(p->get());
    }
  }

 private:
  bool holdsObjects_;
};

// One object, or none; the number-to-object conversions start and end here.
class COSInterfaceType final : public COSDataType {
 public:
  COSInterfaceType();
  COSValue copy(COSValue value) const override;
  void destroy(COSValue value) const override;
  bool canContainInterfaces() const override { return true; }
  void getInterfaces(COSValue value, std::vector<COSInterfacePtr>& out) const override;
};

// The plain double held in the word's bits, for the type "double" when the
// class-object system does not provide it.
class DoubleWordType final : public COSDataType {
 public:
  DoubleWordType();
  bool isEqual(COSValue a, COSValue b) const override { return a.asDouble() == b.asDouble(); }
};

}  // namespace graphics::datatype::detail
