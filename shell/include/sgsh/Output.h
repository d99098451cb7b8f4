// Where the language writes its output: displays, disp, fprintf, warnings
// and error reports all go through writeOutput, which hands the text to the
// platform's printing sink, so a test or an embedding program can capture it.
#pragma once

#include <functional>
#include <string_view>

namespace sgsh {

using OutputSink = std::function<void(std::string_view text)>;

void writeOutput(std::string_view text);
// Installs a sink and returns the previous one; an empty sink restores
// standard output.
OutputSink setOutputSink(OutputSink sink);

// Routes output to a sink for the lifetime of the guard.
class OutputCapture {
 public:
  explicit OutputCapture(OutputSink sink) : previous_(setOutputSink(std::move(sink))) {}
  ~OutputCapture() { setOutputSink(std::move(previous_)); }
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

 private:
  OutputSink previous_;
};

}  // namespace sgsh
