// How an object in a layout reports its position in another object's units.
// A layout container installs a strategy of its own; this default one hands
// the given position back unchanged.
#pragma once

#include <optional>

#include "sgdatatypes/Position.h"
#include "sgdatatypes/Units.h"
#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

class SGUTILS_API PositionReportStrategy {
 public:
  PositionReportStrategy() = default;
  PositionReportStrategy(const PositionReportStrategy&) = delete;
  PositionReportStrategy& operator=(const PositionReportStrategy&) = delete;
  virtual ~PositionReportStrategy() = default;

  // `units` is empty when not given; `target` may be empty.
  virtual graphics::datatype::Position getRelativePosition(const COSInterfacePtr& target,
                                                           const graphics::datatype::Position& position,
                                                           std::optional<graphics::datatype::Units> units) const;
};

}  // namespace sgutils
