// The word-valued properties of the concrete classes that take one of a
// fixed set of words. Each is a one-byte enumeration registered as a type
// "vantel.graphics.datatype.<Name>" by registerClasses.
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace sgclasses {

// Axes NextPlot: "replace" clears the axes before a plot, "add" keeps what is there.
enum class NextPlot : unsigned char { Replace = 0, Add = 1 };
// Figure NextPlot: "add" keeps what the figure holds, "replace" clears it.
enum class FigureNextPlot : unsigned char { Add = 0, Replace = 1 };
enum class LineStyle : unsigned char { Solid = 0, Dashed = 1, Dotted = 2, DashDot = 3, None = 4 };
enum class Marker : unsigned char { None = 0, Circle, Plus, Asterisk, Point, Cross, Square, Diamond, Up, Down, Right, Left, Pentagram, Hexagram };
// Text: the weight of the font and where the text sits against its Position.
enum class FontWeight : unsigned char { Normal = 0, Bold = 1 };
enum class HorizontalAlignment : unsigned char { Left = 0, Center = 1, Right = 2 };
enum class VerticalAlignment : unsigned char { Middle = 0, Top = 1, Bottom = 2, Baseline = 3, Cap = 4 };
// Axes XScale and YScale: values along the axis evenly ("linear") or by
// their logarithm ("log").
enum class AxisScale : unsigned char { Linear = 0, Log = 1 };

}  // namespace sgclasses

namespace graphics::datatype {

template <>
struct EnumerationTraits<sgclasses::NextPlot> {
  static constexpr const char* names[] = {"replace", "add"};
  static constexpr EnumerationDescription description{"NextPlot", names, 2};
};
template <>
struct EnumerationTraits<sgclasses::FigureNextPlot> {
  static constexpr const char* names[] = {"add", "replace"};
  static constexpr EnumerationDescription description{"FigureNextPlot", names, 2};
};
template <>
struct EnumerationTraits<sgclasses::LineStyle> {
  static constexpr const char* names[] = {"-", "--", ":", "-.", "none"};
  static constexpr EnumerationDescription description{"LineStyle", names, 5};
};
template <>
struct EnumerationTraits<sgclasses::Marker> {
  static constexpr const char* names[] = {"none", "o", "+", "*", ".", "x", "s", "d", "^", "v", ">", "<", "p", "h"};
  static constexpr EnumerationDescription description{"Marker", names, 14};
};

template <>
struct EnumerationTraits<sgclasses::FontWeight> {
  static constexpr const char* names[] = {"normal", "bold"};
  static constexpr EnumerationDescription description{"FontWeight", names, 2};
};
template <>
struct EnumerationTraits<sgclasses::HorizontalAlignment> {
  static constexpr const char* names[] = {"left", "center", "right"};
  static constexpr EnumerationDescription description{"HorizontalAlignment", names, 3};
};
template <>
struct EnumerationTraits<sgclasses::VerticalAlignment> {
  static constexpr const char* names[] = {"middle", "top", "bottom", "baseline", "cap"};
  static constexpr EnumerationDescription description{"VerticalAlignment", names, 5};
};
template <>
struct EnumerationTraits<sgclasses::AxisScale> {
  static constexpr const char* names[] = {"linear", "log"};
  static constexpr EnumerationDescription description{"AxisScale", names, 2};
};

}  // namespace graphics::datatype
