// Starting and ending the concrete graphics classes.
#pragma once

#include "sgclasses/SgclassesExport.h"

namespace sgclasses {

// Starts the graphics library, adds the classes to their packages and
// installs the root accessor (once per process; the root is made on first
// use). Called by the program that hosts the classes, at start-up.
SGCLASSES_API void registerClasses();

// Deletes the root and everything below it (before the library ends); an
// error a listener raises during the deletion is dropped.
SGCLASSES_API void releaseRoot();

}  // namespace sgclasses
