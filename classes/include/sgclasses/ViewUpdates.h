// Views of the object tree: each drawnow tells every registered view which
// view properties of each changed object were set since the last drawnow,
// then forgets them.
#pragma once

#include <string>
#include <vector>

#include "sgclasses/SgclassesExport.h"
#include "sgutils/view/UpdateViewInfo.h"
#include "vcos/COSInterfacePtr.h"

namespace graphics::mixin {
class ViewPropertiesManager;
}

namespace sgclasses {

class SGCLASSES_API ViewUpdateListener {
 public:
  virtual ~ViewUpdateListener();
  // `names` in the order the object's strategy gives them; never empty.
  // `info` tells what the object's surroundings are (updateViewInfoFor in
  // sgclasses/ViewInfo.h says which fields are filled and how).
  virtual void viewPropertiesChanged(COSInterface* object, const std::vector<std::string>& names,
                                     const sgutils::UpdateViewInfo& info) = 0;
};

// Registers a view for the life of the scope (the view is not owned).
class SGCLASSES_API ScopedViewRegistration {
 public:
  explicit ScopedViewRegistration(ViewUpdateListener& view);
  ~ScopedViewRegistration();
  ScopedViewRegistration(const ScopedViewRegistration&) = delete;
  ScopedViewRegistration& operator=(const ScopedViewRegistration&) = delete;

 private:
  ViewUpdateListener* view_;
};

// The names an object's view has not yet been told (empty for an object
// that is no concrete graphics object).
SGCLASSES_API std::vector<std::string> pendingViewProperties(COSInterface* object);

namespace detail {
// What drawnow calls for each live dirty object.
void tellViews(COSInterface* object, graphics::mixin::ViewPropertiesManager& manager);
}  // namespace detail

}  // namespace sgclasses
