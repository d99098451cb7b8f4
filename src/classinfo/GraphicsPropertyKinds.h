// Not installed; internal to sgutils.
// The property classes of the Graphics properties described in
// GraphicsProperties.def: a logical value and a struct value, each read and
// written through a getter and a setter of the object's Graphics block.
#pragma once

#include <cassert>

#include "vcos/COSPropT.h"
#include "vx/vxCreate.h"

namespace sgutils {

namespace detail {
// The initial value the struct properties share; lives for the process.
COSValue sharedEmptyStruct();

template <class Block>
Block& graphicsBlockOf(COSInterface* object) {
  Block* block = Block::fromObject(object);
  assert(block && "a Graphics property read on an object without the Graphics block");
  return *block;
}
}  // namespace detail

template <class Block, bool (Block::*Get)() const noexcept, void (Block::*Set)(bool) noexcept>
class LogicalAccessorPI final : public COSPropT {
 public:
  LogicalAccessorPI(COSID cls, const char* name, COSDataTypePtr type, MemberAccess get, MemberAccess set,
                    unsigned flags, const char* description)
      : COSPropT(cls, COSID(name), std::move(type), COSValue::fromBool(false), get, set, flags, description) {}
  COSValue getValue(COSInterface* object) const override {
    return COSValue::fromBool((detail::graphicsBlockOf<Block>(object).*Get)());
  }
  void setValue(COSInterface* object, COSValue value) override {
    (detail::graphicsBlockOf<Block>(object).*Set)(value.asBool());
  }
};

// Hands out a shared copy (the receiver's to free) and stores through the
// block's setter.
template <class Block, auto Get, auto Set>
class StructAccessorPI final : public COSPropT {
 public:
  StructAccessorPI(COSID cls, const char* name, COSDataTypePtr type, MemberAccess get, MemberAccess set,
                   unsigned flags, const char* description)
      : COSPropT(cls, COSID(name), std::move(type), detail::sharedEmptyStruct(), get, set, flags, description) {}
  COSValue getValue(COSInterface* object) const override {
    const vxArray* stored = (detail::graphicsBlockOf<Block>(object).*Get)();
    return COSValue(stored ? vxCreateSharedDataCopy(stored) : vxCreateStructMatrix(1, 1, 0, nullptr));
  }
  void setValue(COSInterface* object, COSValue value) override {
    (detail::graphicsBlockOf<Block>(object).*Set)(value.asPointer<const vxArray>());
  }
};

}  // namespace sgutils
