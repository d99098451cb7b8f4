// What an object keeps for its view: the names of the view properties that
// changed since the view was last told. The strategy is chosen on the first
// mark, by the kind of component the object is, and kept for its life. A
// custom component (its own container of components) gets none: every mark
// on it is dropped and it has no cache.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "sgutils/view/ViewPropertiesStrategy.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace graphics::mixin {

class SGUTILS_API ViewPropertiesManager {
 public:
  // `self` is the object this manager belongs to (not held).
  void setStrategy(COSInterface* self);
  void markViewPropertyDirty(COSInterface* self, std::string_view name);
  // Each entry of a cell array of names; raises "VANTEL:sgutils:NotCellArray"
  // for anything else.
  void markViewPropertiesDirty(COSInterface* self, const vxArray* names);
  // A 1-by-n string array of the names in the tracker's order, or null
  // without a strategy. The caller owns it.
  vxArray* getDirtyProperties() const;
  std::vector<std::string> getDirtyPropertyStrings() const;
  bool hasDirtyProperties() const { return strategy_ && strategy_->hasDirtyProperties(); }
  // The view has been told: forget the names.
  void markClean() {
    if (strategy_) strategy_->markClean();
  }
  bool isCacheReady() const noexcept { return cacheReady_; }
  void disableCache() noexcept { cacheReady_ = false; }
  const sgutils::ViewPropertiesStrategy* strategy() const noexcept { return strategy_.get(); }

  static bool isCustomComponent(const COSInterface* self);
  static bool isVantelComponent(const COSInterface* self);
  static bool isAppBuildingFigure(const COSInterfacePtr& object);
  static bool isInAppBuildingFigure(COSInterface* self);

 private:
  std::unique_ptr<sgutils::ViewPropertiesStrategy> strategy_;
  bool cacheReady_ = false;
};

}  // namespace graphics::mixin
