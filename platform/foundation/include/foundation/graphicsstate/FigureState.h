// How figures are shown by default. With no desktop and no web front end,
// the default figure type is not web.
#pragma once

#include <atomic>

#include "foundation/PlatformExport.h"

namespace GraphicsState {

class FOUNDATION_API FigureState {
 public:
  static FigureState& instance() noexcept;

  bool isDefaultFigureTypeWeb() const noexcept { return web_.load(std::memory_order_relaxed); }
  void setDefaultFigureTypeWeb(bool web) noexcept { web_.store(web, std::memory_order_relaxed); }

 private:
  FigureState() = default;
  std::atomic<bool> web_{false};
};

}  // namespace GraphicsState
