// The property name of one default pair: the interned name, with the
// interned names of its mode and internal faces ("LineWidthMode",
// "LineWidth_I") when the maker knew them, so that applying the pair looks
// nothing up by text. Made from text it interns the name alone; it reads
// back as text.
#pragma once

#include <string>

#include "vcos/COSInternedBase.h"

namespace sgutils {

class DefaultPairName {
 public:
  DefaultPairName(const char* name) : name_(name) {}                  // NOLINT: text converts
  DefaultPairName(const std::string& name) : name_(std::string_view(name)) {}  // NOLINT: text converts
  DefaultPairName(COSID name, COSID mode, COSID internal) noexcept : name_(name), mode_(mode), internal_(internal) {}

  COSID id() const noexcept { return name_; }
  // Null when made from text.
  COSID modeId() const noexcept { return mode_; }
  COSID internalId() const noexcept { return internal_; }

  const std::string& str() const noexcept { return name_.str(); }
  operator std::string() const { return name_.str(); }  // NOLINT: reads as text
  friend bool operator==(const DefaultPairName& a, const std::string& b) noexcept { return a.str() == b; }

 private:
  COSID name_, mode_, internal_;
};

}  // namespace sgutils
