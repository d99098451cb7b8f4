// Clock readings of view updates: the wall-clock stamp and the steady-clock
// duration.
#include "sgutils/view/Duration.h"

#include <chrono>
#include <ratio>

#include "sgutils/view/Timestamp.h"

namespace sgutils {

namespace {

std::int64_t steadyNanoseconds() {
  using namespace std::chrono;
  return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

std::int64_t timestamp() {
  using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
  const std::int64_t ticks =
      std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch()).count();
  return ticks / 10'000;  // integer division rounds toward zero
}

Duration::Duration() : start_(std::make_unique<std::int64_t>(steadyNanoseconds())) {}

Duration::Duration(const Duration& other) : start_(std::make_unique<std::int64_t>(*other.start_)) {}

Duration& Duration::operator=(const Duration& other) {
  *start_ = *other.start_;
  return *this;
}

Duration::~Duration() = default;

double Duration::getDurationInSeconds() const {
  return static_cast<double>(steadyNanoseconds() - *start_) / 1e9;
}

}  // namespace sgutils
