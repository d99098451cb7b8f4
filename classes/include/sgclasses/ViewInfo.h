// The UpdateViewInfo that drawnow hands a view with each changed object:
// what the object's surroundings tell it, as if the block went down the tree
// from the root and each container filled in what its children need.
#pragma once

#include "sgclasses/SgclassesExport.h"
#include "sgutils/view/UpdateViewInfo.h"

class COSInterface;

namespace sgclasses {

// The resolution the classes lay figures out at, in pixels per inch (the
// renderer draws at it too).
inline constexpr int kScreenPixelsPerInch = 96;

// Built by walking up from `object` (the cost follows its depth, not the
// tree):
// - screen and base resolution: kScreenPixelsPerInch;
// - refFrame: the rectangle in pixels that the object is placed in: a
//   figure's own Position on the screen; for an object in a figure, the
//   figure's extent from (0, 0); for one in an axes, the axes' box in its
//   figure's pixels (the axes' normalized Position times the figure's size);
// - color: the background the object lies on: the Color of its nearest
//   axes above it unless 'none', else of its figure (a figure's own);
// - isInVisibleHierarchy: the object and every ancestor are visible;
// - isInDrawnowSyncableHierarchy: the object is in a figure that the root
//   holds, so drawnow brings its views up to date;
// - the rest keep their defaults: the classes have no colour or alpha map,
//   renderer choice, modal figures, font metrics or layout containers.
SGCLASSES_API sgutils::UpdateViewInfo updateViewInfoFor(COSInterface* object);

}  // namespace sgclasses
