// What the command-line display shows of each concrete class: the
// properties of its scalar display and the label in its header.
#pragma once

namespace sgclasses {

// Registers the display data of the concrete classes (part of
// registerClasses).
void registerDisplayData();

}  // namespace sgclasses
