// The registration of the generated classes: one function per class, called
// in list order once per instance (or once per process without the
// per-instance store). Each part of the library that adds a generated class
// appends its function to the list in src/startup/GeneratedClasses.cpp.
#pragma once

#include <cstddef>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

using ClassRegistrationFn = void (*)();

// The list, in the order of the calls.
SGUTILS_API const ClassRegistrationFn* generatedClassRegistrations(std::size_t& count) noexcept;
// Runs the list once (per instance or per process).
SGUTILS_API void registerGeneratedClasses();

}  // namespace sgutils
