// A view that lives on the Java side, reached through its peer.
#pragma once

#include <boost/shared_ptr.hpp>

#include "sgdatatypes/JavaPeer.h"
#include "sgutils/view/ViewObject.h"

namespace sgutils {

class SGUTILS_API JavaViewObject : public ViewObject {
 public:
  // The peer does not own a raw Java reference; see JavaPeer.
  explicit JavaViewObject(_jobject* object);
  explicit JavaViewObject(graphics::datatype::JavaPeer peer);
  JavaViewObject(const JavaViewObject& other);
  ~JavaViewObject() override;

  boost::shared_ptr<_jobject> getJavaPeer() const;

 private:
  graphics::datatype::JavaPeer peer_;
};

}  // namespace sgutils
