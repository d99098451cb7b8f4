// A conversion whose body is a function object, so that a type library can
// write each conversion as a lambda. makeConversion allocates it for
// COSTypeRepository::addConversion, which takes ownership.
#pragma once

#include <utility>

#include "vcos/COSTypeConversion.h"

template <class F>
class COSFunctionConversion final : public COSTypeConversion {
 public:
  explicit COSFunctionConversion(F f) : f_(std::move(f)) {}
  COSValue convert(COSValue from) const override { return f_(from); }

 private:
  F f_;
};

template <class F>
COSTypeConversion* makeConversion(F f) {
  return new COSFunctionConversion<F>(std::move(f));
}
