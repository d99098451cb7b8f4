// A factory value computed by a function the class supplies. An empty
// function raises boost::bad_function_call when the value is first asked.
#pragma once

#include <boost/function.hpp>

#include "sgutils/propinfos/DefaultProvider.h"

namespace sgutils {

class SGUTILS_API UserFcnDefaultProvider : public DefaultProvider {
 public:
  explicit UserFcnDefaultProvider(boost::function<COSValue()> fcn) : fcn_(std::move(fcn)) {}
  ~UserFcnDefaultProvider() override;

 private:
  COSValue getDefault() override { return fcn_(); }
  boost::function<COSValue()> fcn_;
};

}  // namespace sgutils
