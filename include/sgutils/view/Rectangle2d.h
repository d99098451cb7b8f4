// An axis-aligned rectangle in real coordinates: its lower-left corner and its
// extent. The default is the empty rectangle at the origin.
#pragma once

namespace gui_objects {

struct Rectangle2d {
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const Rectangle2d&, const Rectangle2d&) = default;
};

}  // namespace gui_objects
