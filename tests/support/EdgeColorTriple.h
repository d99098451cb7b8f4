// A colour triple "EdgeColor", "EdgeColorMode", "EdgeColor_I" written by hand
// with the generated property kinds, for test and benchmark classes whose
// Graphics block `Block` has the members
//   graphics::datatype::RGBAColor edgeColor;  unsigned char edgeColorMode;
// The value is held by value, so a set allocates nothing.
#pragma once

#include "sgdatatypes/RGBAColor.h"
#include "sgutils/propinfos/DependentPropInfo.h"
#include "sgutils/propinfos/InternalPropInfo.h"
#include "sgutils/propinfos/ModePropInfo.h"
#include "sgutils/propinfos/PropertyDefinition.h"
#include "vcos/COSClass.h"

namespace sgtest {

template <class Block>
struct EdgeColor_IPI final : sgutils::InternalPropInfo<Block, EdgeColor_IPI<Block>> {
  using sgutils::InternalPropInfo<Block, EdgeColor_IPI<Block>>::InternalPropInfo;
  static COSValue read(const Block& b) noexcept { return COSValue(&b.edgeColor); }
  static void assign(Block& b, COSValue v) {
    b.edgeColor = v.isEmpty() ? graphics::datatype::RGBAColor() : *v.asPointer<const graphics::datatype::RGBAColor>();
  }
  static COSValue makeFactoryValue(const COSDataType& t) { return t.copy(COSValue()); }
};

template <class Block>
struct EdgeColorModePI final : sgutils::ModePropInfo<Block, EdgeColorModePI<Block>> {
  using sgutils::ModePropInfo<Block, EdgeColorModePI<Block>>::ModePropInfo;
  static unsigned char readMode(const Block& b) noexcept { return b.edgeColorMode; }
  static void storeMode(Block& b, unsigned char m) noexcept { b.edgeColorMode = m; }
};

template <class Block>
struct EdgeColorPI final : sgutils::DependentPropInfo<Block, EdgeColorPI<Block>> {
  using sgutils::DependentPropInfo<Block, EdgeColorPI<Block>>::DependentPropInfo;
};

// Adds the three faces to `cls`, public face first, with the usual flags.
template <class Block>
void addEdgeColorTriple(COSClass* cls) {
  const COSID me = cls->getID();
  const char* color = "vantel.graphics.datatype.RGBAColor";
  cls->addProperty(new EdgeColorPI<Block>(me, "EdgeColor", COSDataTypePtr(color), PublicAccess, PublicAccess, 12196,
                                          "EdgeColor PropInfo", COSID("EdgeColor_I"), COSID("EdgeColorMode")));
  cls->addProperty(new EdgeColorModePI<Block>(me, "EdgeColorMode", sgutils::detail::autoManualType(), PublicAccess,
                                              PublicAccess, 548, "EdgeColorMode PropInfo"));
  cls->addProperty(new EdgeColor_IPI<Block>(me, "EdgeColor_I", COSDataTypePtr(color), PublicAccess, PublicAccess, 1572,
                                            "EdgeColor_I PropInfo"));
}

}  // namespace sgtest
