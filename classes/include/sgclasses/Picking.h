// Pointer hits on the object tree: where a hit lands, and which line of an
// axes lies under a point given in data coordinates.
#pragma once

#include "sgclasses/SgclassesExport.h"
#include "sgutils/interaction/HitImpl.h"
#include "vcos/COSInterfacePtr.h"

namespace sgclasses {

// The object that takes a hit reported on `object`: the object itself or the
// nearest ancestor that takes hits (HitTest "on", PickableParts not "none",
// and visible unless PickableParts is "all"), below the root. Null when
// none does.
SGCLASSES_API COSInterfacePtr hitTarget(COSInterface* object);

// Reports a hit on `object`: the target becomes its figure's CurrentObject
// and fires "Hit" (so its ButtonDownFcn runs) with `hit`, whose primitive is
// `object` when none is given. Returns the target (null: no one took it).
SGCLASSES_API COSInterfacePtr reportHit(COSInterface* object, graphics::eventdata::HitImpl hit);

// The topmost line of `axes` (newest first, groups included) that passes
// within 1% of the axes' extent of the point (x, y), or the axes itself when
// none does, as the primitive hit; `point` receives the nearest point on it.
SGCLASSES_API COSInterfacePtr pickInAxes(COSInterface* axes, double x, double y, std::array<double, 3>& point);

}  // namespace sgclasses
