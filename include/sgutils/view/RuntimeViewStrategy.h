// The strategy of components whose view is driven by a model of the
// component framework: names are kept as they come.
#pragma once

#include <memory>
#include <string>

#include "sgutils/view/ViewPropertiesStrategy.h"

namespace sgutils {

class SGUTILS_API RuntimeViewStrategy : public ViewPropertiesStrategy {
 public:
  // `className` is the plain class name, without its package.
  explicit RuntimeViewStrategy(std::string className);
  // A new strategy each call; the caller owns it.
  static std::unique_ptr<ViewPropertiesStrategy> getInstance(std::string className);
  const std::string& className() const noexcept { return className_; }

 private:
  std::string className_;
};

}  // namespace sgutils
