// The basic data types (docs/datatypes.md has the meaning of each word):
// logical and numeric scalars held in the word itself, text as a pointer to a
// C++ string, handles as a counted object pointer, and the array types whose
// word is a vxArray*. Conversions to and from "any" let the array boundary
// (vxGetProperty, vxSetProperty) reach every property.
#include "vcos/VxProperty.h"
#include "vcos/src/types/BasicTypes.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSFunctionConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vxCompare.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace vcos::internal {
namespace {

[[noreturn]] void raiseBadValue(const COSDataType* t) { throw Error(vcos::msg::InvalidValueForType, t->getName()); }

class LogicalType final : public COSDataType {
 public:
  LogicalType() : COSDataType(COSID("logical scalar")) {}
  bool checkValue(COSValue v, bool raise) const override {
    if (v.word() <= 1) return true;
    if (raise) raiseBadValue(this);
    return false;
  }
};

class DoubleType final : public COSDataType {
 public:
  DoubleType() : COSDataType(COSID("double scalar")) {}
  bool isEqual(COSValue a, COSValue b) const override { return a.asDouble() == b.asDouble(); }
  bool isEqualWithEqualNans(COSValue a, COSValue b) const override {
    return isEqual(a, b) || (std::isnan(a.asDouble()) && std::isnan(b.asDouble()));
  }
  int compare(COSValue a, COSValue b) const override {
    return a.asDouble() < b.asDouble() ? -1 : a.asDouble() > b.asDouble() ? 1 : 0;
  }
};

class SingleType final : public COSDataType {
 public:
  SingleType() : COSDataType(COSID("single scalar")) {}
  bool isEqual(COSValue a, COSValue b) const override { return a.asFloat() == b.asFloat(); }
};

template <class T>
class IntegerType final : public COSDataType {
 public:
  explicit IntegerType(const char* name) : COSDataType(COSID(name)) {}
  int compare(COSValue a, COSValue b) const override {
    T x = static_cast<T>(a.asInt()), y = static_cast<T>(b.asInt());
    return x < y ? -1 : x > y ? 1 : 0;
  }
};

template <class C>
class StringType final : public COSDataType {
 public:
  explicit StringType(const char* name) : COSDataType(COSID(name)) {}
  using Str = std::basic_string<C>;
  static const Str* str(COSValue v) noexcept { return v.asPointer<const Str>(); }
  bool isEqual(COSValue a, COSValue b) const override {
    const Str* x = str(a);
    const Str* y = str(b);
    if (!x || !y) return (x ? x->empty() : true) && (y ? y->empty() : true);
    return *x == *y;
  }
  int compare(COSValue a, COSValue b) const override {
    Str x = str(a) ? *str(a) : Str(), y = str(b) ? *str(b) : Str();
    return x.compare(y) < 0 ? -1 : x == y ? 0 : 1;
  }
  COSValue copy(COSValue v) const override { return str(v) ? COSValue(new Str(*str(v))) : COSValue(); }
  void destroy(COSValue v) const override { delete str(v); }
  std::size_t getHashCode(COSValue v) const override { return str(v) ? std::hash<Str>()(*str(v)) : 0; }
};

// A single object, or none. The word is a COSInterface*; a copy holds one
// strong reference.
class HandleType final : public COSDataType {
 public:
  HandleType(COSID name, COSID cls) : COSDataType(name), class_(cls) {}
  bool checkValue(COSValue v, bool raise) const override {
    auto* o = v.asPointer<COSInterface>();
    bool ok = !o || !class_ || (o->getClass() && o->getClass()->isSubclassOf(class_));
    if (!ok && raise) raiseBadValue(this);
    return ok;
  }
  COSValue copy(COSValue v) const override {
    if (auto* o = v.asPointer<COSInterface>()) o->addReference(COSStrongReference);
    return v;
  }
  void destroy(COSValue v) const override {
    if (auto* o = v.asPointer<COSInterface>()) o->releaseReference(COSStrongReference);
  }
  bool canContainInterfaces() const override { return true; }
  void getInterfaces(COSValue v, std::vector<COSInterfacePtr>& out) const override {
    if (auto* o = v.asPointer<COSInterface>()) out.emplace_back(o);
  }

