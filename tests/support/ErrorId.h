// The identifier of the error that a call raises, or "" when it raises none;
// for tests that check which error a refusal gives.
#pragma once

#include <functional>
#include <string>

#include "foundation/core/except/IMsgIDException.h"

namespace sgtest {

inline std::string errorId(const std::function<void()>& f) {
  try {
    f();
  } catch (const foundation::core::except::IMsgIDException& e) {
    return e.identifier();
  }
  return "";
}

}  // namespace sgtest
