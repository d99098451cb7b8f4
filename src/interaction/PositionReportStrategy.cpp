#include "sgutils/interaction/PositionReportStrategy.h"

namespace sgutils {

graphics::datatype::Position PositionReportStrategy::getRelativePosition(const COSInterfacePtr&,
                                                                         const graphics::datatype::Position& position,
                                                                         std::optional<graphics::datatype::Units>) const {
  return position;
}

}  // namespace sgutils
