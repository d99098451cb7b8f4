// Not installed; internal to the class-object system.
//
// Reads one property of many instances of one class as one client. A read
// does what getPropertyValue does (access check, the PreGet and PostGet
// listeners of the classes and of the object, the custom get path), but the
// property's slot is found once, when the reader is bound, not per read.
//
// Where none of those steps has anything to do and the property is a plain
// COSPropT (its value is the word in the generic store, or its default), a
// read asked to `lend` hands out that word itself instead of a copy: nothing
// is allocated and nothing is given back. A lent word stays valid until code
// runs that may set the property or delete the object; it is for comparing,
// not for passing on.
#pragma once

#include <cassert>
#include <cstdint>

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/InstanceExtras.h"
#include "vcos/src/core/ObjectOps.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FindobjLender.h"

class COSClient;
class COSCustomMetaClass;

namespace vcos::internal {

class SlotReader {
 public:
  // A value read; given back, the way its read says, when it goes.
  class Value {
   public:
    Value() = default;
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { reset(); }

    COSValue word() const noexcept { return word_; }
    void reset() noexcept {
      if (object_) giveBack();
    }

   private:
    friend class SlotReader;
    void giveBack() noexcept;

    COSValue word_;
    COSInterface* object_ = nullptr;  // set while an owned value is out; null when lent
    COSPropInfo* property_ = nullptr;
    COSCustomMetaClass* customGet_ = nullptr;  // the meta class that handed it out
  };

  // Binds to `property`, read as `client` on instances of `cls`. A property
  // without a slot in `cls` (one added to an instance) is read through
  // getPropertyValue.
  void bind(const COSClass* cls, const COSPropInfo* property, const COSClient* client) noexcept;

  const COSPropInfo* property() const noexcept { return property_; }

  // Reads the property of `o`, an instance of the bound class, into `out`,
  // as getPropertyValue does and raising as it does, except that a property
  // the client may not read gives false. `lend`: the value may be lent (see
  // above).
  bool read(COSInterface* o, Value& out, bool lend) const {
    out.reset();
    assert((!tables_ || &o->getClass()->tables() == tables_) && "a reader is bound to the class of the object");
    if (tables_) {
      o->checkValid();
      const PropSlot& s = tables_->properties[index_];  // the table only grows: the index holds
      const InstanceExtras* x = ObjectOps::extrasIfAny(o);
      // The plain course: the slot still ours, nothing routing the get
      // elsewhere, no listeners on the object, public get access.
      if (s.property == property_ && !(s.route & kGetRoutes) && !(x && x->propertyListenerCount > 0) &&
          property_->getMemberGetAccess() == PublicAccess && !property_->getExtendedGetAccess()) {
        if (lend && lender_ && lender_(o, out.word_)) return true;
        if (lend && storedWord_) {
          out.word_ = default_;
          if (x)
            for (const StoredValue& v : x->values)
              if (v.property == property_) {
                out.word_ = v.value;
                break;
              }
          return true;
        }
        out.word_ = property_->getValue(o);
        out.property_ = property_;
        out.object_ = o;
        return true;
      }
    }
    return readThroughPath(o, out);
  }

  // Whether a read of `o` would take the plain course above (the slot still
  // ours, no routed get, no listeners on the object, public get access), so
  // that what a lender or a key of findobj says stands for the value.
  bool plainCourse(const COSInterface* o) const noexcept {
    if (!tables_) return false;
    const PropSlot& s = tables_->properties[index_];
    const InstanceExtras* x = ObjectOps::extrasIfAny(o);
    return s.property == property_ && !(s.route & kGetRoutes) && !(x && x->propertyListenerCount > 0) &&
           property_->getMemberGetAccess() == PublicAccess && !property_->getExtendedGetAccess();
  }

 private:
  bool readThroughPath(COSInterface* o, Value& out) const;

  COSPropInfo* property_ = nullptr;
  const COSClient* client_ = nullptr;
  ClassTables* tables_ = nullptr;  // of the bound class; null without a slot
  std::uint32_t index_ = 0;        // of the property's slot
  bool storedWord_ = false;        // a plain COSPropT with a slot: may lend
  COSValue default_;               // its default, lent
  FindobjLender lender_ = nullptr;  // what lends the value of a computed property
};

}  // namespace vcos::internal
