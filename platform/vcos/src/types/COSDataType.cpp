// Defaults of a data type: a plain word that is copied as it is and needs no
// freeing. Types whose word points at something override copy and destroy.
#include "vcos/COSDataType.h"

#include <functional>

#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSDataTypePtr.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"

const char* COSDataType::getName() const { return name_.c_str(); }
const char* COSDataType::getDescription() const { return name_.c_str(); }
const char* COSDataType::getDetailedDescription() const { return ""; }
const char* COSDataType::getPossibleValuesDescription() const { return ""; }
std::vector<std::string> COSDataType::getPossibleValues() const { return {}; }
bool COSDataType::checkValue(COSValue, bool) const { return true; }
bool COSDataType::isEqual(COSValue a, COSValue b) const { return a == b; }
bool COSDataType::isEqualWithEqualNans(COSValue a, COSValue b) const { return isEqual(a, b); }
bool COSDataType::isIdentical(COSValue a, COSValue b) const { return a == b; }
int COSDataType::compare(COSValue a, COSValue b) const { return a.word() < b.word() ? -1 : a.word() > b.word() ? 1 : 0; }
COSValue COSDataType::copy(COSValue value) const { return value; }
COSValue COSDataType::copyInternal(COSValue value) const { return copy(value); }
void COSDataType::destroy(COSValue) const {}
void COSDataType::destroyInternal(COSValue value) const { destroy(value); }
std::size_t COSDataType::getHashCode(COSValue value) const { return std::hash<std::uintptr_t>()(value.word()); }
bool COSDataType::canContainInterfaces() const { return false; }
COSValue COSDataType::getReference(COSValue value) const { return copy(value); }
void COSDataType::releaseReference(COSValue value) const { destroy(value); }
void COSDataType::getInterfaces(COSValue, std::vector<COSInterfacePtr>&) const {}
int COSDataType::getMatFormat() const { return 0; }
bool COSDataType::isVANTELArrayType() const { return false; }
bool COSDataType::isPlainWord() const { return false; }
std::size_t COSDataType::keyHash(COSValue value) const { return getHashCode(value); }
bool COSDataType::keyMatch(COSValue a, COSValue b) const { return isEqual(a, b); }

COSDataType* COSDataTypePtrHelper::getObject(const COSInterfacePtr& p) noexcept {
  return p && p->getKind() == COSKind::DataType ? static_cast<COSDataType*>(p.get()) : nullptr;
}

COSDataTypePtr::COSDataTypePtr(const char* typeName) : COSDataTypePtr(COSID(typeName)) {}

COSDataTypePtr::COSDataTypePtr(COSID typeId) : COSDataTypePtr(COSTypeRepository::getType(typeId)) {
  if (isNull()) throw foundation::core::except::Error(vcos::msg::UnknownType, typeId.str());
}

COSDataTypePtr::COSDataTypePtr(COSDataType* type) : Base(type) {}

COSID COSDataTypePtr::getID() const noexcept { return isNull() ? COSID() : get()->getID(); }

COSTypeConversion::~COSTypeConversion() = default;

bool COSTypeConversion::convertInPlace(COSValue, void*, COSValue&, EndInPlace&) const { return false; }
