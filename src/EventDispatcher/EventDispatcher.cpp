// The registry of EventDispatcher: a multimap from listener name to
// (identifier, callback) under one mutex; sends run from a copy.
#include "sgutils/EventDispatcher/EventDispatcher.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace sgutils {

EventData::~EventData() = default;

namespace {

// Unique across all dispatchers of the process.
std::atomic<std::uint64_t> nextId{0};

bool matches(const std::string& key, const std::string& event) {
  if (key.empty()) return false;
  if (key.back() == '*') return std::string_view(event).starts_with(std::string_view(key).substr(0, key.size() - 1));
  return key == event;
}

void checkWildcard([[maybe_unused]] const std::string& event) {
#ifndef NDEBUG
  const std::size_t star = event.find('*');
  if (star != std::string::npos && star + 1 != event.size()) {
    std::fprintf(stderr, "EventDispatcher: '*' must only occur at end of event name: %s\n", event.c_str());
    std::abort();
  }
#endif
}

}  // namespace

class EventDispatcher::Impl {
 public:
  struct Entry {
    std::uint64_t id;
    Callback callback;
  };

  std::uint64_t addCallback(const std::string& event, Callback callback) {
    checkWildcard(event);
    std::lock_guard lock(mutex_);
    const std::uint64_t id = nextId++;
    // Equal keys keep the order of insertion: a multimap inserts after them.
    entries_.emplace(event, Entry{id, std::move(callback)});
    return id;
  }

  void remove(const std::string& event, std::uint64_t id) {
    Callback dropped;  // destroyed after the lock is released
    {
      std::lock_guard lock(mutex_);
      auto [first, last] = entries_.equal_range(event);
      for (auto it = first; it != last; ++it) {
        if (it->second.id != id) continue;
        dropped = std::move(it->second.callback);
        entries_.erase(it);
        break;
      }
    }
  }

  std::size_t count(const std::string& event) const {
    std::lock_guard lock(mutex_);
    return entries_.count(event);
  }

  std::vector<Callback> matching(const std::string& event) const {
    std::vector<Callback> out;
    std::lock_guard lock(mutex_);
    for (const auto& [key, entry] : entries_)
      if (matches(key, event)) out.push_back(entry.callback);
    return out;
  }

 private:
  mutable std::mutex mutex_;
  std::multimap<std::string, Entry> entries_;  // byte order of the name
};

EventDispatcher::EventDispatcher() : impl_(std::make_shared<Impl>()) {}

EventDispatcher::Listener EventDispatcher::createListener(const std::string& event, Callback callback) {
  const std::uint64_t id = impl_->addCallback(event, std::move(callback));
  return Listener(impl_, event, id);
}

std::size_t EventDispatcher::numListeners(const std::string& event) const { return impl_->count(event); }

void EventDispatcher::send(const std::string& event, const EventData& data) const {
  // Held for the send, so a callback that drops the last copy of the
  // dispatcher does not end the registry under it.
  const std::shared_ptr<Impl> keep = impl_;
  for (const Callback& callback : keep->matching(event)) callback(event, data);
}

EventDispatcher::Listener::Listener(Listener&& other) noexcept
    : impl_(std::move(other.impl_)), event_(std::move(other.event_)), id_(other.id_) {
  other.impl_.reset();
}

EventDispatcher::Listener& EventDispatcher::Listener::operator=(Listener&& other) noexcept {
  if (this != &other) {
    release();
    impl_ = std::move(other.impl_);
    other.impl_.reset();
    event_ = std::move(other.event_);
    id_ = other.id_;
  }
  return *this;
}

EventDispatcher::Listener::~Listener() { release(); }

void EventDispatcher::Listener::release() noexcept {
  if (std::shared_ptr<Impl> impl = impl_.lock()) {
    try {
      impl->remove(event_, id_);
    } catch (...) {
      // Only a failing mutex can raise here; the entry then stays, which a
      // destructor cannot report.
    }
  }
  impl_.reset();
}

}  // namespace sgutils
