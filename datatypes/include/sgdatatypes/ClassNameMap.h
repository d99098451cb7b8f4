// The graphics classes by short name ("line") and by full name
// ("vantel.graphics.primitive.Line"). Default-value names are built from the
// short names ("defaultLineColor"), and an object's Type is its class's
// short name. Short names are lower case.
//
// Both maps are ordered by SizeOrder: keys run from high to low byte value,
// so where one key begins another the longer one comes first, and the first
// key that a text begins with in a walk is the longest that fits.
#pragma once

#include <map>
#include <string>

#include "sgdatatypes/DatatypesExport.h"

namespace sgdatatypes::typemap {

struct SizeOrder {
  // Descending byte order: for keys where one begins the other, the longer
  // compares higher and so comes first.
  bool operator()(const std::string& a, const std::string& b) const noexcept { return b < a; }
};

using ClassNameMap = std::multimap<std::string, std::string, SizeOrder>;

// Short name to full name.
SGDATATYPES_API const ClassNameMap& getClassNameMap();
// Full name to short name.
SGDATATYPES_API const ClassNameMap& getReverseClassNameMap();

}  // namespace sgdatatypes::typemap
