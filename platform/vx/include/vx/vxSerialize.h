// Saving array values to bytes and files, and reading them back.
//
// A saved set is an ordered list of named values. The bytes are MessagePack
// (one array per value: class id, dimensions, complexity, payload) inside a
// frame with a magic number, a format version, the lengths and a checksum;
// the body is compressed with zstd when that makes it smaller. The layout is
// documented in docs/file-format.md.
//
// The reader trusts nothing it reads: every length is checked against the
// bytes that are really there and against fixed limits before anything is
// allocated, and any fault raises "VANTEL:vx:serialize:<Key>". A value is
// either read whole or not at all: nothing read is handed back on failure.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "foundation/PlatformExport.h"
#include "vx/matrix.h"
#include "vx/vxTypes.h"

// One named value of a saved set; the value is owned.
struct vxNamedValue {
  std::string name;
  matrix::unique_vxArray value;
};

// What the reader needs from the layers above it.
struct vxReadOptions {
  // Makes a function handle from its text ("@sin", "@(x)x+1"); without it a
  // saved function handle raises VANTEL:vx:serialize:NoFunctionHandles.
  std::function<vxArray*(const std::string& text)> makeFunctionHandle;
};

// The format version this build writes; files of a newer version are refused.
inline constexpr std::uint32_t vxSerializeFormatVersion = 1;

// The framed bytes of the values, in order. Object arrays raise
// VANTEL:vx:serialize:UnsupportedClass.
VX_API std::vector<std::uint8_t> vxSerializeValues(std::span<const std::pair<std::string, const vxArray*>> values);
// The values of framed bytes, in saved order.
VX_API std::vector<vxNamedValue> vxDeserializeValues(std::span<const std::uint8_t> bytes, const vxReadOptions& options);

// Writes the values to a file atomically: a temporary file beside it is
// written, flushed and renamed over the target, so a failed save leaves the
// previous file as it was.
VX_API void vxSaveValuesFile(const std::string& path, std::span<const std::pair<std::string, const vxArray*>> values);
// Reads a file written by vxSaveValuesFile.
VX_API std::vector<vxNamedValue> vxLoadValuesFile(const std::string& path, const vxReadOptions& options);