 private:
  COSID class_;
};

// Array-valued types: the word is a vxArray*. A copy is a shared data copy.
class ArrayType final : public COSDataType {
 public:
  enum class Shape { Any, Struct, Objects, ObjectVector };
  ArrayType(COSID name, Shape shape, COSID cls = COSID()) : COSDataType(name), shape_(shape), class_(cls) {}
  bool checkValue(COSValue v, bool raise) const override {
    bool ok = accepts(v.asPointer<const vxArray>());
    if (!ok && raise) raiseBadValue(this);
    return ok;
  }
  bool isEqual(COSValue a, COSValue b) const override {
    auto* x = a.asPointer<const vxArray>();
    auto* y = b.asPointer<const vxArray>();
    if (!x || !y) return x == y;
    return vxAreMatricesEqualNanOptional(x, y, false);
  }
  bool isEqualWithEqualNans(COSValue a, COSValue b) const override {
    auto* x = a.asPointer<const vxArray>();
    auto* y = b.asPointer<const vxArray>();
    if (!x || !y) return x == y;
    return vxAreMatricesEqualNanOptional(x, y, true);
  }
  COSValue copy(COSValue v) const override {
    auto* x = v.asPointer<const vxArray>();
    return x ? COSValue(vxCreateSharedDataCopy(x)) : COSValue();
  }
  COSValue copyInternal(COSValue v) const override {
    auto* x = v.asPointer<const vxArray>();
    if (!x) return COSValue();
    vxArray* c = vxCreateSharedCopyNotOnArrayList(x);
    vxSetArrayScope(c, vxSCOPE_PERSISTENT);
    return COSValue(c);
  }
  void destroy(COSValue v) const override {
    if (auto* x = v.asPointer<vxArray>()) vxDestroyArray(x);
  }
  bool canContainInterfaces() const override { return shape_ != Shape::Struct; }
  void getInterfaces(COSValue v, std::vector<COSInterfacePtr>& out) const override {
    auto* x = v.asPointer<const vxArray>();
    if (!x || !vxIsObject(x)) return;
    const COSInterfacePtr* e = vxGetObjectElements(x);
    for (vxSize i = 0, n = vxGetNumberOfElements(x); i < n; ++i)
      if (e[i]) out.push_back(e[i]);
  }
  bool isVANTELArrayType() const override { return true; }

