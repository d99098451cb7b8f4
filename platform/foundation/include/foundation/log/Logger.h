// Diagnostic log channels. A channel is one Logger object with a verbosity
// word; callers test a bit of that word before they build any text, so a
// silent channel costs one load and one bit test:
//
//     static foundation::log::Logger& lg = foundation::log::channel("theme::property");
//     FOUNDATION_LOG(lg, foundation::log::kDebug) << "Class name: " << name;
//
// Channels are switched on by the environment variable SG_LOG, read once on
// first use ("theme::property=3,theme::visitor=0x10,*=1"), or by
// setChannelLevel(). A level set for a name that has no channel yet is kept
// and picked up when the channel is created. Records that pass the check are
// written through Boost.Log, with the channel name and the level as
// attributes; by default they go to standard error.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PlatformExport.h"

namespace foundation::log {

// Verbosity bits. A channel's word may hold any combination.
enum Level : std::uint32_t {
  kError = 1u << 0,
  kWarning = 1u << 1,
  kInfo = 1u << 2,
  kDebug = 1u << 3,
  kTrace = 1u << 4,
  kAll = 0xFFFFFFFFu,
};

class FOUNDATION_API Logger {
  // Only the channel registry makes loggers.
  class PassKey {
    PassKey() = default;
    friend class LoggerRegistry;
  };

 public:
  Logger(PassKey, std::string name, std::uint32_t bits) : bits_(bits), name_(std::move(name)) {}
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  // The inline check that every caller makes before building a record.
  bool isOn(std::uint32_t level) const noexcept { return (bits_.load(std::memory_order_relaxed) & level) != 0; }

  std::uint32_t bits() const noexcept { return bits_.load(std::memory_order_relaxed); }
  const std::string& name() const noexcept { return name_; }

  // Writes one record; the caller has already checked isOn(level).
  void write(std::uint32_t level, std::string_view text) const;

 private:
  friend class LoggerRegistry;
  void setBits(std::uint32_t bits) noexcept { bits_.store(bits, std::memory_order_relaxed); }

  std::atomic<std::uint32_t> bits_;
  std::string name_;
};

// The channel of this name, created on first request. The reference stays
// valid for the life of the process, so callers keep it in a static.
FOUNDATION_API Logger& channel(std::string_view name);

// The channel of a generated class: "<C++ class name>::sgclassgen".
FOUNDATION_API Logger& classGenChannel(std::string_view cppClassName);

// The bits that any generated class's channel has or would get (the
// default word with every level set for such a name): a caller that skips
// work which only writes those channels' records asks this first.
FOUNDATION_API std::uint32_t classGenBits() noexcept;

// Names of every channel created so far, sorted. The diagnostic channels of
// the graphics library exist from the first use of any channel.
FOUNDATION_API std::vector<std::string> channelNames();

// Sets a channel's verbosity word; "*" sets the word of every channel that has
// no setting of its own, now and later.
FOUNDATION_API void setChannelLevel(std::string_view name, std::uint32_t bits);

// The word a channel of this name has, or would get if it were created now.
FOUNDATION_API std::uint32_t channelLevel(std::string_view name);

// Applies a setting text of the SG_LOG form: entries "name=bits" separated by
// commas; bits are decimal or 0x-hexadecimal; a name without "=bits" turns
// every bit on. Entries that do not parse are skipped. Returns the number of
// entries applied.
FOUNDATION_API int applyLogSetting(std::string_view setting);

}  // namespace foundation::log
