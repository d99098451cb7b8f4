// Formatted output and the process-wide printing switches.
#include "foundation/io/Printing.h"

#include <atomic>
#include <cassert>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "foundation/io/ArrayNameScope.h"
#include "foundation/io/OutputSink.h"

namespace {

std::atomic<bool> printfHot{false};
std::atomic<int> windowColumns{0};  // 0: from the environment
std::atomic<bool> desktopInUse{false};
std::atomic<bool> longNumbers{false};

int columnsFromEnvironment() noexcept {
  static const int columns = [] {
    const char* env = std::getenv("COLUMNS");
    int value = 0;
    if (env) {
      std::string_view text(env);
      auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
      if (ec != std::errc() || ptr != text.data() + text.size()) value = 0;
    }
    return value > 0 ? value : 80;
  }();
  return columns;
}

struct NamedArray {
  const vxArray* array;
  int position;
  std::string name;
};

// Per thread: the language opens and closes these scopes around a display
// on its own thread, strictly nested.
thread_local std::vector<NamedArray> namedArrays;

}  // namespace

int utPrintf(const char* format, ...) {
  char small[512];
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  int n = std::vsnprintf(small, sizeof small, format, args);
  va_end(args);
  if (n < 0) {
    va_end(again);
    return n;
  }
  if (static_cast<std::size_t>(n) < sizeof small) {
    va_end(again);
    services::io::writeOutput(std::string_view(small, static_cast<std::size_t>(n)));
    return n;
  }
  std::string large(static_cast<std::size_t>(n) + 1, '\0');
  std::vsnprintf(large.data(), large.size(), format, again);
  va_end(again);
  large.resize(static_cast<std::size_t>(n));
  services::io::writeOutput(large);
  return n;
}

bool utPrintfIsHot() noexcept { return printfHot.load(std::memory_order_relaxed); }

std::size_t utStrlen(const char* text) noexcept {
  std::size_t n = 0;
  for (const char* p = text; p && *p; ++p) n += (static_cast<unsigned char>(*p) & 0xC0) != 0x80;
  return n;
}

const char* GetNewline() noexcept { return "\n"; }

int ioGetNumWindowColumns() noexcept {
  int set = windowColumns.load(std::memory_order_relaxed);
  return set > 0 ? set : columnsFromEnvironment();
}

bool ioVantelDesktopInUse() noexcept { return desktopInUse.load(std::memory_order_relaxed); }

int ioGetNumberDigits() noexcept { return longNumbers.load(std::memory_order_relaxed) ? 15 : 5; }

std::string ioGetArrayName(const vxArray* array, int position) {
  for (auto it = namedArrays.rbegin(); it != namedArrays.rend(); ++it)
    if (it->array == array && it->position == position) return it->name;
  return {};
}

namespace services::io {

bool setPrintfHot(bool hot) noexcept { return printfHot.exchange(hot); }

int setNumWindowColumns(int columns) noexcept {
  int old = ioGetNumWindowColumns();
  windowColumns.store(columns > 0 ? columns : 0);
  return old;
}

bool setVantelDesktopInUse(bool inUse) noexcept { return desktopInUse.exchange(inUse); }
bool setLongNumbers(bool value) noexcept { return longNumbers.exchange(value); }

ArrayNameScope::ArrayNameScope(const vxArray* array, std::string name, int position) {
  namedArrays.push_back({array, position, std::move(name)});
}

ArrayNameScope::~ArrayNameScope() {
  assert(!namedArrays.empty() && "ArrayNameScope closed twice");
  namedArrays.pop_back();
}

}  // namespace services::io
