// Owning handles of Cairo surfaces and contexts. Not installed.
#pragma once

#include <cairo.h>

#include <memory>

namespace sgrender {

struct SurfaceDeleter {
  void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
struct ContextDeleter {
  void operator()(cairo_t* c) const { cairo_destroy(c); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

}  // namespace sgrender
