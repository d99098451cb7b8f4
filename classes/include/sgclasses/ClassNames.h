// Full names of the concrete graphics classes, and a class test.
#pragma once

#include <initializer_list>

#include "sgclasses/SgclassesExport.h"

class COSInterface;

namespace sgclasses {

inline constexpr char kRootClass[] = "vantel.ui.Root";
inline constexpr char kFigureClass[] = "vantel.ui.Figure";
inline constexpr char kAxesClass[] = "vantel.graphics.axis.Axes";
inline constexpr char kLineClass[] = "vantel.graphics.primitive.Line";
inline constexpr char kTextClass[] = "vantel.graphics.primitive.Text";
inline constexpr char kPatchClass[] = "vantel.graphics.primitive.Patch";
inline constexpr char kGroupClass[] = "vantel.graphics.primitive.Group";
inline constexpr char kContextMenuClass[] = "vantel.ui.container.ContextMenu";

// Whether the object's class is one of the named classes or derives from one.
SGCLASSES_API bool isOfClass(const COSInterface* object, std::initializer_list<const char*> classNames);

}  // namespace sgclasses
