// Figures by their Number.
#include "sgclasses/FigureNumbers.h"

#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClient.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

COSInterfacePtr findFigure(double number) {
  COSInterfacePtr top = root();
  for (COSInterface* child = top->getNewestChild(); child; child = child->getOlderSibling()) {
    if (child->isBeingDestroyed() || !isOfClass(child, {kFigureClass})) continue;
    if (sgutils::blockOf<Figure>(child, Figure::classID())->getNumber() == number) return COSInterfacePtr(child);
  }
  return {};
}

COSInterfacePtr figureNumbered(double number, std::span<const vxArray* const> pairs) {
  COSInterfacePtr figure = findFigure(number);
  if (!figure) {
    figure = create(kFigureClass, root(), pairs);
    // Joining the root gave it the lowest free number; n is free, so it takes n.
    sgutils::blockOf<Figure>(figure.get(), Figure::classID())->takeNumber(number);
  } else if (!pairs.empty()) {
    matrix::unique_vxArray self(omCreateVCOSScalar(figure));
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
      vxSetProperty(self.get(), 0, vxArrayToStdString(pairs[i]).c_str(), pairs[i + 1]);
  }
  makeCurrent(figure);
  return figure;
}

}  // namespace sgclasses
