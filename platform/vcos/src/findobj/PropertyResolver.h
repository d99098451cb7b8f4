// Not installed; internal to the findobj of class "handle".
//
// Finds a property of an object by a name fixed when a query is compiled,
// and reads it as the public client. What is learnt of the last class met is
// kept (the property, a reader bound to its slot, how to get an array from
// its word), so a walk over many objects of one class looks the name and
// the slot up once. Properties added to one instance at run time are looked
// up per object, and only when the class has no property of that name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vcos/COSDataTypePtr.h"
#include "vcos/COSInterface.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSValue.h"
#include "vcos/FindobjLender.h"
#include "vcos/src/findobj/BlockPlace.h"
#include "vcos/src/core/ObjectOps.h"
#include "vcos/src/property/SlotReader.h"
#include "vx/vxTypes.h"

class COSClass;
class COSInterface;
class COSPropInfo;
class COSTypeConversion;

namespace vcos::search {

// A value read as the public client, as an array; given back when it goes.
class PropertyValue {
 public:
  PropertyValue() = default;
  PropertyValue(const PropertyValue&) = delete;
  PropertyValue& operator=(const PropertyValue&) = delete;
  ~PropertyValue() { reset(); }

  const vxArray* array() const noexcept { return array_; }
  void reset() noexcept;

 private:
  friend class PropertyResolver;
  const vxArray* array_ = nullptr;
  vxArray* converted_ = nullptr;  // an array made from a non-array word
  internal::SlotReader::Value raw_;
};

class PropertyResolver {
 public:
  explicit PropertyResolver(COSID name) noexcept : name_(name) {}
  ~PropertyResolver();
  PropertyResolver(const PropertyResolver&) = delete;
  PropertyResolver& operator=(const PropertyResolver&) = delete;

  COSID name() const noexcept { return name_; }
  // Whether the object has a property of that name (exact, without regard to
  // case, or by unique prefix where allowed; run-time properties included).
  bool has(COSInterface* object);
  // Whether a read of the property of `object` runs no code but the class's
  // own get, which changes nothing: the object has no such property, or its
  // read takes the plain course (no listeners, no routed get). Resolves the
  // property.
  // Class: the property is the class's and its read takes the plain course
  // on `object`, so it does on every object of the class that has no
  // property listeners (the only part of the plain course asked per
  // object); Object: it does on this one (it has no such property); No:
  // the read may run code.
  enum class CodeFree : unsigned char { Class, Object, No };
  CodeFree readsWithoutCode(COSInterface* object) {
    const Resolved& r = resolve(object);
    if (!r.property) return CodeFree::Object;
    if (!r.reader.plainCourse(object)) return CodeFree::No;
    return &r == &cached_ ? CodeFree::Class : CodeFree::Object;
  }
  // Reads the property; false when the object has none, the public client
  // may not read it, or its value has no array form. `lend`: the array may
  // be the stored one itself, to be compared before any other code runs.
  bool read(COSInterface* object, PropertyValue& out, bool lend);

  // Compares the property with a value that is not text, in the property's
  // own type when it has one that is neither an array nor text: the value is
  // converted into that type once per property, and each object's word is
  // compared with the type's isEqual, so the walk makes no array per object.
  // The word is lent where the core can lend it.
  enum class Typed : unsigned char { NotApplicable, Equal, NotEqual };
  Typed compareTyped(COSInterface* object, const vxArray* value);
  // Compares a text property ("asciiString", "unicodeString") with folded
  // text without regard to case, on the property's own word, so no array is
  // made per object; the stored text is lent where the core can lend it, so
  // nothing is copied either. `asciiFolded` is the same text when it is pure
  // ASCII, else null (then an "asciiString" property is not handled here).
  Typed compareText(COSInterface* object, std::u16string_view folded, const std::string* asciiFolded);
  // Applies `test` to the array form of a property whose word is neither an
  // array nor text, such as an enumeration compared with a text: the answer
  // for each distinct value (by the type's isEqual) is kept, so a walk makes
  // the array of each distinct value once rather than one per object. Types
  // that may hold objects are not kept. Where the defining library gives keys
  // for the values (FindobjKey), the answer is kept by key too, and an
  // object whose key is known is answered without reading its value.
  using ArrayTest = bool (*)(const vxArray* array, const void* context);
  Typed compareByValue(COSInterface* object, ArrayTest test, const void* context);
  // compareText where the property is text, else compareByValue, with the
  // property resolved once: a condition given as text on a property of
  // another type (Type, an enumeration) costs one look-up per object.
  Typed compareWithText(COSInterface* object, std::u16string_view folded, const std::string* asciiFolded,
                        ArrayTest test, const void* context);
  // The answer compareByValue (or compareWithText) kept for the key of the
  // object's value, where its read would take the plain course and its key
  // is among those answered already; NotApplicable otherwise (the caller
  // then compares as usual). Runs no code but the key function; the common
  // answer of a search by Type, made without the calls of the general
  // comparison. What holds for every object of a class (the property, its
  // slot and access, the block and the key function) is asked once per run
  // of objects of one class, and kept until forgetKeyPlan: only whether
  // the object has property listeners is asked per object.
  Typed knownByKey(COSInterface* object) noexcept {
    if ((object->getClass() != keyPlan_.cls || !keyPlan_.cls) && !planKey(object)) return Typed::NotApplicable;
    const internal::InstanceExtras* x = internal::ObjectOps::extrasIfAny(object);
    if (x && x->propertyListenerCount > 0) return Typed::NotApplicable;
    const void* key = nullptr;
    if (!keyPlan_.key(object, keyPlan_.block.in(object), key)) return Typed::NotApplicable;
    for (const KnownKey& k : knownKeys_)
      if (k.key == key) return k.result ? Typed::Equal : Typed::NotEqual;
    return Typed::NotApplicable;
  }
  // Drops what knownByKey keeps per class, after code ran that may have
  // changed it (a listener, a routed get, a function).
  void forgetKeyPlan() noexcept { keyPlan_.cls = nullptr; }

