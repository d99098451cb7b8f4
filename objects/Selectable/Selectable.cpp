// The hand-written half of Selectable.
#include "sgutils/objects/Selectable.gen.h"

namespace graphics::mixin {

// A selected object is drawn highlighted unless its highlight is off.
bool Selectable::isHighlighted() const { return getSelected() && getSelectionHighlight(); }

}  // namespace graphics::mixin
