// The properties of "vantel.graphics.Graphics" (see GraphicsProperties.h).
// One table row per property; the struct-valued ones hand out a shared copy
// (the receiver's to free) and store through the block's setters.
#include "src/classinfo/GraphicsProperties.h"

#include <cassert>

#include "sgutils/SGHandle.h"
#include "vcos/COSClass.h"
#include "vcos/COSPropT.h"
#include "vx/vxCreate.h"

namespace sgutils {
namespace {

using StructGetter = const vxArray* (*)(SGHandle&);
using StructSetter = void (*)(SGHandle&, const vxArray*);

SGHandle& blockOf(COSInterface* object) {
  SGHandle* block = SGHandle::fromObject(object);
  assert(block && "a Graphics property read on an object without the Graphics block");
  return *block;
}

class StructPI final : public COSPropT {
 public:
  StructPI(COSID cls, const char* name, MemberAccess get, MemberAccess set, unsigned flags, const char* description,
           COSValue initial, StructGetter getter, StructSetter setter)
      : COSPropT(cls, COSID(name), COSDataTypePtr("struct"), initial, get, set, flags, description),
        getter_(getter),
        setter_(setter) {}
  COSValue getValue(COSInterface* object) const override {
    const vxArray* stored = getter_(blockOf(object));
    return COSValue(stored ? vxCreateSharedDataCopy(stored) : vxCreateStructMatrix(1, 1, 0, nullptr));
  }
  void setValue(COSInterface* object, COSValue value) override {
    setter_(blockOf(object), value.asPointer<const vxArray>());
  }

 private:
  StructGetter getter_;
  StructSetter setter_;
};

class InternalPI final : public COSPropT {
 public:
  explicit InternalPI(COSID cls)
      : COSPropT(cls, COSID("Internal"), COSDataTypePtr("logical scalar"), COSValue::fromBool(false), PublicAccess,
                 PublicAccess, 964, "The value of the internal object flag") {}
  COSValue getValue(COSInterface* object) const override { return COSValue::fromBool(blockOf(object).getInternal()); }
  void setValue(COSInterface* object, COSValue value) override { blockOf(object).setInternal(value.asBool()); }
};

// The initial value the three struct properties share; lives for the process.
COSValue sharedEmptyStruct() {
  static vxArray* const initial = [] {
    vxArray* s = vxCreateStructMatrix(1, 1, 0, nullptr);
    vxSetArrayScope(s, vxSCOPE_PERSISTENT);
    return s;
  }();
  return COSValue(initial);
}

}  // namespace

void addGraphicsProperties(COSClass* cls) {
  const COSID me = cls->getID();
  const COSValue initial = sharedEmptyStruct();
  struct Row {
    const char* name;
    MemberAccess get, set;
    unsigned flags;
    const char* description;
    StructGetter getter;
    StructSetter setter;
  };
  static const Row rows[] = {
      {"ApplicationData", PublicAccess, PublicAccess, 932, "The ApplicationData property",
       [](SGHandle& h) { return h.getApplicationData(); }, [](SGHandle& h, const vxArray* v) { h.setApplicationData(v); }},
      {"SerializableApplicationData", ProtectedAccess, PrivateAccess, 17284,
       "The SerializableApplicationData property", [](SGHandle& h) { return h.getSerializableApplicationData(); },
       [](SGHandle& h, const vxArray* v) { h.setSerializableApplicationData(v); }},
      {"DefaultPropMap_Internal", PublicAccess, PublicAccess, 932, "The DefaultProp property",
       [](SGHandle& h) { return h.getDefaultProp(); }, [](SGHandle& h, const vxArray* v) { h.setDefaultProp(v); }},
  };
  cls->addProperty(new InternalPI(me));
  for (const Row& r : rows)
    cls->addProperty(new StructPI(me, r.name, r.get, r.set, r.flags, r.description, initial, r.getter, r.setter));
}

}  // namespace sgutils
