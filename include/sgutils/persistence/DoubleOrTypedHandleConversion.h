// The conversion from arrays to a property type named after a graphics
// class ("<class>", "<class> scalar", "<class> vector", "<class> matrix"),
// and back. It lets such a property take an object, the number of an object
// or an empty value: an empty double or empty placeholder array means "no
// object", numbers become their objects. It does not check the class of what
// it is given; that is the type's job.
//
// The array forms hold an object array. The scalar form holds one object
// (a counted COSInterface*): an object array of one element or a number
// becomes that object, an empty value null, and anything else is refused.
// Back to an array, null becomes the empty array of the class, or of the
// placeholder class when the class is abstract and so has no empty of its own.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSTypeConversion.h"

namespace sgutils {

class SGUTILS_API DoubleOrTypedHandleConversion final : public COSTypeConversion {
 public:
  enum class Direction : unsigned char { FromArray, ToArray };
  enum class Form : unsigned char { Array, Scalar };

  DoubleOrTypedHandleConversion(COSID classId, bool substitutePlaceholder, Direction direction, Form form);

  COSValue convert(COSValue from) const override;

  // Installs both directions for the four type names of the class, in place
  // of any conversions there before. Called for each class added to a
  // package.
  static void replaceConverters(COSID classId, bool isAbstract);

 private:
  COSValue fromArray(COSValue from) const;
  COSValue toArray(COSValue from) const;

  COSID classId_;
  bool substitutePlaceholder_;
  Direction direction_;
  Form form_;
  std::string typeName_;  // for the error text
};

}  // namespace sgutils
