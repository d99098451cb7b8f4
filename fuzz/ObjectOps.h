// Random sequences of operations on graphics objects, decoded from bytes:
// the engine of the object-operations fuzz target, also replayed by the
// classes' tests over the kept corpus and the regression inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace sgfuzz {

// Starts the graphics classes once per process.
void startObjectOps();

// Runs the operations `data` encodes on a fresh tree below the root and
// deletes everything at the end. After each step the tree must be
// consistent (links agree both ways, nothing deleted reachable), an
// operation on a deleted object must raise, and at the end the live object
// count must be back where it started. Returns the first violation, empty
// when there is none. Errors the operations raise are expected and dropped.
std::string runObjectOps(std::span<const std::uint8_t> data);

}  // namespace sgfuzz