 private:
  bool accepts(const vxArray* x) const {
    switch (shape_) {
      case Shape::Any:
        return true;
      case Shape::Struct:
        return x && vxIsStruct(x);
      case Shape::ObjectVector:
        if (x && !vxIsEmpty(x) && !vxIsVector(x)) return false;
        [[fallthrough]];
      case Shape::Objects:
        if (!x || !vxIsObject(x)) return false;
        return !class_ || vxIsA(x, class_.c_str());
    }
    return false;
  }
  Shape shape_;
  COSID class_;
};

// Conversions at the array boundary.

const vxArray* scalarArray(COSValue v, const char* to) {
  auto* a = v.asPointer<const vxArray>();
  // A complex value is refused, never cut to its real part.
  if (!a || vxIsEmpty(a) || !vxIsScalar(a) || vxIsComplex(a)) throw Error(vcos::msg::ConversionFailed, "any", to);
  return a;
}

// A double in the range of T: rounded, saturated at the ends, NaN as 0,
// as integer classes convert; never an out-of-range cast.
template <class T>
T saturated(double x) {
  if (std::isnan(x)) return T(0);
  if (x <= static_cast<double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  if (x >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  return static_cast<T>(std::round(x));
}

template <class T>
void addIntegerType(const char* name, vxClassID classId) {
  COSTypeRepository::addType(new IntegerType<T>(name));
  COSID id(name), any("any");
  COSTypeRepository::addConversion(id, any, makeConversion([classId](COSValue v) {
    vxArray* a = vxCreateNumericMatrix(1, 1, classId, vxREAL);
    *static_cast<T*>(vxGetData(a)) = static_cast<T>(v.asInt());
    return COSValue(a);
  }));
  COSTypeRepository::addConversion(any, id, makeConversion([name](COSValue v) {
    return COSValue::fromInt(static_cast<std::int64_t>(saturated<T>(vxGetScalar(scalarArray(v, name)))));
  }));
}

}  // namespace

void registerBasicTypes() {
  using Shape = ArrayType::Shape;
  COSID any("any");
  COSTypeRepository::addType(new ArrayType(any, Shape::Any));
  COSTypeRepository::addType(new ArrayType(COSID("struct"), Shape::Struct));
  COSTypeRepository::addType(new ArrayType(COSID("handle vector"), Shape::ObjectVector));
  COSTypeRepository::addType(new HandleType(COSID("handle scalar"), COSID()));
  COSTypeRepository::addType(new LogicalType);
  COSTypeRepository::addType(new DoubleType);
  COSTypeRepository::addType(new SingleType);
  COSTypeRepository::addType(new StringType<char>("asciiString"));
  COSTypeRepository::addType(new StringType<char16_t>("unicodeString"));
  addIntegerType<std::int8_t>("int8 scalar", vxINT8_CLASS);
  addIntegerType<std::uint8_t>("uint8 scalar", vxUINT8_CLASS);
  addIntegerType<std::int16_t>("int16 scalar", vxINT16_CLASS);
  addIntegerType<std::uint16_t>("uint16 scalar", vxUINT16_CLASS);
  addIntegerType<std::int32_t>("int32 scalar", vxINT32_CLASS);
  addIntegerType<std::uint32_t>("uint32 scalar", vxUINT32_CLASS);
  addIntegerType<std::int64_t>("int64 scalar", vxINT64_CLASS);
  addIntegerType<std::uint64_t>("uint64 scalar", vxUINT64_CLASS);

  COSID logical("logical scalar"), dbl("double scalar"), single("single scalar"), ascii("asciiString"),
      unicode("unicodeString"), handle("handle scalar");
  COSTypeRepository::addConversion(logical, any, makeConversion([](COSValue v) { return COSValue(vxCreateLogicalScalar(v.asBool())); }));
  COSTypeRepository::addConversion(any, logical, makeConversion([](COSValue v) {
    return COSValue::fromBool(vxGetScalar(scalarArray(v, "logical scalar")) != 0);
  }));
  COSTypeRepository::addConversion(dbl, any, makeConversion([](COSValue v) { return COSValue(vxCreateDoubleScalar(v.asDouble())); }));
  COSTypeRepository::addConversion(any, dbl, makeConversion([](COSValue v) {
    return COSValue::fromDouble(vxGetScalar(scalarArray(v, "double scalar")));
  }));
  COSTypeRepository::addConversion(single, any, makeConversion([](COSValue v) {
    vxArray* a = vxCreateNumericMatrix(1, 1, vxSINGLE_CLASS, vxREAL);
    *static_cast<float*>(vxGetData(a)) = v.asFloat();
    return COSValue(a);
  }));
  COSTypeRepository::addConversion(any, single, makeConversion([](COSValue v) {
    return COSValue::fromFloat(static_cast<float>(vxGetScalar(scalarArray(v, "single scalar"))));
  }));
  COSTypeRepository::addConversion(ascii, any, makeConversion([](COSValue v) {
    auto* s = v.asPointer<const std::string>();
    return COSValue(vxCreateString(s ? s->c_str() : ""));
  }));
  COSTypeRepository::addConversion(any, ascii, makeConversion([](COSValue v) {
    auto* a = v.asPointer<const vxArray>();
    if (!a || !(vxIsChar(a) || vxIsString(a))) throw Error(vcos::msg::ConversionFailed, "any", "asciiString");
    return COSValue(new std::string(vxArrayToStdString(a)));
  }));
  COSTypeRepository::addConversion(unicode, any, makeConversion([](COSValue v) {
    auto* s = v.asPointer<const std::u16string>();
    vxSize dims[2] = {1, s ? s->size() : 0};
    vxArray* a = vxCreateCharArray(2, dims);
    if (s && !s->empty()) std::memcpy(vxGetChars(a), s->data(), s->size() * sizeof(char16_t));
    return COSValue(a);
  }));
  COSTypeRepository::addConversion(any, unicode, makeConversion([](COSValue v) {
    auto* a = v.asPointer<const vxArray>();
    // A string scalar ("abc") stands for its characters wherever a char row does.
    if (a && vxIsString(a) && vxGetNumberOfElements(a) == 1) {
      std::optional<std::u16string> text = vxGetStringElement(a, 0);
      if (text) return COSValue(new std::u16string(std::move(*text)));
    }
    if (!a || !vxIsChar(a)) throw Error(vcos::msg::ConversionFailed, "any", "unicodeString");
    const vxChar* c = vxGetChars(a);
    return COSValue(new std::u16string(c, c + vxGetNumberOfElements(a)));
  }));
  COSTypeRepository::addConversion(handle, any, makeConversion([](COSValue v) {
    auto* o = v.asPointer<COSInterface>();
    COSClass* cls = o ? o->getClass() : nullptr;
    vxArray* a = vxCreateObjectMatrix(o ? 1 : 0, o ? 1 : 0, cls ? cls->getID().entry() : nullptr);
    if (o) vxGetObjectElements(a)[0] = o;
    return COSValue(a);
  }));
  COSTypeRepository::addConversion(any, handle, makeConversion([](COSValue v) {
    auto* a = v.asPointer<const vxArray>();
    if (!a || !vxIsObject(a) || vxGetNumberOfElements(a) > 1)
      throw Error(vcos::msg::ConversionFailed, "any", "handle scalar");
    if (vxGetNumberOfElements(a) == 0) return COSValue();
    COSInterface* o = vxGetObjectElements(a)[0].get();
    if (o) o->addReference(COSStrongReference);
    return COSValue(o);
  }));
}

COSDataType* makeClassType(COSID name) {
  static const char* const suffixes[] = {" scalar", " vector", " matrix"};
  const std::string& text = name.str();
  for (int kind = 0; kind < 3; ++kind) {
    std::size_t n = std::strlen(suffixes[kind]);
    if (text.size() <= n || text.compare(text.size() - n, n, suffixes[kind]) != 0) continue;
    COSID cls(std::string_view(text).substr(0, text.size() - n));
    if (!COSClass::getClass(cls)) return nullptr;
    if (kind == 0) return new HandleType(name, cls);
    return new ArrayType(name, kind == 1 ? ArrayType::Shape::ObjectVector : ArrayType::Shape::Objects, cls);
  }
  if (!COSClass::getClass(name)) return nullptr;
  return new ArrayType(name, ArrayType::Shape::Objects, name);
}

}  // namespace vcos::internal
