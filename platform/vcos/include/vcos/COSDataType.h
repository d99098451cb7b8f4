// A value type: the one place that knows what the COSValue word means for a
// type name (docs/datatypes.md). copy hands out a value the caller owns and
// destroy frees one; copyInternal/destroyInternal do the same for a value a
// property stores.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "vcos/COSInterface.h"
#include "vcos/COSInterfacePtr.h"

class VCOS_API COSDataType : public COSInterface {
 public:
  explicit COSDataType(COSID name) noexcept : COSInterface(COSKind::DataType), name_(name) {}

  virtual const char* getName() const;
  virtual const char* getDescription() const;
  virtual const char* getDetailedDescription() const;
  virtual const char* getPossibleValuesDescription() const;
  virtual std::vector<std::string> getPossibleValues() const;
  // True when the word is a value of this type. With `raise`, a bad value
  // raises "VANTEL:vcos:InvalidValueForType" instead of returning false.
  virtual bool checkValue(COSValue value, bool raise) const;
  virtual bool isEqual(COSValue a, COSValue b) const;
  virtual bool isEqualWithEqualNans(COSValue a, COSValue b) const;
  virtual bool isIdentical(COSValue a, COSValue b) const;
  // <0, 0, >0.
  virtual int compare(COSValue a, COSValue b) const;
  virtual COSValue copy(COSValue value) const;
  virtual COSValue copyInternal(COSValue value) const;
  virtual void destroy(COSValue value) const;
  virtual void destroyInternal(COSValue value) const;
  virtual std::size_t getHashCode(COSValue value) const;
  virtual bool canContainInterfaces() const;
  virtual COSValue getReference(COSValue value) const;
  virtual void releaseReference(COSValue value) const;
  virtual void getInterfaces(COSValue value, std::vector<COSInterfacePtr>& out) const;
  virtual int getMatFormat() const;
  // True when the word is a vxArray*.
  virtual bool isVANTELArrayType() const;
  // True when the word is the whole value, compared, copied and freed as the
  // plain word (the defaults of isEqual, copy and destroy): a holder may then
  // compare and store it directly. False unless the type says so.
  virtual bool isPlainWord() const;
  virtual std::size_t keyHash(COSValue value) const;
  virtual bool keyMatch(COSValue a, COSValue b) const;

  COSID getID() const noexcept { return name_; }

 private:
  COSID name_;
};
