// A rectangle on the screen in pixels, [left bottom width height], as a view
// reports where a child sits. The default is the empty rectangle at the origin.
#pragma once

namespace graphics::datatype {

struct ScreenPosition {
  double left = 0.0;
  double bottom = 0.0;
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const ScreenPosition&, const ScreenPosition&) = default;
};

}  // namespace graphics::datatype
