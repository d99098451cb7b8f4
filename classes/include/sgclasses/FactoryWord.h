// The factory value of a generated property whose type's own default is not
// the property's initial value: `factoryWord([]{ return T(...); })` keeps
// one value per call site for the life of the process and gives the word
// that points at it.
#pragma once

#include <cstdint>

namespace sgclasses {

template <class Make>
std::uintptr_t factoryWord(Make make) {
  static const auto value = make();
  return reinterpret_cast<std::uintptr_t>(&value);
}

}  // namespace sgclasses
