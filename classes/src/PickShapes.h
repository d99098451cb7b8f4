// Hit tests of the filled and text shapes of an axes, in the units that
// picking uses: places of the axes' frame over a unit box (so distances are
// shares of the axes' width and height, and a log axis is measured as it is
// drawn); (fx, fy) is the pointer's place in that frame.
#pragma once

#include <array>

#include "sgclasses/AxesFrame.h"

class COSInterface;

namespace sgclasses {

class Patch;
class Text;

namespace pick {

// Whether (x, y) lies inside a face of the patch (even-odd rule) or within
// `tolerance` of one of its edges; `point` gets where the pointer met it in
// data units: the pointer inside a face, else the nearest point of the edge.
// Corners without a place in the frame are left out, as drawing does.
bool hitsPatch(const Patch& patch, const AxesFrame& frame, double fx, double fy, double tolerance,
               std::array<double, 3>& point);

// Whether (x, y) lies in the box of the text, grown by `tolerance`. The box
// is estimated from the string's length and the font size (an average
// glyph of 0.6 em, a line of 1.2 em, 1 point = 96/72 pixels) against the
// axes' size in pixels, placed by the alignments; rotation is not taken in.
// An empty string has no box.
bool hitsText(const Text& text, COSInterface* axes, const AxesFrame& frame, double fx, double fy, double tolerance);

}  // namespace pick
}  // namespace sgclasses
