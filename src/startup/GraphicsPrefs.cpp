// The graphics preference block and the features behind it. Each numeric
// feature's command form reads and writes one slot of the block; two of them
// also raise the flush request of "OpenGLFlushCommandCache" when their value
// really changes, so that renderers drop cached command lists.
#include "sgutils/startup/GraphicsPrefs.h"

#include <array>
#include <atomic>
#include <mutex>

#include "foundation/feature/svFeatureEntry.h"
#include "foundation/graphicsstate/GraphicsState.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace sgutils {
namespace {

// Relaxed atomics: renderers may read from their own threads, and a torn or
// stale read of a preference is harmless.
std::array<std::atomic<int>, GraphicsPrefCount> prefBlock{1, 1, 1, 1048576, 1, 1, 1, 1};
std::atomic<int> interactionFrameworkMigration{0};
std::atomic<bool> oldSimplePropInfoSetValue{false};

std::mutex& effectMutex() {
  static std::mutex m;
  return m;
}
std::string& depthPeelingEffect() {
  static std::string effect = "none";
  return effect;
}

enum class Flush : bool { No, Yes };

// The argument checks shared by every command form.
void checkArgumentCounts(int nlhs, int nrhs) {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs >= 2) matrix::detail::error_maxrhs();
  if (nrhs < 0) matrix::detail::error_minrhs();
}

svFeatureQuery numericQuery(int index, Flush flush) {
  return [index, flush](int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
    checkArgumentCounts(nlhs, nrhs);
    if (nrhs == 1) {
      const int value = vxGetScalarInt(prhs[0]);
      if (flush == Flush::Yes && value != prefBlock[index].load(std::memory_order_relaxed)) {
        if (svFeatureEntry* cache = svFindFeatureEntry("OpenGLFlushCommandCache")) cache->setValue(1);
      }
      prefBlock[index].store(value, std::memory_order_relaxed);
    }
    plhs[0] = vxCreateDoubleScalar(prefBlock[index].load(std::memory_order_relaxed));
  };
}

void oldSimplePropInfoQuery(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  checkArgumentCounts(nlhs, nrhs);
  if (nrhs == 1 && !vxIsEmpty(prhs[0])) oldSimplePropInfoSetValue = vxGetScalarInt(prhs[0]) != 0;
  plhs[0] = vxCreateDoubleScalar(oldSimplePropInfoSetValue ? 1.0 : 0.0);
}

void depthPeelingEffectQuery(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  checkArgumentCounts(nlhs, nrhs);
  std::lock_guard lock(effectMutex());
  if (nrhs == 1) depthPeelingEffect() = vxArrayToStdString(prhs[0]);
  plhs[0] = vxCreateString(depthPeelingEffect().c_str());
}

void registerAll() {
  auto& gl = GraphicsState::OpenGLState::instance();
  prefBlock[OpenGLAlignVertexCenters] = gl.isAVCFeatureAvailable() ? 1 : 0;
  prefBlock[OpenGLDepthPeeling] = gl.isDepthPeelingFeatureAvailable() ? 1 : 0;
  prefBlock[OpenGLMarkerShaderRendering] = gl.isMarkerShaderRenderingFeatureAvailable() ? 1 : 0;
  prefBlock[OpenGLWideLines] = 1;

  svRegisterFeature("OpenGLDepthPeeling", prefBlock[OpenGLDepthPeeling], {},
                    numericQuery(OpenGLDepthPeeling, Flush::Yes));
  svRegisterFeature("OpenGLAlignVertexCenters", prefBlock[OpenGLAlignVertexCenters], {},
                    numericQuery(OpenGLAlignVertexCenters, Flush::Yes));
  svRegisterFeature("OpenGLWideLines", prefBlock[OpenGLWideLines], {}, numericQuery(OpenGLWideLines, Flush::No));
  svRegisterFeature("WebGLWideLinesShaderV2", prefBlock[WebGLWideLinesShaderV2], {},
                    numericQuery(WebGLWideLinesShaderV2, Flush::No));
  svRegisterFeature("OpenGLMarkerShaderRendering", prefBlock[OpenGLMarkerShaderRendering], {},
                    numericQuery(OpenGLMarkerShaderRendering, Flush::No));
  svRegisterFeature("OpenGLFlushCommandCache", 0);
  // Registered with 1 while the block keeps its own initial size until a
  // command sets it; the two stay apart on purpose.
  svRegisterFeature("OpenGLMAXVBOSize", 1, {}, numericQuery(OpenGLMAXVBOSize, Flush::No));
  svRegisterFeature("SGParallelProcessingInDoUpdate", 1, {}, numericQuery(SGParallelProcessingInDoUpdate, Flush::No));
  svRegisterFeature("UseOldSimplePropInfoSetValueBehavior", 0, {}, &oldSimplePropInfoQuery);

  // A web default figure turns Java off: first politely, then for good.
  const bool web = GraphicsState::FigureState::instance().isDefaultFigureTypeWeb();
  if (web) {
    GraphicsState::setUsesJava(false, true);
    if (GraphicsState::usesJava()) GraphicsState::setUsesJava(false, false);
  }
  const int restriction = web ? 0 : 1;
  prefBlock[WebGraphicsRestriction] = restriction;
  svRegisterFeature("WebGraphicsRestriction", restriction,
                    [](int value) { prefBlock[WebGraphicsRestriction].store(value, std::memory_order_relaxed); });

  svRegisterFeature("WebDepthPeelingPostProcessingEffect", 1, {}, &depthPeelingEffectQuery);
  svRegisterFeature("InteractionFrameworkMigration", 0,
                    [](int value) { interactionFrameworkMigration.store(value, std::memory_order_relaxed); });
}

}  // namespace

int GraphicsPrefs::getPref(int type) noexcept {
  if (type < 0 || type >= GraphicsPrefCount) return 0;
  return prefBlock[static_cast<std::size_t>(type)].load(std::memory_order_relaxed);
}

std::string GraphicsPrefs::getDepthPeelingPostProcessingEffect() {
  std::lock_guard lock(effectMutex());
  return depthPeelingEffect();
}

int GraphicsPrefs::getInteractionFrameworkMigration() noexcept {
  return interactionFrameworkMigration.load(std::memory_order_relaxed);
}

void GraphicsPrefs::registerFeatures() {
  // A failure of the once-primitive itself ends the process: std::call_once
  // reports it with std::system_error, which is not caught here.
  static std::once_flag once;
  std::call_once(once, &registerAll);
}

bool useOldSimplePropInfoSetValueBehavior() noexcept { return oldSimplePropInfoSetValue.load(); }

}  // namespace sgutils
