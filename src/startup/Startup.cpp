// VLInitialize_sgutils and VLTerminate_sgutils: features once per process,
// then, once per instance, the data types library, the Java check in force,
// the namespace "vantel.graphics" and the class infos of the library, and
// the generated classes.
#include "sgutils/startup/Startup.h"
#include "sgutils/themes/ThemeSettings.h"

#include <memory>
#include <typeinfo>

#include "foundation/graphicsstate/GraphicsState.h"
#include "foundation/usm/Detail.h"
#include "sgutils/lifecycle/ErrorWithoutJVM.h"
#include "sgutils/startup/GeneratedClasses.h"
#include "sgutils/objects/GraphicsBaseFunctions.gen.h"
#include "sgutils/classinfo/GraphicsPlaceholderCI.h"
#include "sgutils/startup/GraphicsPrefs.h"
#include "sgutils/startup/FrameHooks.h"
#include "sgutils/startup/Namespaces.h"
#include "sgutils/startup/PerInstance.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "sgutils/classinfo/SGPropHandlerClassInfo.h"
#include "sgutils/classinfo/SGReferenceClassInfo.h"
#include "sgutils/classinfo/SGStorageClassInfo.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/FactoryBuiltins.h"
#include "sgutils/persistence/DoubleOrTypedHandleConversion.h"
#include "sgutils/themes/ThemeUtils.h"
#include "src/classinfo/SupportClasses.h"
#include "src/startup/DatatypesBridge.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/COSClass.h"
#include "vcos/COSPackage.h"
#include "vcos/FunctionDispatcher.h"

namespace {

using Store = foundation::usm::Detail<foundation::usm::scope::Vvm>;
struct InitFlagTag {};

// The per-instance init flag, made zero on first access.
unsigned char& initFlagSlot() {
  static const Store::ID slot = Store::getNextID(typeid(InitFlagTag));
  void* value = Store::findOrInsert(slot, typeid(InitFlagTag), foundation::usm::makeValue<unsigned char>(0));
  return *static_cast<unsigned char*>(value);
}

using MakeInfo = COSClassInfo* (*)();
struct ClassRow {
  COSPackage* (*package)();
  const char* name;
  MakeInfo make;
};

COSPackage* graphicsPackage() { return sgutils::getGraphicsNamespace(); }

// The library's own classes, in registration order.
const ClassRow kClasses[] = {
    {&graphicsPackage, "Graphics", []() -> COSClassInfo* { return new SGHandleClassInfo; }},
    {&graphicsPackage, "GraphicsPlaceholder", []() -> COSClassInfo* { return new GraphicsPlaceholderCI; }},
    {&graphicsPackage, "GraphicsDisplay", &sgutils::support::newGraphicsDisplayClassInfo},
    {&graphics::internal::getNamespace, "CopyContext", &sgutils::support::newCopyContextCI},
    {&graphics::mixin::internal::getNamespace, "Copyable", &sgutils::support::newCopyableCI},
    {&graphicsPackage, "GraphicsTestBase", &sgutils::support::newGraphicsTestBaseCI},
    {&graphicsPackage, "SGJavaVisibleMixinTestBase", &sgutils::support::newSGJavaVisibleMixinTestBaseCI},
    {&graphics::internal::getNamespace, "LegacyTestBase", &sgutils::support::newLegacyTestBaseCI},
    {&graphics::internal::getNamespace, "GraphicsPropertyHandler", []() -> COSClassInfo* { return new SGPropHandlerClassInfo; }},
    {&graphics::internal::getNamespace, "ReferenceObject", []() -> COSClassInfo* { return new SGReferenceClassInfo; }},
    {&graphics::internal::getNamespace, "GraphicsMetaProperty", &sgutils::support::newSGCustomMetaPropInfo},
    {&graphics::internal::getNamespace, "GraphicsMetaEvent", &sgutils::support::newSGCustomMetaEventInfo},
    {&graphics::internal::getNamespace, "GraphicsMetaClass", &sgutils::support::newSGCustomMetaClass},
    {&graphics::internal::getNamespace, "StorageObject", []() -> COSClassInfo* { return new SGStorageClassInfo; }},
};

bool isRegistered(COSPackage* package, const char* name) {
  // Looks the name up without building the class: its superclasses may
  // come later in the table.
  return COSClass::getClass(package->fullNameOf(name)) != nullptr;
}

void registerClasses() {
  vcos::registerBuiltinClasses();
  sgutils::support::ensureDefaultFactoryPropHandler();
  for (const ClassRow& row : kClasses) {
    COSPackage* package = row.package();
    if (isRegistered(package, row.name)) continue;
    SGHandle::addClassToNamespace(package, row.make());
  }
  // Build and hold the classes used later, now that all are registered; the
  // held references go at the end of the step.
  COSInterfacePtr graphics, placeholder;
  graphicsPackage()->findClass(graphics, "Graphics");
  graphicsPackage()->findClass(placeholder, "GraphicsPlaceholder");
}

// The marker class of objects that the Java side may see; registered once per
// instance (or per process without the per-instance store).
class GraphicsJavaVisibleInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "GraphicsJavaVisible"; }
  bool isHidden() const override { return true; }
};

