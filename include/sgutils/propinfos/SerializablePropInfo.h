// The serializable twin of a definition-family property: the face a file
// reads and writes instead of the property itself. It shares the property's
// storage; a read asks the shown property (the public face) for its value
// and removes old-style handles from it, a write removes them before the
// value is stored. The twin is hidden and is what a file keeps, while the
// internal face of a property with a twin is transient.
#pragma once

#include "sgutils/propinfos/SerializableConversion.h"
#include "sgutils/propinfos/SimplePropInfo.h"

namespace sgutils {

template <class Class, class Storage>
class SerializablePropInfo : public SimplePropInfo<Class, Storage> {
  using Base = SimplePropInfo<Class, Storage>;

 public:
  using typename Base::Member;

  SerializablePropInfo(const PropertyDefinitionInterface& record, const char* name, COSDataTypePtr type,
                       const char* description, boost::shared_ptr<DefaultProvider> provider, Member member,
                       COSPropInfo* shown)
      : Base(record, name, std::move(type), description, /*publicFace=*/false, std::move(provider), member),
        shown_(shown) {}

  COSValue getValue(COSInterface* instance) const override {
    if (!blockOf<Class>(instance, this->getClassID())) return COSValue();
    return savedValue(instance);
  }

  void setValue(COSInterface* instance, COSValue value) override {
    if (!blockOf<Class>(instance, this->getClassID())) return;
    const COSDataType& t = *this->type();
    const COSValue replaced = conversion_.fromFile(t, value);
    if (replaced == value) {
      Base::setValue(instance, value);
      return;
    }
    struct Destroy {
      const COSDataType& t;
      COSValue v;
      ~Destroy() { t.destroy(v); }
    } destroy{t, replaced};
    Base::setValue(instance, replaced);
  }

  // A value this twin made is freed; the stored value and the factory
  // default are borrowed.
  void releaseValue(COSInterface* instance, COSValue value) const override {
    const Class* block = blockOf<Class>(instance, this->getClassID());
    if (!block || value == (block->*this->member()).word() || value == shown_->getFactoryDefault()) return;
    this->type()->destroy(value);
  }

  // What a file keeps is written as it stands: no mode turns manual, and no
  // default, reset or copy goes through the twin.
  bool isTransient() const override { return false; }
  bool isDefaultAllowed() const override { return false; }
  bool isResetAllowed() const override { return false; }
  bool isCopyAllowed() const override { return false; }

  const COSPropInfo* shown() const noexcept { return shown_; }

 protected:
  // The shown property's value, old-style handles removed.
  COSValue savedValue(COSInterface* instance) const {
    const COSValue value = shown_->getValue(instance);
    const COSValue converted = conversion_.forSave(*this->type(), value);
    if (converted != value) shown_->releaseValue(instance, value);
    return converted;
  }

 private:
  COSPropInfo* shown_;
  SerializableConversion conversion_;
};

// The twin of a property with a mode. A file keeps the present value only
// while the mode is manual; in auto it keeps the factory default, which is
// what the property returns to on load.
template <class Class, class Storage>
class SerializablePropInfoManualMode : public SerializablePropInfo<Class, Storage> {
  using Base = SerializablePropInfo<Class, Storage>;

 public:
  static_assert(Storage::hasMode, "a manual-mode twin needs a storage with a mode");
  using Base::Base;

  COSValue getValue(COSInterface* instance) const override {
    const Class* block = blockOf<Class>(instance, this->getClassID());
    if (!block) return COSValue();
    if ((block->*this->member()).mode() == 1) return this->savedValue(instance);
    return this->shown()->getFactoryDefault();
  }
};

}  // namespace sgutils
