// Not installed; internal to the object arrays of the class-object system.
#pragma once

namespace vcos::array {

// Lends the array runtime the class names, is-a tests and heterogeneity of
// object arrays. Part of the built-in registration.
void installObjectHooks();

}  // namespace vcos::array