struct JavaVisibleBlock {
  JavaVisibleBlock() {
    COSPackage* package = graphics::internal::getNamespace();
    if (!isRegistered(package, "GraphicsJavaVisible")) SGHandle::addClassToNamespace(package, new GraphicsJavaVisibleInfo);
    // The class exists from here on.
    COSInterfacePtr cls;
    package->findClass(cls, "GraphicsJavaVisible");
  }
};

void registerJavaVisible() {
  struct Tag;
  sgutils::PerInstance<Tag, JavaVisibleBlock>::get([] { return JavaVisibleBlock(); });
}

// GraphicsBaseFunctions, registered after the generated-class block, once
// per instance (or per process without the per-instance store).
struct BaseFunctionsBlock {
  BaseFunctionsBlock() {
    sgutils::generated::registerGraphicsBaseFunctions();
    graphics::internal::GraphicsBaseFunctions::getClassInstance();
  }
};

void registerBaseFunctions() {
  struct Tag;
  sgutils::PerInstance<Tag, BaseFunctionsBlock>::get([] { return BaseFunctionsBlock(); });
}

}  // namespace

unsigned char sgutils::initFlag() { return initFlagSlot(); }

extern "C" void VLInitialize_sgutils() {
  sgutils::GraphicsPrefs::registerFeatures();
  sgutils::themes::registerThemeFeatures();
  sgutils::DefaultNameAccess::installFrameHooks();
  // The root's get of "factory" calls the list by this name.
  vcos::FunctionDispatcher::instance().registerBuiltin("rootfactoryvalues", &rootFactoryValues);
  // Every class added from here on takes numbers and empties for its types.
  sgutils::frameHooks().converterReplacer = &sgutils::DoubleOrTypedHandleConversion::replaceConverters;
  // A reset object takes its container's theme again.
  sgutils::frameHooks().themeOnReset = &sgutils::themes::restoreThemeOnReset;

  unsigned char& flag = initFlagSlot();
  if (flag == 0) {
    // Set first: a failure below is not retried by a later call.
    flag = 1;
    sgutils::bridge::initializeDatatypes();
    sgutils::ErrorWithoutJVM::setNeverCheckJVM();
    if (GraphicsState::sgIsProduction()) sgutils::ErrorWithoutJVM::setCheckJVMProduction();
    registerClasses();
  }
  sgutils::registerGeneratedClasses();
  registerJavaVisible();
  registerBaseFunctions();
  graphics::internal::GraphicsBaseFunctions::registerFindobjLender();
}

extern "C" void VLTerminate_sgutils() {
  if (initFlagSlot() == 1) sgutils::bridge::terminateDatatypes();
}
