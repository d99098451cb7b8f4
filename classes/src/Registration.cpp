// Registration of the concrete classes and the root of the object tree.
#include "sgclasses/Registration.h"

#include "sgclasses/Drawnow.h"

#include "sgclasses/ClassNames.h"
#include "sgclasses/ContainerChildren.h"
#include "sgclasses/DisplayData.h"
#include "sgclasses/Enumerations.h"
#include "sgdatatypes/Registration.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Theming.h"
#include "sgutils/themes/ThemeUtils.h"
#include "sgutils/startup/Startup.h"
#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/ContextMenu.gen.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/GraphicsContainer.gen.h"
#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/tree/ChildStrategy.h"
#include "sgutils/objects/Group.gen.h"
#include "sgutils/objects/Line.gen.h"
#include "sgutils/objects/Patch.gen.h"
#include "sgutils/objects/Root.gen.h"
#include "sgutils/objects/Text.gen.h"
#include "sgutils/tree/RootInstance.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"

namespace sgclasses {

namespace {

// Numeric properties hold the plain double word ("double"); they convert
// to and from arrays as the "double scalar" type does.
class ForwardingConversion final : public COSTypeConversion {
 public:
  explicit ForwardingConversion(const COSTypeConversion* target) : target_(target) {}
  COSValue convert(COSValue from) const override { return target_->convert(from); }

 private:
  const COSTypeConversion* target_;
};

void addDoubleConversions() {
  const COSID any("any"), word("double"), scalar("double scalar");
  if (!COSTypeRepository::getConversion(any, word))
    if (const COSTypeConversion* c = COSTypeRepository::getConversion(any, scalar))
      COSTypeRepository::addConversion(any, word, new ForwardingConversion(c));
  if (!COSTypeRepository::getConversion(word, any))
    if (const COSTypeConversion* c = COSTypeRepository::getConversion(scalar, any))
      COSTypeRepository::addConversion(word, any, new ForwardingConversion(c));
}

template <class E>
void registerEnumeration(const char* fullName) {
  graphics::datatype::register_enumeration(fullName, graphics::datatype::EnumerationTraits<E>::description);
}

COSInterfacePtr& rootHolder() {
  static COSInterfacePtr root;
  return root;
}
}  // namespace

void registerClasses() {
  static const bool done = [] {
    VLInitialize_sgutils();
    addDoubleConversions();
    registerEnumeration<NextPlot>("vantel.graphics.datatype.NextPlot");
    registerEnumeration<FigureNextPlot>("vantel.graphics.datatype.FigureNextPlot");
    registerEnumeration<LineStyle>("vantel.graphics.datatype.LineStyle");
    registerEnumeration<Marker>("vantel.graphics.datatype.Marker");
    registerEnumeration<FontWeight>("vantel.graphics.datatype.FontWeight");
    registerEnumeration<HorizontalAlignment>("vantel.graphics.datatype.HorizontalAlignment");
    registerEnumeration<VerticalAlignment>("vantel.graphics.datatype.VerticalAlignment");
    registerEnumeration<AxisScale>("vantel.graphics.datatype.AxisScale");
    using namespace sgutils::generated;
    for (auto fn : {&registerGraphicsNode, &registerGraphicsContainer, &registerRoot, &registerFigure, &registerAxes,
                    &registerLine, &registerText, &registerPatch, &registerGroup, &registerContextMenu})
      fn();
    registerDisplayData();
    // findobj walks a container's children in place, as its Children lists them.
    sgutils::setChildListingLookup(&ContainerChildren::listingOf);
    // ...and reads each child's HandleVisibility straight from its member.
    sgutils::ChildStrategy::setHandleVisibilityReader(GraphicsNode::classID(), &GraphicsNode::readHandleVisibility);
    // The figure is the theme container of its tree.
    sgutils::themes::setGoverningThemeLookup(&themeFromAncestors);
    // A plotted line's colour follows its axes' themed colour order.
    sgutils::themes::registerDerivedThemeValue(Line::classID(), COSID("Color"), &Line::seriesColor);
    return true;
  }();
  (void)done;
  sgutils::RootInstance::setGetRootInstanceFcn([] { return root(); });
}

COSInterfacePtr root() {
  COSInterfacePtr& holder = rootHolder();
  if (!holder || holder->isDestroyed()) {
    holder.reset();
    holder = create(kRootClass, {});
  }
  return holder;
}

void releaseRoot() {
  COSInterfacePtr& holder = rootHolder();
  // Deletion runs to its end whatever a listener raises; at the end of a
  // session there is no one to report a listener's error to.
  if (holder && !holder->isDestroyed()) {
    try {
      holder->deleteObject(COSGetPublicClient());
    } catch (const std::exception&) {
    }
  }
  holder.reset();
  sgutils::RootInstance::clearGetRootInstanceFcn();
  forgetDeletedDirtyObjects();
}

}  // namespace sgclasses
