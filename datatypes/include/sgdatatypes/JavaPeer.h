// The Java-side object that stands for a graphics view. The peer shares the
// pointer it was given; one made from a raw pointer does not own the Java
// reference, which stays with the Java layer that handed it out.
#pragma once

#include <utility>

#include <boost/shared_ptr.hpp>

class _jobject;

namespace graphics::datatype {

class JavaPeer {
 public:
  JavaPeer() = default;
  explicit JavaPeer(_jobject* object) : peer_(object, [](_jobject*) {}) {}
  explicit JavaPeer(boost::shared_ptr<_jobject> object) noexcept : peer_(std::move(object)) {}

  const boost::shared_ptr<_jobject>& get() const noexcept { return peer_; }
  explicit operator bool() const noexcept { return static_cast<bool>(peer_); }

 private:
  boost::shared_ptr<_jobject> peer_;
};

}  // namespace graphics::datatype
