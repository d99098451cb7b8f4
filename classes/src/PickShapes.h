// Hit tests of the filled and text shapes of an axes, in the units that
// picking uses: data coordinates, with distances in shares of the axes'
// current limits (sx, sy the widths of the x and y limits).
#pragma once

#include <array>

class COSInterface;

namespace sgclasses {

class Patch;
class Text;

namespace pick {

// Whether (x, y) lies inside a face of the patch (even-odd rule) or within
// `tolerance` of one of its edges; `point` gets where the pointer met it:
// the point itself inside a face, else the nearest point of the edge.
bool hitsPatch(const Patch& patch, double x, double y, double sx, double sy, double tolerance,
               std::array<double, 3>& point);

// Whether (x, y) lies in the box of the text, grown by `tolerance`. The box
// is estimated from the string's length and the font size (an average
// glyph of 0.6 em, a line of 1.2 em, 1 point = 96/72 pixels) against the
// axes' size in pixels, placed by the alignments; rotation is not taken in.
// An empty string has no box.
bool hitsText(const Text& text, COSInterface* axes, double x, double y, double sx, double sy, double tolerance);

}  // namespace pick
}  // namespace sgclasses
