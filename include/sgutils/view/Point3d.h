// A point in three dimensions, as a view reports the place of a pointer event.
#pragma once

namespace gui_objects {

struct Point3d {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  friend bool operator==(const Point3d&, const Point3d&) = default;
};

}  // namespace gui_objects
