// Reading an object's properties as the language sees them, in the forms the
// painter needs. Not installed.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"

namespace sgrender::props {

matrix::unique_vxArray value(COSInterface* object, const char* name);
// A colour as RGB in [0, 1]; empty for 'none' or any non-numeric value.
std::optional<std::array<double, 3>> color(COSInterface* object, const char* name);
double number(COSInterface* object, const char* name, double fallback);
std::string text(COSInterface* object, const char* name);
bool isOn(COSInterface* object, const char* name);
// The numbers of a numeric value in storage order (empty otherwise).
std::vector<double> numbers(COSInterface* object, const char* name);
// Rows and columns of a numeric value.
std::array<std::size_t, 2> size(COSInterface* object, const char* name);

}  // namespace sgrender::props
