// The internal face `X_I` of a generated property triple: it holds the value
// in a member of the class's block, never touches the mode, and marks the
// object through doPostSet(false, true) when a write changes the value.
//
// `PI` is the concrete property class (it derives from this one) and gives:
//   static COSValue read(const Class&);           the member's word, borrowed
//   static void store(Class&, COSValue owned);    takes a copied word
//   static COSValue makeFactoryValue(const COSDataType&);  a new owned word
// A member held by value (a colour, say) gives instead of `store`
//   static void assign(Class&, COSValue);         copies from the word
// and `read` answers a pointer to the member; the write then allocates
// nothing.
#pragma once

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/LazyFactoryValue.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include <type_traits>

#include "vcos/COSDataType.h"

namespace sgutils {

template <class Class, class PI>
class InternalPropInfo : public PropInfoBase, public InternalPropertyFactoryDefaultInitializer<Class, PI> {
 public:
  InternalPropInfo(COSID classId, const char* name, COSDataTypePtr type, MemberAccess getAccess,
                   MemberAccess setAccess, unsigned flags, const char* description)
      : PropInfoBase(classId, name, std::move(type), getAccess, setAccess, flags, description),
        plainWord_(this->type() && this->type()->isPlainWord()) {}
  COSValue getFactoryDefault() const override {
    return factory_.get(type(), [](const COSDataType& t) { return PI::makeFactoryValue(t); });
  }

  COSValue getValue(COSInterface* instance) const override {
    const Class* block = blockOf<Class>(instance, getClassID());
    return block ? PI::read(*block) : COSValue();
  }

  void setValue(COSInterface* instance, COSValue value) override {
    if (Class* block = blockOf<Class>(instance, getClassID())) setIn(*block, instance, value);
  }

  void setInBlock(SGReference& block, COSInterface* instance, COSValue value) override {
    setIn(static_cast<Class&>(block), instance, value);
  }

  // setValue on the instance's block, for a caller that holds it.
  void setIn(Class& block, COSInterface* instance, COSValue value) {
    if constexpr (!requires(Class& b, COSValue v) { PI::assign(b, v); }) {
      if (plainWord_) {
        // The word is the whole value (an on/off): compared and stored as it
        // is, without the type's calls.
        const bool same = PI::read(block) == value;
        PI::store(block, value);
        if (!same) block.doPostSet(instance, this, false, true);
        return;
      }
    }
    const COSDataType& t = *type();
    const COSValue old = PI::read(block);
    const bool same = t.isEqual(old, value);
    if constexpr (requires(Class& b, COSValue v) { PI::assign(b, v); }) {
      PI::assign(block, value);
    } else {
      const COSValue copy = t.copy(value);
      t.destroy(old);
      PI::store(block, copy);
    }
    if (!same) block.doPostSet(instance, this, false, true);
  }

  void releaseValue(COSInterface*, COSValue) const override {}
  void setModeManual(COSInterface*) override {}

  // Only while PI reads and writes through this class's getValue and
  // setValue (a computed face reads otherwise).
  bool copiesBetweenBlocks() const noexcept override {
    return std::is_same_v<decltype(&PI::getValue), COSValue (InternalPropInfo::*)(COSInterface*) const> &&
           std::is_same_v<decltype(&PI::setValue), void (InternalPropInfo::*)(COSInterface*, COSValue)>;
  }
  void copyBetweenBlocks(COSInterface*, const SGReference* from, SGReference* to, COSInterface* target) override {
    const COSValue value = PI::read(*static_cast<const Class*>(from));
    Class& block = *static_cast<Class*>(to);
    // A plain word compares as the word: no call to the type.
    const COSValue current = PI::read(block);
    if (plainWord_ ? current == value : type()->isEqual(current, value)) return;
    target->checkValid();
    setIn(block, target, value);
  }

 private:
  LazyFactoryValue factory_;
  const bool plainWord_;  // the type's isPlainWord, asked once
};

}  // namespace sgutils
