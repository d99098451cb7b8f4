// The list of generated-class registrations (see GeneratedClasses.h). Each
// part of the library that brings a generated class appends its
// registration function here, in the order the classes must be registered.
#include "sgutils/GeneratedClasses.h"

#include <vector>

#include "sgutils/PerInstance.h"
#include "sgutils/objects/CurrentAxes.gen.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "sgutils/objects/GraphicsPickable.gen.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/objects/GraphicsUIProperties.gen.h"
#include "sgutils/objects/Legacy.gen.h"
#include "sgutils/objects/Mixin.gen.h"
#include "sgutils/objects/NodeChildren.gen.h"
#include "sgutils/objects/NodeParent.gen.h"
#include "sgutils/objects/Selectable.gen.h"

namespace sgutils {
namespace {

// In call order: CurrentAxes, CustomThemeable, Focusable, BaseColorSchemeType,
// GraphicsTheme, GraphicsUIProperties, GraphicsCoreProperties,
// GraphicsPickable, Hit, Layoutable, ViewPropertiesManager, LayoutOptions,
// Legacy, Mixin, NodeParent, ChildData, NodeChildren, Pickable, Selectable,
// Themeable, ThemeChangedData, ThemeContainer, TiledChartLayoutOptions. Each
// joins the list when its class is built.
const std::vector<ClassRegistrationFn>& registrations() {
  static const std::vector<ClassRegistrationFn> list = {
      &generated::registerCurrentAxes,
      &registerBaseColorSchemeType,
      &generated::registerGraphicsTheme,
      &generated::registerGraphicsUIProperties,
      &generated::registerGraphicsCoreProperties,
      &generated::registerGraphicsPickable,
      &generated::registerLegacy,
      &generated::registerMixin,
      &generated::registerNodeParent,
      &generated::registerNodeChildren,
      &generated::registerSelectable,
  };
  return list;
}

struct ClassBlock {
  ClassBlock() {
    std::size_t n = 0;
    const ClassRegistrationFn* fns = generatedClassRegistrations(n);
    for (std::size_t i = 0; i < n; ++i) fns[i]();
  }
};

}  // namespace

const ClassRegistrationFn* generatedClassRegistrations(std::size_t& count) noexcept {
  count = registrations().size();
  return registrations().data();
}

void registerGeneratedClasses() {
  // The block's constructor is the registration: once per instance with the
  // per-instance store, else once per process.
  struct Tag;
  PerInstance<Tag, ClassBlock>::get([] { return ClassBlock(); });
}

}  // namespace sgutils
