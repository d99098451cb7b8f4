// The graphics preference block: process-wide integers that renderers read,
// backed by features that the environment can change. Start-up fills the
// block and registers the features (see Startup.h); until then the block
// holds its initial values. Plain values without a lock: written by feature
// callbacks between commands, read by renderers.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

enum GraphicsPrefTypes : int {
  OpenGLAlignVertexCenters = 0,
  OpenGLDepthPeeling = 1,
  OpenGLWideLines = 2,
  OpenGLMAXVBOSize = 3,
  OpenGLMarkerShaderRendering = 4,
  WebGraphicsRestriction = 5,
  SGParallelProcessingInDoUpdate = 6,
  WebGLWideLinesShaderV2 = 7,
  GraphicsPrefCount = 8
};

class SGUTILS_API GraphicsPrefs {
 public:
  // The block's value; 0 for an index outside the block.
  static int getPref(int type) noexcept;
  // The text behind "WebDepthPeelingPostProcessingEffect" ("none" at first).
  static std::string getDepthPeelingPostProcessingEffect();
  // The value behind "InteractionFrameworkMigration" (0 at first).
  static int getInteractionFrameworkMigration() noexcept;

  // Start-up only: fills the block from the renderer state and registers the
  // twelve features. Runs once per process.
  static void registerFeatures();
};

// The switch behind "UseOldSimplePropInfoSetValueBehavior" (false at first).
SGUTILS_API bool useOldSimplePropInfoSetValueBehavior() noexcept;

}  // namespace sgutils
