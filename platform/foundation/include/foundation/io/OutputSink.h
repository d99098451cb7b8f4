// The one place where command-line output goes. utPrintf, the uout stream
// and every display of the runtime write through the installed sink, so a
// test or an embedding program can take the output by installing its own.
#pragma once

#include <functional>
#include <string_view>

#include "foundation/PlatformExport.h"

namespace services::io {

using OutputSink = std::function<void(std::string_view text)>;

// Installs a sink and returns the one it replaces; an empty sink restores the
// default, which writes to standard output.
FOUNDATION_API OutputSink setOutputSink(OutputSink sink);

// Hands text to the current sink.
FOUNDATION_API void writeOutput(std::string_view text);

}  // namespace services::io
