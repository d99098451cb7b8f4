// The engine that renders a figure: the sorting software renderer, or the
// hardware-accelerated one. One byte: 0 painters, 1 opengl.
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class RenderEngineType : unsigned char { Painters = 0, OpenGL = 1 };

template <>
struct EnumerationTraits<RenderEngineType> {
  static constexpr const char* names[] = {"painters", "opengl"};
  static constexpr EnumerationDescription description{"RenderEngineType", names, 2};
};

}  // namespace graphics::datatype
