// The one installed text editor, and the editor that does nothing.
#include "sgutils/services/TextEditManager.h"

#include <memory>
#include <vector>

#include "sgutils/services/NullTextEditManager.h"

namespace sgutils {

namespace {
TextEditManager* installed = nullptr;
}  // namespace

TextEditManager::~TextEditManager() = default;

TextEditManager* TextEditManager::getTextEditManager() noexcept { return installed; }

void TextEditManager::setTextEditManager(TextEditManager* manager) noexcept { installed = manager; }

test::NullTextEditManager* test::NullTextEditManager::createInstance() {
  static std::vector<std::unique_ptr<NullTextEditManager>> made;
  made.push_back(std::make_unique<NullTextEditManager>());
  setTextEditManager(made.back().get());
  return made.back().get();
}

}  // namespace sgutils
