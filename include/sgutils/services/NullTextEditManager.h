// A text editor that does nothing, for tests and for sessions without a
// drawing layer.
#pragma once

#include "sgutils/services/TextEditManager.h"

namespace sgutils::test {

class SGUTILS_API NullTextEditManager final : public TextEditManager {
 public:
  // Makes an instance and installs it. The instances live as long as the
  // process, so a pointer handed out earlier stays valid.
  static NullTextEditManager* createInstance();

  void prepareTextEditing(COSInterfacePtr) override {}
  void startTextEditing() override {}
  void endTextEditing() override {}
  void setEditorString(const std::u16string&) override {}
  void setEditorFont(const std::u16string&, double) override {}
  void setEditorPosition(double, double) override {}
  void setEditorForegroundColor(const graphics::datatype::RGBAColor&) override {}
  void setEditorBackgroundColor(const graphics::datatype::RGBAColor&) override {}
  void setEditorHorizontalAlignment(const std::string&) override {}
  void setEditorVerticalAlignment(const std::string&) override {}
};

}  // namespace sgutils::test
