// The table of built-in classes and their registration.
#include "vcos/BuiltinClasses.h"

#include "vcos/COSNamespaceInfo.h"
#include "vcos/CompactRepresentation.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/COSPackage.h"
#include "vcos/src/builtin/BuiltinClassInfo.h"
#include "vcos/src/builtin/ClassMembers.h"
#include "vcos/src/builtin/CustomDisplayBlock.h"
#include "vcos/src/builtin/ListenerBlock.h"
#include "vcos/src/builtin/Listeners.h"

namespace vcos::builtin {

namespace {

// Each row: package, short name, superclasses, abstract, block, members.
const ClassRow kClasses[] = {
    {"", "handle", {nullptr, nullptr}, /*abstract=*/true, nullptr, nullptr, &addHandleMembers},
    {"", "dynamicprops", {"handle", nullptr}, true, nullptr, nullptr, &addDynamicpropsMembers},
    {"event", "EventData", {"handle", nullptr}, false, &newBlock<EventDataBlock>, &deleteBlock<EventDataBlock>,
     &addEventDataMembers},
    {"event", "PropertyEvent", {"event.EventData", nullptr}, false, &newBlock<PropertyEventBlock>,
     &deleteBlock<PropertyEventBlock>, &addPropertyEventMembers},
    {"event", "listener", {"handle", nullptr}, false, &newBlock<ListenerBlock>, &deleteBlock<ListenerBlock>,
     &addListenerMembers},
    {"event", "proplistener", {"event.listener", nullptr}, false, nullptr, nullptr, &addPropListenerMembers},
    {"vantel.mixin", "Heterogeneous", {nullptr, nullptr}, true, nullptr, nullptr, &addHeterogeneousMembers},
    {"vantel.mixin", "CustomDisplay", {nullptr, nullptr}, true, nullptr, nullptr, &addCustomDisplayMembers},
    // The mark of classes that the serializer restores element by element
    // (vcos/ObjectSerialization.h); it has no members.
    {"vantel.mixin", "CustomElementSerialization", {nullptr, nullptr}, true, nullptr, nullptr, nullptr},
    {"vantel.mixin.util", "PropertyGroup", {"handle", nullptr}, false, &newBlock<PropertyGroupBlock>,
     &deleteBlock<PropertyGroupBlock>, &addPropertyGroupMembers},
};

class BuiltinNamespace final : public COSNamespaceInfo {
 public:
  explicit BuiltinNamespace(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }
  const char* getDescription() const override { return "Classes of the class-object system."; }

 private:
  const char* name_;
};

}  // namespace

}  // namespace vcos::builtin

void vcos::registerBuiltinClasses() {
  static bool done = false;
  if (done) return;
  done = true;
  for (const builtin::ClassRow& row : builtin::kClasses) {
    COSPackage* package = COSPackage::getNamespace(COSID(row.package));
    if (!package) package = COSPackage::addNamespace(new builtin::BuiltinNamespace(row.package));
    package->addClass(new builtin::ClassInfo(row));
  }
  // The compact display of objects is a function that classes call by name.
  FunctionDispatcher::instance().registerBuiltin(kDimensionsAndClassNameRepresentation,
                                                 &dimensionsAndClassNameRepresentation);
}
