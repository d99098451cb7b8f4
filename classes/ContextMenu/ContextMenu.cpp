// The hand-written half of ContextMenu: a menu belongs to a figure.
#include "sgutils/objects/ContextMenu.gen.h"

#include "sgclasses/ClassNames.h"

namespace sgclasses {

bool ContextMenu::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kFigureClass}); }

}  // namespace sgclasses
