// The strategy of every other component: the view knows a property by its
// visible name only, so "X_I" is written down as "X".
#pragma once

#include <memory>
#include <string>

#include "sgutils/view/ViewPropertiesStrategy.h"

namespace sgutils {

class SGUTILS_API LegacyRuntimeViewStrategy : public ViewPropertiesStrategy {
 public:
  explicit LegacyRuntimeViewStrategy(std::string className);
  static std::unique_ptr<ViewPropertiesStrategy> getInstance(const std::string& className);
  using ViewPropertiesStrategy::markDirty;
  void markDirty(COSID name) override;
  const std::string& className() const noexcept { return className_; }

 private:
  std::string className_;
};

}  // namespace sgutils
