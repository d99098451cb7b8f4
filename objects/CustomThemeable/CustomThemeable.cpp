// The hand-written half of CustomThemeable: the theme it holds, its update
// from theme application, and the getTheme method for the language.
#include "sgutils/objects/CustomThemeable.gen.h"

#include "foundation/log/LogRecord.h"
#include "foundation/log/Logger.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/objects/MixinMethod.h"
#include "foundation/core/except/Error.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace graphics::mixin {

namespace {

using foundation::log::kDebug;

foundation::log::Logger& themeLog() {
  static foundation::log::Logger& lg = foundation::log::channel("theme::property");
  return lg;
}

bool isLive(const COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

// getTheme(obj): the theme the object holds.
void getThemeMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  const auto* array = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  COSInterfacePtr object =
      array && omIsVCOS(array) && vxGetNumberOfElements(array) == 1 ? omGetLiveArrayElement(array, 0) : nullptr;
  CustomThemeable* block = isLive(object.get()) ? CustomThemeable::fromObject(object.get()) : nullptr;
  if (!block) throw foundation::core::except::Error("VANTEL:graphics:themes:InvalidThemeableInput");
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(block->getTheme().release());
}

}  // namespace

void CustomThemeable::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "getTheme", &getThemeMethod, {"object"}, {"theme"});
}

CustomThemeable* CustomThemeable::fromObject(const COSInterface* object) noexcept {
  if (!object) return nullptr;
  void* slot = object->getInstanceData(classID());
  return slot ? static_cast<CustomThemeable*>(static_cast<SGReference*>(slot)) : nullptr;
}

void CustomThemeable::doSetup(COSInterfacePtr) {
  theme_.reset(graphics::theme::GraphicsTheme::builtinThemeFactory(false));
}

matrix::unique_vxArray CustomThemeable::getTheme() {
  // A block that missed its setup (a further superclass's) starts light here.
  if (!theme_) doSetup(COSInterfacePtr());
  return matrix::unique_vxArray(vxCreateSharedDataCopy(theme_.get()));
}

void CustomThemeable::updateTheme(const COSInterfacePtr& theme) {
  // Handle objects are equal when they are the same object.
  if (theme_ && omGetArrayElement(theme_.get(), 0).get() == theme.get()) {
    FOUNDATION_LOG(themeLog(), kDebug)
        << "graphics::mixin::CustomThemeable::updateTheme - return early because theme values are the same.";
    return;
  }
  theme_.reset(omCreateVCOSScalar(theme));
  markDirty();
}

void CustomThemeable::markDirty() {
  COSInterfacePtr object = getCOSReference();
  if (!isLive(object.get())) return;
  FOUNDATION_LOG(themeLog(), kDebug) << "graphics::mixin::CustomThemeable::markDirty - valid SGHandle, marking dirty.";
  doPostSet(object.get(), nullptr, false, true);
}

}  // namespace graphics::mixin
