// Not installed; internal to sgplatform.
//
// The parts of the Boost.Log set-up that the channel registry and the test
// capture share: the attribute keywords and the default standard-error sink.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include <boost/log/expressions/keyword.hpp>

namespace foundation::log {

BOOST_LOG_ATTRIBUTE_KEYWORD(channelAttr, "Channel", std::string)
BOOST_LOG_ATTRIBUTE_KEYWORD(levelAttr, "Severity", std::uint32_t)

// Adds the sink that writes "[channel] text" lines to standard error. It
// stays silent while any LogCapture is active.
void installDefaultSink();

// Number of LogCapture objects alive.
std::atomic<int>& activeCaptures() noexcept;

}  // namespace foundation::log
