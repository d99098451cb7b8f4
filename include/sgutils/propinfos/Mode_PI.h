// The mode face of a definition-family property, reading and writing the
// mode byte of its PropertyStorage. Without a mode in the storage it reads
// as a null value and every write counts as a change back to auto.
#pragma once

#include <typeinfo>

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/ModePropInfo.h"
#include "sgutils/propinfos/PropertyDefinitionInterface.h"

namespace sgutils {

template <class Class, class Storage>
class Mode_PI : public PropInfoBase, public ModePropertyFactoryDefaultInitializer<Class, Mode_PI<Class, Storage>> {
  using Init = ModePropertyFactoryDefaultInitializer<Class, Mode_PI<Class, Storage>>;

 public:
  using Member = Storage Class::*;

  Mode_PI(const PropertyDefinitionInterface& record, const char* name, COSDataTypePtr type,
          const char* description, unsigned flags, Member member)
      : PropInfoBase(record.getClassID(), name, std::move(type), record.getAccess(), record.setAccess(), flags,
                     description),
        record_(&record),
        member_(member) {}

  COSValue getFactoryDefault() const override { return COSValue(&this->Init::autoByte_); }

  COSValue getValue(COSInterface* instance) const override {
    const Class* block = blockOf<Class>(instance, getClassID());
    if (!block) return getFactoryDefault();
    if constexpr (Storage::hasMode)
      return COSValue(graphics::datatype::canonicalEnumerationByte((block->*member_).mode()));
    else
      return COSValue();
  }

  void setValue(COSInterface* instance, COSValue value) override {
    if (Class* block = blockOf<Class>(instance, getClassID())) setIn(*block, instance, value);
  }

  // Only for this class itself, not for one that reads or writes otherwise.
  bool copiesBetweenBlocks() const noexcept override { return typeid(*this) == typeid(Mode_PI); }
  void copyBetweenBlocks(COSInterface*, const SGReference* from, SGReference* to, COSInterface* target) override {
    const Class& source = *static_cast<const Class*>(from);
    Class& block = *static_cast<Class*>(to);
    // Equal stored modes are equal values: the usual case, decided here.
    if constexpr (Storage::hasMode)
      if ((source.*member_).mode() == (block.*member_).mode()) return;
    const COSValue value = readIn(source);
    if (type()->isEqual(readIn(block), value)) return;
    target->checkValid();
    setIn(block, target, value);
  }

  void releaseValue(COSInterface*, COSValue) const override {}
  void setModeManual(COSInterface*) override {}

 private:
  COSValue readIn(const Class& block) const noexcept {
    if constexpr (Storage::hasMode)
      return COSValue(graphics::datatype::canonicalEnumerationByte((block.*member_).mode()));
    else
      return COSValue();
  }

  void setIn(Class& b, COSInterface* instance, COSValue value) {
    Class* block = &b;
    checkWebPropertySet(instance, getName(), value);
    const auto* next = value.asPointer<const unsigned char>();
    bool changed = true;
    if constexpr (Storage::hasMode) {
      const unsigned char old = (block->*member_).mode();
      changed = isModeTransitionToAuto(&old, next);
      (block->*member_).setMode(next ? *next : 0);
    } else {
      changed = isModeTransitionToAuto(nullptr, next);
    }
    if (changed) block->doPostSet(instance, this, false, true);
  }

  const PropertyDefinitionInterface* record_;
  Member member_;
};

}  // namespace sgutils
