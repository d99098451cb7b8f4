// The engine of the graphics-file fuzz target, shared with the classes'
// tests, which replay its corpus.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace sgfuzz {

// Starts the library and the classes (once).
void startGraphicsFileLoad();
// Frames `body` as the MessagePack body of a saved file (version 2, with its
// checksum, so the loader's checks are reached) and loads it. Returns "" when
// the load built its objects or refused the file with an identifier of the
// reader or the loader and left no object behind; otherwise a description of
// what broke. Everything loaded is deleted before it returns.
std::string loadGraphicsBody(std::span<const std::uint8_t> body);

}  // namespace sgfuzz
