// An in-process publish and subscribe registry for C++ code, apart from the
// class-object system's events. A subscription lives as long as the
// Listener that createListener gives back.
//
// Names: a listener's name matches an event of the same name exactly, or,
// when it ends in "*", every event whose name begins with what stands before
// the "*" ("*" alone hears everything, also the empty name). An empty name
// hears nothing. "*" anywhere else is a mistake that debug builds stop at.
//
// send calls the matching callbacks in byte order of the listener names,
// listeners of one name in the order they were made, on the sending thread,
// from a copy taken under the lock: a callback may add and remove listeners
// and send; one removed during a send is still called in that send, one
// added is not. An exception from a callback ends the send and reaches its
// caller. Copies of a dispatcher share one registry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "sgutils/EventDispatcher/EventData.h"
#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API EventDispatcher {
  class Impl;

 public:
  using Callback = std::function<void(const std::string& eventName, const EventData& data)>;

  // A subscription; move-only. It may outlive its dispatcher, and then its
  // end does nothing.
  class SGUTILS_API Listener {
   public:
    Listener() = default;
    Listener(Listener&& other) noexcept;
    Listener& operator=(Listener&& other) noexcept;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener();

    // The name given at creation.
    const std::string& getEvent() const noexcept { return event_; }

   private:
    friend class EventDispatcher;
    Listener(std::weak_ptr<Impl> impl, std::string event, std::uint64_t id)
        : impl_(std::move(impl)), event_(std::move(event)), id_(id) {}
    void release() noexcept;

    std::weak_ptr<Impl> impl_;
    std::string event_;
    std::uint64_t id_ = 0;
  };

  EventDispatcher();

  Listener createListener(const std::string& event, Callback callback);
  // The listeners whose name is exactly `event` ("A*" is not counted for "A").
  std::size_t numListeners(const std::string& event) const;
  void send(const std::string& event, const EventData& data) const;

 private:
  std::shared_ptr<Impl> impl_;
};

}  // namespace sgutils
