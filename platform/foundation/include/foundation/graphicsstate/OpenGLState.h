// What the renderer may use. The platform draws nothing, so these are not
// probed from a graphics driver: they say which renderer features are allowed,
// and all start on, matching the graphics preference block's initial values.
// Tests and embedding programs change them with the setters.
#pragma once

#include <atomic>

#include "foundation/PlatformExport.h"

namespace GraphicsState {

class FOUNDATION_API OpenGLState {
 public:
  static OpenGLState& instance() noexcept;

  bool isAVCFeatureAvailable() const noexcept { return avc_.load(std::memory_order_relaxed); }
  bool isDepthPeelingFeatureAvailable() const noexcept { return depthPeeling_.load(std::memory_order_relaxed); }
  bool isMarkerShaderRenderingFeatureAvailable() const noexcept {
    return markerShader_.load(std::memory_order_relaxed);
  }

  void setAVCFeatureAvailable(bool on) noexcept { avc_.store(on, std::memory_order_relaxed); }
  void setDepthPeelingFeatureAvailable(bool on) noexcept { depthPeeling_.store(on, std::memory_order_relaxed); }
  void setMarkerShaderRenderingFeatureAvailable(bool on) noexcept {
    markerShader_.store(on, std::memory_order_relaxed);
  }

 private:
  OpenGLState() = default;
  std::atomic<bool> avc_{true};
  std::atomic<bool> depthPeeling_{true};
  std::atomic<bool> markerShader_{true};
};

}  // namespace GraphicsState
