// The standard-error sink of the log core and the capture sink for tests.
#include "foundation/log/LogCapture.h"

#include <boost/core/null_deleter.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>

#include <iostream>
#include <mutex>

#include "foundation/src/log/LogCore.h"

namespace foundation::log {

namespace sinks = boost::log::sinks;
namespace expr = boost::log::expressions;

std::atomic<int>& activeCaptures() noexcept {
  static std::atomic<int> count{0};
  return count;
}

void installDefaultSink() {
  auto backend = boost::make_shared<sinks::text_ostream_backend>();
  backend->add_stream(boost::shared_ptr<std::ostream>(&std::clog, boost::null_deleter()));
  backend->auto_flush(true);
  auto sink = boost::make_shared<sinks::synchronous_sink<sinks::text_ostream_backend>>(backend);
  sink->set_filter([](const boost::log::attribute_value_set&) {
    return activeCaptures().load(std::memory_order_relaxed) == 0;
  });
  sink->set_formatter(expr::stream << "[" << channelAttr << "] " << expr::smessage);
  boost::log::core::get()->add_sink(sink);
}

namespace {

class CaptureBackend : public sinks::basic_sink_backend<sinks::synchronized_feeding> {
 public:
  void consume(const boost::log::record_view& rec) {
    CapturedRecord out;
    if (auto c = boost::log::extract<std::string>("Channel", rec)) out.channel = *c;
    if (auto l = boost::log::extract<std::uint32_t>("Severity", rec)) out.level = *l;
    if (auto m = boost::log::extract<std::string>("Message", rec)) out.text = *m;
    std::lock_guard lock(mutex_);
    records_.push_back(std::move(out));
  }

  std::vector<CapturedRecord> records() const {
    std::lock_guard lock(mutex_);
    return records_;
  }
  void clear() {
    std::lock_guard lock(mutex_);
    records_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<CapturedRecord> records_;
};

using CaptureSink = sinks::synchronous_sink<CaptureBackend>;

}  // namespace

struct LogCapture::Impl {
  boost::shared_ptr<CaptureBackend> backend = boost::make_shared<CaptureBackend>();
  boost::shared_ptr<CaptureSink> sink = boost::make_shared<CaptureSink>(backend);
};

LogCapture::LogCapture() : impl_(std::make_unique<Impl>()) {
  activeCaptures().fetch_add(1);
  boost::log::core::get()->add_sink(impl_->sink);
}

LogCapture::~LogCapture() {
  boost::log::core::get()->remove_sink(impl_->sink);
  activeCaptures().fetch_sub(1);
}

std::vector<CapturedRecord> LogCapture::records() const { return impl_->backend->records(); }

void LogCapture::clear() { impl_->backend->clear(); }

}  // namespace foundation::log
