// Property look-up and public reads for findobj, cached per class.
#include "vcos/src/findobj/PropertyResolver.h"

#include "vcos/src/findobj/TextCompare.h"

#include <typeinfo>

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/ObjectOps.h"

#include "foundation/core/except/IMsgIDException.h"

#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSPropT.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/matrix.h"

namespace vcos::search {

void PropertyValue::reset() noexcept {
  if (converted_) matrix::destroyArray(std::exchange(converted_, nullptr));
  raw_.reset();
  array_ = nullptr;
}

PropertyResolver::Resolved PropertyResolver::describe(const COSPropInfo* property, const COSClass* cls) {
  Resolved r;
  r.property = property;
  if (!property) return r;
  r.reader.bind(cls, property, COSGetPublicClient());
  // Where the value lives, for prefetch: properties of the class only.
  if (cls) {
    if (typeid(*property) == typeid(COSPropT) || typeid(*property) == typeid(COSGenericProp)) {
      r.generic = true;
    } else if (const COSClass* definer = property->getDefiningClass()) {
      if (const internal::BlockSlot* slot = cls->tables().blockSlot.find(definer->getID())) r.block = int(slot->index);
    }
  }
  COSDataTypePtr type = property->getDataType();
  if (!type || type->isVANTELArrayType()) {
    r.isArray = true;
  } else {
    static const COSID any("any"), ascii("asciiString"), unicode("unicodeString");
    r.toArray = COSTypeRepository::getConversion(type.getID(), any);
    r.isAscii = type.getID() == ascii;
    r.isText = r.isAscii || type.getID() == unicode;
  }
  r.place.bind(cls, r.block);
  r.fetchAhead = r.generic ? r.isText : r.block >= 0;
  if (cls && !r.isArray && property->getDefiningClass())
    r.key = findobjKey(property->getDefiningClass()->getID(), COSID(property->getName()));
  return r;
}

const PropertyResolver::Resolved& PropertyResolver::resolveOther(COSInterface* object) {
  const COSClass* cls = object->getClass();
  if (cls != cachedClass_) {
    cachedClass_ = cls;
    cached_ = describe(cls ? cls->findProperty(name_) : nullptr, cls);
  }
  if (cached_.property) return cached_;
  // Not a class property: maybe one added to this instance.
  dynamic_ = describe(object->findPropertyInfo(name_), nullptr);
  return dynamic_;
}

void PropertyResolver::fetchGeneric(const COSInterface* object) const noexcept {
  if (const internal::InstanceExtras* x = internal::ObjectOps::extrasIfAny(object))
    for (const internal::StoredValue& v : x->values)
      if (v.property == cached_.property) return __builtin_prefetch(v.value.asPointer<const void>());
}

bool PropertyResolver::has(COSInterface* object) { return resolve(object).property != nullptr; }

bool PropertyResolver::read(COSInterface* object, PropertyValue& out, bool lend) {
  out.reset();
  const Resolved& r = resolve(object);
  if (!r.property || (!r.isArray && !r.toArray)) return false;
  if (!r.reader.read(object, out.raw_, lend)) return false;
  if (r.isArray) {
    out.array_ = out.raw_.word().asPointer<const vxArray>();
  } else {
    out.converted_ = r.toArray->convert(out.raw_.word()).asPointer<vxArray>();
    out.array_ = out.converted_;
  }
  return out.array_ != nullptr;
}

PropertyResolver::~PropertyResolver() {
  if (typed_.usable) typed_.type->destroy(typed_.value);
  forgetKnownValues();
}

void PropertyResolver::forgetKnownValues() noexcept {
  for (KnownValue& k : known_) knownType_->destroy(k.word);
  known_.clear();
  knownKeys_.clear();
  forgetKeyPlan();
}

PropertyResolver::Typed PropertyResolver::compareByValue(COSInterface* object, ArrayTest test, const void* context) {
  return byValueOf(resolve(object), object, test, context);
}

PropertyResolver::Typed PropertyResolver::compareWithText(COSInterface* object, std::u16string_view folded,
                                                          const std::string* asciiFolded, ArrayTest test,
                                                          const void* context) {
  const Resolved& r = resolve(object);
  if (!r.property) return Typed::NotEqual;
  if (r.isText) return textOf(r, object, folded, asciiFolded);
  return byValueOf(r, object, test, context);
}

PropertyResolver::Typed PropertyResolver::byValueOf(const Resolved& r, COSInterface* object, ArrayTest test,
                                                    const void* context) {
  if (!r.property || r.isArray || r.isText || !r.toArray) return Typed::NotApplicable;
  if (knownProperty_ != r.property) {
    forgetKnownValues();
    knownProperty_ = r.property;
    knownType_ = r.property->getDataType();
    keepKnown_ = knownType_ && !knownType_->canContainInterfaces();
  }
  // A key stands for the value only where the read would take its plain
  // course (no listener or routed get that could answer otherwise).
  const void* key = nullptr;
  if (r.key && r.reader.plainCourse(object) &&
      r.key(object, r.place.in(object), key)) {
    for (const KnownKey& k : knownKeys_)
      if (k.key == key) return k.result ? Typed::Equal : Typed::NotEqual;
  } else {
    key = nullptr;
  }
  const bool result = compareValue(r, object, test, context);
  if (key && knownKeys_.size() < kKnownValues) knownKeys_.push_back({key, result});
  return result ? Typed::Equal : Typed::NotEqual;
}

bool PropertyResolver::compareValue(const Resolved& r, COSInterface* object, ArrayTest test, const void* context) {
  internal::SlotReader::Value v;
  if (!r.reader.read(object, v, /*lend=*/true)) return false;
  for (const KnownValue& k : known_)
    if (knownType_->isEqual(v.word(), k.word)) return k.result;
  matrix::unique_vxArray array(r.toArray->convert(v.word()).asPointer<vxArray>());
  if (!array) return false;
  const bool result = test(array.get(), context);
  if (keepKnown_ && known_.size() < kKnownValues) {
    known_.push_back({knownType_->copy(v.word()), result});
  }
  return result;
}

PropertyResolver::Typed PropertyResolver::compareTyped(COSInterface* object, const vxArray* value) {
  const Resolved& r = resolve(object);
  if (!r.property) return Typed::NotEqual;
  if (r.isArray || r.isText) return Typed::NotApplicable;
  if (typed_.property != r.property) {
    if (typed_.usable) typed_.type->destroy(typed_.value);
    typed_ = TypedValue{r.property, r.property->getDataType(), COSValue(), false};
    static const COSID any("any");
    if (COSTypeConversion* c = COSTypeRepository::getConversion(any, typed_.type.getID())) {
      try {
        typed_.value = c->convert(COSValue(value));
        typed_.usable = true;
      } catch (const foundation::core::except::IMsgIDException&) {
        // No value of this type equals it.
      }
    } else {
      return Typed::NotApplicable;
    }
  }
  if (!typed_.usable) return Typed::NotEqual;
  internal::SlotReader::Value v;
  if (!r.reader.read(object, v, /*lend=*/true)) return Typed::NotEqual;
  return typed_.type->isEqual(v.word(), typed_.value) ? Typed::Equal : Typed::NotEqual;
}

PropertyResolver::Typed PropertyResolver::compareText(COSInterface* object, std::u16string_view folded,
                                                      const std::string* asciiFolded) {
  const Resolved& r = resolve(object);
  if (!r.property) return Typed::NotEqual;
  return textOf(r, object, folded, asciiFolded);
}

PropertyResolver::Typed PropertyResolver::textOf(const Resolved& r, COSInterface* object, std::u16string_view folded,
                                                 const std::string* asciiFolded) {
  if (!r.isText || (r.isAscii && !asciiFolded)) return Typed::NotApplicable;
  internal::SlotReader::Value read;
  if (!r.reader.read(object, read, /*lend=*/true)) return Typed::NotEqual;
  const COSValue v = read.word();
  bool equal;
  if (r.isAscii) {
    const auto* s = v.asPointer<const std::string>();
    const std::string_view text = s ? std::string_view(*s) : std::string_view();
    equal = text.size() == asciiFolded->size();
    for (std::size_t i = 0; equal && i < text.size(); ++i)
      equal = foldChar(static_cast<unsigned char>(text[i])) == static_cast<unsigned char>((*asciiFolded)[i]);
  } else {
    const auto* s = v.asPointer<const std::u16string>();
    equal = equalsFolded(s ? std::u16string_view(*s) : std::u16string_view(), folded);
  }
  return equal ? Typed::Equal : Typed::NotEqual;
}

}  // namespace vcos::search