  // A hint for an object to be read soon: starts fetching the memory where
  // the property of the class met last keeps its value when that lies
  // outside the object's pooled memory (the text a generic text value points
  // to, or the class's C++ block); neighbours' headers and side tables are
  // fetched in order by the processor already. Reads no value and runs no
  // code; objects of other classes are left alone.
  void prefetch(const COSInterface* object) const noexcept {
    if (!cached_.fetchAhead || object->getClass() != cachedClass_) return;
    if (cached_.generic) return fetchGeneric(object);
    if (const void* block = cached_.place.in(object)) __builtin_prefetch(block);
  }

 private:
  struct Resolved {
    const COSPropInfo* property = nullptr;
    internal::SlotReader reader;             // reads `property` as the public client
    bool isArray = false;                    // the word is a vxArray*
    bool isText = false;                     // "asciiString", "unicodeString"
    bool isAscii = false;                    // "asciiString"
    COSTypeConversion* toArray = nullptr;    // otherwise, the conversion to "any"
    bool generic = false;                    // a plain COSPropT: the value is in the generic store
    int block = -1;                          // else the slot of the defining class's block, if any
    BlockPlace place;                        // where that block lies
    bool fetchAhead = false;                 // prefetch has something to fetch
    FindobjKey key = nullptr;                // keys for the values, where the defining library gives them
  };
  // prefetch of a value in the generic store.
  void fetchGeneric(const COSInterface* object) const noexcept;
  // The compared value in the type of one property.
  struct TypedValue {
    const COSPropInfo* property = nullptr;
    COSDataTypePtr type;
    COSValue value;
    bool usable = false;  // false: the value has no form in that type
  };
  // Valid until the next call. The class met last is answered inline.
  const Resolved& resolve(COSInterface* object) {
    if (object->getClass() == cachedClass_ && cached_.property) return cached_;
    return resolveOther(object);
  }
  const Resolved& resolveOther(COSInterface* object);
  Typed textOf(const Resolved& r, COSInterface* object, std::u16string_view folded, const std::string* asciiFolded);
  Typed byValueOf(const Resolved& r, COSInterface* object, ArrayTest test, const void* context);
  static Resolved describe(const COSPropInfo* property, const COSClass* cls);

  // Answers of compareByValue for the values met so far.
  struct KnownValue {
    COSValue word;
    bool result;
  };
  static constexpr std::size_t kKnownValues = 8;
  // Answers of compareByValue by the key of the value (FindobjKey).
  struct KnownKey {
    const void* key;
    bool result;
  };
  void forgetKnownValues() noexcept;
  // Makes the class answers of knownByKey for the class of `object`; false
  // where they do not hold (then none are kept).
  bool planKey(const COSInterface* object) noexcept {
    keyPlan_.cls = nullptr;
    if (knownKeys_.empty() || !object->getClass() || object->getClass() != cachedClass_ || !cached_.key ||
        knownProperty_ != cached_.property || !cached_.reader.plainCourse(object))
      return false;
    // plainCourse held for this object, so its parts that hold for the
    // class hold for every object of it.
    keyPlan_ = {cachedClass_, cached_.place, cached_.key};
    return true;
  }
  struct KeyPlan {
    const COSClass* cls = nullptr;  // null: none
    BlockPlace block;
    FindobjKey key = nullptr;
  };
  // compareByValue past the keys: reads the value and tests it.
  bool compareValue(const Resolved& r, COSInterface* object, ArrayTest test, const void* context);

  COSID name_;
  const COSClass* cachedClass_ = nullptr;
  Resolved cached_;
  Resolved dynamic_;  // a property of one instance, met last
  TypedValue typed_;
  const COSPropInfo* knownProperty_ = nullptr;
  COSDataTypePtr knownType_;
  bool keepKnown_ = false;
  std::vector<KnownValue> known_;
  std::vector<KnownKey> knownKeys_;
  KeyPlan keyPlan_;
};

}  // namespace vcos::search
