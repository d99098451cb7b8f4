// Log channels: the registry of named channels, the SG_LOG setting, and the
// Boost.Log core that written records pass through.
#include "foundation/log/Logger.h"

#include <boost/log/core.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_channel_logger.hpp>

#include <atomic>
#include <charconv>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>

#include "foundation/src/log/LogCore.h"

namespace foundation::log {

namespace {

using SourceLogger = boost::log::sources::severity_channel_logger_mt<std::uint32_t, std::string>;

std::string_view trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

bool parseBits(std::string_view text, std::uint32_t& out) {
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    text.remove_prefix(2);
    base = 16;
  }
  if (text.empty()) return false;
  auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), out, base);
  return ec == std::errc() && ptr == text.data() + text.size();
}

// The diagnostic channels of the graphics library, created with the registry
// so that a listing shows them before they first write.
constexpr std::string_view kKnownChannels[] = {
    "sgcustommetadata::update", "sgcustommetadata::validate", "sgcustommetadata::customset",
    "theme::graphicstheme",     "theme::property",            "theme::visitor",
    "gencallback::setget",      "graphics::object_serialization",
};

constexpr std::string_view kClassGenSuffix = "::sgclassgen";

bool isClassGenName(std::string_view name) noexcept {
  return name.size() >= kClassGenSuffix.size() && name.substr(name.size() - kClassGenSuffix.size()) == kClassGenSuffix;
}

// Every bit that a generated class's channel has or would get.
std::atomic<std::uint32_t> classGenWord{0};

// Calls apply(name, bits) for each entry of a setting text that parses.
template <class Apply>
int forEachEntry(std::string_view setting, Apply apply) {
  int applied = 0;
  while (!setting.empty()) {
    auto comma = setting.find(',');
    std::string_view entry = trim(setting.substr(0, comma));
    setting = comma == std::string_view::npos ? std::string_view() : setting.substr(comma + 1);
    std::string_view name = entry;
    std::uint32_t bits = kAll;
    if (auto eq = entry.rfind('='); eq != std::string_view::npos) {
      name = trim(entry.substr(0, eq));
      if (!parseBits(trim(entry.substr(eq + 1)), bits)) continue;
    }
    if (name.empty()) continue;
    apply(name, bits);
    ++applied;
  }
  return applied;
}

}  // namespace

// Owns every channel and the levels set for names that have no channel yet.
class LoggerRegistry {
 public:
  static LoggerRegistry& instance() {
    static LoggerRegistry registry;
    return registry;
  }

  Logger& channel(std::string_view name) {
    std::lock_guard lock(mutex_);
    auto it = channels_.find(name);
    if (it != channels_.end()) return *it->second;
    auto logger = std::make_unique<Logger>(Logger::PassKey(), std::string(name), levelFor(name));
    return *channels_.emplace(std::string(name), std::move(logger)).first->second;
  }

  void setLevel(std::string_view name, std::uint32_t bits) {
    std::lock_guard lock(mutex_);
    if (name == "*") {
      defaultBits_ = bits;
      for (auto& [n, logger] : channels_)
        if (levels_.find(n) == levels_.end()) logger->setBits(bits);
      noteClassGenBits();
      return;
    }
    levels_.insert_or_assign(std::string(name), bits);
    if (auto it = channels_.find(name); it != channels_.end()) it->second->setBits(bits);
    noteClassGenBits();
  }

  std::uint32_t level(std::string_view name) {
    std::lock_guard lock(mutex_);
    return levelFor(name);
  }

  std::vector<std::string> names() {
    std::lock_guard lock(mutex_);
    std::vector<std::string> out;
    out.reserve(channels_.size());
    for (const auto& [name, logger] : channels_) out.push_back(name);
    return out;
  }

  SourceLogger& source() noexcept { return source_; }

 private:
  LoggerRegistry() {
    installDefaultSink();
    if (const char* env = std::getenv("SG_LOG")) applySetting(env);
    noteClassGenBits();
    for (std::string_view name : kKnownChannels) channel(name);
  }

  // The default word and every level set for a generated class's channel:
  // a superset of what those channels hold.
  void noteClassGenBits() {
    std::uint32_t bits = defaultBits_;
    for (const auto& [name, level] : levels_)
      if (isClassGenName(name)) bits |= level;
    classGenWord.store(bits, std::memory_order_relaxed);
  }

  // Called before any channel exists, so no lock is needed yet.
  void applySetting(std::string_view setting) {
    forEachEntry(setting, [this](std::string_view name, std::uint32_t bits) {
      if (name == "*")
        defaultBits_ = bits;
      else
        levels_.insert_or_assign(std::string(name), bits);
    });
  }

  std::uint32_t levelFor(std::string_view name) const {
    auto it = levels_.find(name);
    return it == levels_.end() ? defaultBits_ : it->second;
  }

  std::mutex mutex_;
  std::map<std::string, std::unique_ptr<Logger>, std::less<>> channels_;
  std::map<std::string, std::uint32_t, std::less<>> levels_;
  std::uint32_t defaultBits_ = 0;
  SourceLogger source_;
};

void Logger::write(std::uint32_t level, std::string_view text) const {
  SourceLogger& source = LoggerRegistry::instance().source();
  namespace kw = boost::log::keywords;
  boost::log::record rec = source.open_record((kw::channel = name_, kw::severity = level));
  if (!rec) return;
  {
    boost::log::record_ostream strm(rec);
    strm << text;
    strm.flush();
  }
  source.push_record(std::move(rec));
}

Logger& channel(std::string_view name) { return LoggerRegistry::instance().channel(name); }

Logger& classGenChannel(std::string_view cppClassName) {
  std::string name;
  name.reserve(cppClassName.size() + 12);
  name.append(cppClassName).append("::sgclassgen");
  return channel(name);
}

std::uint32_t classGenBits() noexcept {
  LoggerRegistry::instance();  // reads SG_LOG on first use
  return classGenWord.load(std::memory_order_relaxed);
}

std::vector<std::string> channelNames() { return LoggerRegistry::instance().names(); }

void setChannelLevel(std::string_view name, std::uint32_t bits) { LoggerRegistry::instance().setLevel(name, bits); }

std::uint32_t channelLevel(std::string_view name) { return LoggerRegistry::instance().level(name); }

int applyLogSetting(std::string_view setting) {
  return forEachEntry(setting, [](std::string_view name, std::uint32_t bits) { setChannelLevel(name, bits); });
}

}  // namespace foundation::log
