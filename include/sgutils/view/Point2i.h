// A point on the screen in whole pixels.
#pragma once

namespace gui_objects {

struct Point2i {
  int x = 0;
  int y = 0;

  friend bool operator==(const Point2i&, const Point2i&) = default;
};

}  // namespace gui_objects
