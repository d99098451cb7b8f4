// The factory values of an axes' limits and limit modes, as words for the
// generated property rows: the limits of dimension 0 (x), 1 (y) or 2 (z)
// before any data ([0 1], [0 1], [-1 1]) and the mode "auto". Each value is
// one array made once and kept for the life of the process; reading it
// through the property's type gives a copy.
#pragma once

#include <cstdint>

#include "sgclasses/SgclassesExport.h"

namespace sgclasses {

SGCLASSES_API std::uintptr_t limitFactoryWord(int dimension);
SGCLASSES_API std::uintptr_t limitModeFactoryWord();

}  // namespace sgclasses
