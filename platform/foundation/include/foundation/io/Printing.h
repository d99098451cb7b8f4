// Printing services of the command line: formatted output, the window width,
// line wrapping, and the switches that say how output will be shown.
//
// Everything prints through the one output sink (services/io OutputSink.h).
// The settable values are process-wide, written between commands.
#pragma once

#include <cstddef>
#include <string>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

// printf-style output through the output sink; returns the number of bytes written.
FOUNDATION_API int utPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// True when output may carry hyperlink markup ("<a href=...>").
FOUNDATION_API bool utPrintfIsHot() noexcept;

// Length of a UTF-8 text in characters, which is its width on the command
// line; a null text has length 0.
FOUNDATION_API std::size_t utStrlen(const char* text) noexcept;

// The line break of command-line output.
FOUNDATION_API const char* GetNewline() noexcept;

// Width of the command window in characters: the value set by
// services::io::setNumWindowColumns, else $COLUMNS when it is a positive
// number, else 80.
FOUNDATION_API int ioGetNumWindowColumns() noexcept;

// The significant digits of numbers in short value texts (an object's
// properties in its display): 5, or 15 once the language asks for long
// numbers.
FOUNDATION_API int ioGetNumberDigits() noexcept;

// True when output is shown in the desktop's command window rather than a
// terminal. Always false unless set.
FOUNDATION_API bool ioVantelDesktopInUse() noexcept;

// The name of the variable being displayed, when the language has said so
// with an ArrayNameScope; empty otherwise.
FOUNDATION_API std::string ioGetArrayName(const vxArray* array, int position);

// Fits the first `length` bytes of `text` (UTF-8) to `width` characters,
// breaking at blanks; a word longer than the width is split. Widths count
// characters, not bytes.
//   flags 0 (services::io::kWrapLines): every line of the result fits the
//     width; lines are joined with GetNewline(). Blanks at a break are
//     dropped, blanks inside a line are kept, existing line breaks are kept.
//     With `desktop` true the text comes back unchanged, because the
//     desktop's command window wraps long lines itself.
//   flags 1 (services::io::kCutToWidth): only the first line of that
//     wrapping, whatever `desktop` says: the way a label is cut to the room
//     it has.
// A width of 0 means no limit.
FOUNDATION_API std::string ioWrapString(const char* text, std::size_t length, std::size_t width, int flags,
                                        bool desktop);

namespace services::io {

enum WrapFlags : int { kWrapLines = 0, kCutToWidth = 1 };

// Each setter returns the value it replaces.
FOUNDATION_API bool setPrintfHot(bool hot) noexcept;
// 0 goes back to the default from the environment.
FOUNDATION_API int setNumWindowColumns(int columns) noexcept;
FOUNDATION_API bool setVantelDesktopInUse(bool inUse) noexcept;
FOUNDATION_API bool setLongNumbers(bool longNumbers) noexcept;

}  // namespace services::io
