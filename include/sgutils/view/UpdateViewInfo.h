// The parameter block that goes down the object tree when views are updated:
// everything a child needs to know of its surroundings. A plain value with no
// locking; it belongs to the thread of the update that made it. A copy has its
// own layout map and font name and shares the two unowned map pointers.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "sgdatatypes/AutoManual.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgdatatypes/RenderEngineType.h"
#include "sgutils/SgutilsExport.h"
#include "sgutils/view/Rectangle2d.h"
#include "sgutils/view/Rectangle2i.h"
#include "vcos/COSInterfacePtr.h"

namespace graphics::datatype {
class AlphaMap;
class ColorMap;
}  // namespace graphics::datatype

namespace sgutils {

class SGUTILS_API UpdateViewInfo {
 public:
  // Orders layout keys by object identity.
  struct IdentityLess {
    bool operator()(const COSInterfacePtr& a, const COSInterfacePtr& b) const noexcept {
      return std::less<const COSInterface*>()(a.get(), b.get());
    }
  };
  using ChildLayout = std::map<COSInterfacePtr, gui_objects::Rectangle2i, IdentityLess>;

  std::int32_t getScreenResolution() const noexcept { return screenResolution_; }
  void setScreenResolution(std::int32_t value) noexcept { screenResolution_ = value; }
  double getBaseScreenResolution() const noexcept { return baseScreenResolution_; }
  void setBaseScreenResolution(double value) noexcept { baseScreenResolution_ = value; }
  gui_objects::Rectangle2d getRefFrame() const noexcept { return refFrame_; }
  void setRefFrame(const gui_objects::Rectangle2d& value) noexcept { refFrame_ = value; }
  double getCharacterWidth() const noexcept { return characterWidth_; }
  void setCharacterWidth(double value) noexcept { characterWidth_ = value; }
  double getCharacterHeight() const noexcept { return characterHeight_; }
  void setCharacterHeight(double value) noexcept { characterHeight_ = value; }
  std::u16string getFixedWidthFontName() const { return fixedWidthFontName_; }
  void setFixedWidthFontName(const std::u16string& value) { fixedWidthFontName_ = value; }

  // The maps are borrowed: the caller keeps them alive for the update.
  const graphics::datatype::AlphaMap* getAlphaMap() const noexcept { return alphaMap_; }
  void setAlphaMap(const graphics::datatype::AlphaMap* value) noexcept { alphaMap_ = value; }
  const graphics::datatype::ColorMap* getColorMap() const noexcept { return colorMap_; }
  void setColorMap(const graphics::datatype::ColorMap* value) noexcept { colorMap_ = value; }

  graphics::datatype::RenderEngineType getRenderer() const noexcept { return renderer_; }
  void setRenderer(graphics::datatype::RenderEngineType value) noexcept { renderer_ = value; }
  graphics::datatype::AutoManual getRendererMode() const noexcept { return rendererMode_; }
  void setRendererMode(graphics::datatype::AutoManual value) noexcept { rendererMode_ = value; }
  const graphics::datatype::RGBAColor& getColor() const noexcept { return color_; }
  void setColor(const graphics::datatype::RGBAColor& value) noexcept { color_ = value; }
  bool getModalFigure() const noexcept { return modalFigure_; }
  void setModalFigure(bool value) noexcept { modalFigure_ = value; }
  bool getAntiAliasing() const noexcept { return antiAliasing_; }
  void setAntiAliasing(bool value) noexcept { antiAliasing_ = value; }

  // Visibility counts as true until someone says otherwise; a reader that
  // needs a real answer asks isInVisibleHierarchyInitialized() first.
  void setIsInVisibleHierarchy(bool value) noexcept {
    isInVisibleHierarchy_ = value;
    isInVisibleHierarchyInitialized_ = true;
  }
  bool getIsInVisibleHierarchy() const noexcept { return isInVisibleHierarchy_; }
  bool isInVisibleHierarchyInitialized() const noexcept { return isInVisibleHierarchyInitialized_; }

  void setIsInDrawnowSyncableHierarchy(bool value) noexcept {
    isInDrawnowSyncableHierarchy_ = value;
    isInDrawnowSyncableHierarchyInitialized_ = true;
  }
  bool isInDrawnowSyncableHierarchy() const noexcept { return isInDrawnowSyncableHierarchy_; }
  bool isInDrawnowSyncableHierarchyInitialized() const noexcept { return isInDrawnowSyncableHierarchyInitialized_; }

  // The rectangle a managed layout gives a child. The first entry for a child
  // stays: a later one is dropped. To move a child, clear and rebuild.
  // The key refers to the child weakly, so the block never keeps it alive.
  void setChildLayout(const COSInterfacePtr& child, const gui_objects::Rectangle2i& rect);
  bool hasChildPosition(const COSInterfacePtr& child) const;
  // The child's rectangle; the empty rectangle for a child without an entry,
  // which callers rule out with hasChildPosition().
  gui_objects::Rectangle2i getChildPosition(const COSInterfacePtr& child) const;
  bool isChildCompInManagedLayout() const noexcept { return !childLayout_.empty(); }
  void clearManagedLayout() noexcept { childLayout_.clear(); }

 private:
  std::int32_t screenResolution_ = 0;
  double baseScreenResolution_ = 0.0;
  gui_objects::Rectangle2d refFrame_;
  double characterWidth_ = 1.0;
  double characterHeight_ = 1.0;
  std::u16string fixedWidthFontName_;
  const graphics::datatype::AlphaMap* alphaMap_ = nullptr;
  const graphics::datatype::ColorMap* colorMap_ = nullptr;
  graphics::datatype::RenderEngineType renderer_ = graphics::datatype::RenderEngineType::OpenGL;
  graphics::datatype::AutoManual rendererMode_ = graphics::datatype::AutoManual::Auto;
  graphics::datatype::RGBAColor color_;
  bool modalFigure_ = false;
  bool isInVisibleHierarchy_ = true;
  ChildLayout childLayout_;
  bool antiAliasing_ = true;
  bool isInVisibleHierarchyInitialized_ = false;
  bool isInDrawnowSyncableHierarchy_ = false;
  bool isInDrawnowSyncableHierarchyInitialized_ = false;
};

}  // namespace sgutils
