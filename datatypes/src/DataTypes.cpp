// The data type classes of DataTypes.h.
#include "DataTypes.h"

#include "foundation/core/except/Error.h"
#include "sgdatatypes/Registration.h"

using foundation::core::except::Error;

namespace graphics::datatype::detail {

void raiseInvalidValue(const COSDataType* type) { throw Error("VANTEL:datatypes:InvalidValue", type->getName()); }

OnOffType::OnOffType() : COSDataType(COSID(kOnOffType)) {}

bool OnOffType::checkValue(COSValue value, bool raise) const {
  if (value.word() <= 1) return true;
  if (raise) raiseInvalidValue(this);
  return false;
}

std::vector<std::string> OnOffType::getPossibleValues() const { return {"on", "off"}; }

EnumerationType::EnumerationType(COSID name, const EnumerationDescription& description)
    : COSDataType(name), description_(description) {}

bool EnumerationType::checkValue(COSValue value, bool raise) const {
  if (!value.isEmpty() && byteOf(value) < description_.count) return true;
  if (raise) raiseInvalidValue(this);
  return false;
}

bool EnumerationType::isEqual(COSValue a, COSValue b) const { return byteOf(a) == byteOf(b); }

int EnumerationType::compare(COSValue a, COSValue b) const { return byteOf(a) - byteOf(b); }

COSValue EnumerationType::copy(COSValue value) const {
  return COSValue(canonicalEnumerationByte(static_cast<unsigned char>(byteOf(value))));
}

std::size_t EnumerationType::getHashCode(COSValue value) const { return static_cast<std::size_t>(byteOf(value)); }

std::vector<std::string> EnumerationType::getPossibleValues() const {
  const unsigned char n = description_.listed < description_.count ? description_.listed : description_.count;
  return std::vector<std::string>(description_.names, description_.names + n);
}

COSInterfaceType::COSInterfaceType() : COSDataType(COSID(kCOSInterfaceType)) {}

COSValue COSInterfaceType::copy(COSValue value) const {
  if (auto* o = value.asPointer<COSInterface>()) o->addReference(COSStrongReference);
  return value;
}

void COSInterfaceType::destroy(COSValue value) const {
  if (auto* o = value.asPointer<COSInterface>()) o->releaseReference(COSStrongReference);
}

void COSInterfaceType::getInterfaces(COSValue value, std::vector<COSInterfacePtr>& out) const {
  if (auto* o = value.asPointer<COSInterface>()) out.emplace_back(o);
}

DoubleWordType::DoubleWordType() : COSDataType(COSID("double")) {}

}  // namespace graphics::datatype::detail
