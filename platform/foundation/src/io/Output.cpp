// The output sink, the uout stream that writes through it, and the capture
// helper for tests.
#include <cstdio>
#include <mutex>
#include <utility>
#include <streambuf>

#include "foundation/io/OutputCapture.h"
#include "foundation/io/OutputSink.h"
#include "foundation/io/uout.h"

namespace services::io {

namespace {

void writeToStdout(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

struct SinkHolder {
  // Recursive: a sink may itself print (a tee, for one).
  std::recursive_mutex mutex;
  OutputSink sink = writeToStdout;
};

SinkHolder& holder() {
  static SinkHolder h;
  return h;
}

// Hands every character to the sink as it comes, so uout and utPrintf keep
// their order without a flush.
class SinkBuffer : public std::streambuf {
 protected:
  int_type overflow(int_type ch) override {
    if (traits_type::eq_int_type(ch, traits_type::eof())) return traits_type::not_eof(ch);
    char c = traits_type::to_char_type(ch);
    writeOutput(std::string_view(&c, 1));
    return ch;
  }
  std::streamsize xsputn(const char* s, std::streamsize n) override {
    writeOutput(std::string_view(s, static_cast<std::size_t>(n)));
    return n;
  }
};

SinkBuffer uoutBuffer;

}  // namespace

std::ostream uout(&uoutBuffer);

OutputSink setOutputSink(OutputSink sink) {
  SinkHolder& h = holder();
  std::lock_guard lock(h.mutex);
  OutputSink old = std::move(h.sink);
  h.sink = sink ? std::move(sink) : OutputSink(writeToStdout);
  return old;
}

void writeOutput(std::string_view text) {
  SinkHolder& h = holder();
  std::lock_guard lock(h.mutex);
  h.sink(text);
}

OutputCapture::OutputCapture() : previous_(setOutputSink([this](std::string_view text) { text_.append(text); })) {}

OutputCapture::~OutputCapture() { setOutputSink(std::move(previous_)); }

std::string OutputCapture::take() { return std::exchange(text_, std::string()); }

}  // namespace services::io
