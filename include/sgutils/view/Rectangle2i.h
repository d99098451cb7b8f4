// An axis-aligned rectangle in whole pixels: its lower-left corner and its
// extent. The default is the empty rectangle at the origin.
#pragma once

namespace gui_objects {

struct Rectangle2i {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  friend bool operator==(const Rectangle2i&, const Rectangle2i&) = default;
};

}  // namespace gui_objects
