// Collects everything written to the output sink while it lives, then puts
// back the sink it replaced. For tests of anything that prints.
#pragma once

#include <string>

#include "foundation/PlatformExport.h"
#include "foundation/io/OutputSink.h"

namespace services::io {

class FOUNDATION_API OutputCapture {
 public:
  OutputCapture();
  ~OutputCapture();
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  const std::string& text() const noexcept { return text_; }
  // Returns the text so far and starts again with nothing.
  std::string take();

 private:
  std::string text_;
  OutputSink previous_;
};

}  // namespace services::io
