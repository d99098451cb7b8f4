// The in-place text editor of the layer that draws: the library asks it to
// edit the text of an object where it is shown. One instance serves the
// process; none is there until that layer (or a test) installs one.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace graphics::datatype {
class RGBAColor;
}

namespace sgutils {

class SGUTILS_API TextEditManager {
 public:
  virtual ~TextEditManager();

  // The installed editor, or null.
  static TextEditManager* getTextEditManager() noexcept;

  // Makes the editor ready for the text of `object`.
  virtual void prepareTextEditing(COSInterfacePtr object) = 0;
  virtual void startTextEditing() = 0;
  virtual void endTextEditing() = 0;
  virtual void setEditorString(const std::u16string& text) = 0;
  virtual void setEditorFont(const std::u16string& name, double pointSize) = 0;
  // In pixels of the figure, from its lower left corner.
  virtual void setEditorPosition(double x, double y) = 0;
  virtual void setEditorForegroundColor(const graphics::datatype::RGBAColor& color) = 0;
  virtual void setEditorBackgroundColor(const graphics::datatype::RGBAColor& color) = 0;
  // "left", "center" or "right".
  virtual void setEditorHorizontalAlignment(const std::string& alignment) = 0;
  // "top", "cap", "middle", "baseline" or "bottom".
  virtual void setEditorVerticalAlignment(const std::string& alignment) = 0;

 protected:
  // Replaces the installed editor; the old one is not freed here, its
  // owner frees it.
  static void setTextEditManager(TextEditManager* manager) noexcept;
};

}  // namespace sgutils
