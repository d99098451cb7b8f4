// The mode face `XMode` of a generated property triple, of type AutoManual.
// Its value word points at a byte of the mode's value. Writing the mode from
// manual back to auto is the one transition that marks the object, through
// doPostSet(false, true): the system takes the property over again, and a
// themed property takes its themed value.
//
// `PI` gives:
//   static unsigned char readMode(const Class&);
//   static void storeMode(Class&, unsigned char);
#pragma once

#include <type_traits>

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "sgutils/themes/ModeBackToAuto.h"
#include "sgdatatypes/Enumeration.h"

namespace sgutils {

// True when either byte is missing, or the old mode is manual and the new one
// is not: manual to auto.
inline bool isModeTransitionToAuto(const unsigned char* oldMode, const unsigned char* newMode) noexcept {
  if (!oldMode || !newMode) return true;
  return *oldMode != 0 && *newMode != 1;
}

template <class Class, class PI>
class ModePropInfo : public PropInfoBase, public ModePropertyFactoryDefaultInitializer<Class, PI> {
  using Init = ModePropertyFactoryDefaultInitializer<Class, PI>;

 public:
  ModePropInfo(COSID classId, const char* name, COSDataTypePtr type, MemberAccess getAccess,
               MemberAccess setAccess, unsigned flags, const char* description)
      : PropInfoBase(classId, name, std::move(type), getAccess, setAccess, flags, description) {}

  COSValue getFactoryDefault() const override { return COSValue(&this->Init::autoByte_); }

  COSValue getValue(COSInterface* instance) const override {
    const Class* block = blockOf<Class>(instance, getClassID());
    if (!block) return getFactoryDefault();
    return COSValue(graphics::datatype::canonicalEnumerationByte(PI::readMode(*block)));
  }

  void setValue(COSInterface* instance, COSValue value) override {
    if (Class* block = blockOf<Class>(instance, getClassID())) setIn(*block, instance, value);
  }

  void setInBlock(SGReference& block, COSInterface* instance, COSValue value) override {
    setIn(static_cast<Class&>(block), instance, value);
  }

  // setValue on the instance's block, for a caller that holds it.
  void setIn(Class& block, COSInterface* instance, COSValue value) {
    checkWebPropertySet(instance, getName(), value);
    const unsigned char old = PI::readMode(block);
    const auto* next = value.asPointer<const unsigned char>();
    const bool changed = isTransitionToAuto(&old, next);
    PI::storeMode(block, next ? *next : 0);
    if (changed) {
      block.doPostSet(instance, this, false, true);
      themes::modeSetBackToAuto(instance, this);
    }
  }

  // The public face's write of manual. Manual over manual marks nothing and
  // stores the same byte, so only the web check is left of it.
  void setManualIn(Class& block, COSInterface* instance) {
    if (PI::readMode(block) == 1) {
      if (detail::webSetCheckActive) checkWebPropertySet(instance, getName(), COSValue(graphics::datatype::canonicalEnumerationByte(1)));
      return;
    }
    setIn(block, instance, COSValue(graphics::datatype::canonicalEnumerationByte(1)));
  }
  void setManualInBlock(SGReference& block, COSInterface* instance) override {
    setManualIn(static_cast<Class&>(block), instance);
  }

  // Asked of a write that changes the mode byte or turns it to auto; a
  // write of manual over manual never marks.
  virtual bool isTransitionToAuto(const unsigned char* oldMode, const unsigned char* newMode) const {
    return isModeTransitionToAuto(oldMode, newMode);
  }

  void releaseValue(COSInterface*, COSValue) const override {}
  void setModeManual(COSInterface*) override {}

  bool copiesBetweenBlocks() const noexcept override {
    return std::is_same_v<decltype(&PI::getValue), COSValue (ModePropInfo::*)(COSInterface*) const> &&
           std::is_same_v<decltype(&PI::setValue), void (ModePropInfo::*)(COSInterface*, COSValue)>;
  }
  void copyBetweenBlocks(COSInterface*, const SGReference* from, SGReference* to, COSInterface* target) override {
    const auto fromMode = PI::readMode(*static_cast<const Class*>(from));
    Class& block = *static_cast<Class*>(to);
    // Equal stored modes are equal values: the usual case, decided here.
    if (PI::readMode(block) == fromMode) return;
    const COSValue value(graphics::datatype::canonicalEnumerationByte(fromMode));
    if (type()->isEqual(COSValue(graphics::datatype::canonicalEnumerationByte(PI::readMode(block))), value)) return;
    target->checkValid();
    setIn(block, target, value);
  }
};

}  // namespace sgutils
