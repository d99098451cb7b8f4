// Default values by name on an object, the word rules of a set, and the
// frame hooks of the default store (DefaultNameAccess.h).
#include "sgutils/defaults/DefaultNameAccess.h"

#include "foundation/core/except/Error.h"
#include "foundation/usagelog/UsageLog.h"
#include "sgutils/startup/FrameHooks.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/defaults/DefaultPropString.h"
#include "src/defaults/DefaultPairCollection.h"
#include "src/defaults/DefaultValueConversion.h"
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FunctionDispatcher.h"
#include "vx/vxCreate.h"
#include "vx/vxMemory.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace sgutils {

namespace {

void logUsage(const COSInterfacePtr& object, const char* operation, std::string defaultObject,
              std::string propertyName) {
  usagelog::logUsageData("VL", "VL_GRAPHICS", "VL_GRAPHICS_DEFAULTS",
                         {{"operation_type", operation},
                          {"target_object", object->getClass()->getName()},
                          {"default_object", std::move(defaultObject)},
                          {"property_name", std::move(propertyName)}},
                         usagelog::UsageOption::defaultOption);
}

bool isWholeStoreName(const std::string& name) { return name == "default" || name == "Default"; }

bool isScalarTextWord(const vxArray* value, const char* word) {
  if (!value || !(vxIsChar(value) ? vxGetM(value) == 1 : vxIsString(value) && vxIsScalar(value))) return false;
  return vxArrayToStdString(value) == word;
}

// The factory value of a property, or null where the rules of defaults
// give none (no defaults allowed, no conversion): the word then stays text.
matrix::unique_vxArray factoryOrNull(const DefaultPropString& key) {
  try {
    return DefaultProp::getFactoryValue(key);
  } catch (const foundation::core::except::Error&) {
    return nullptr;
  }
}

// Constructor input named like a default is stored as a default. Any other
// name, a factory name included, is left to the property look-up, which
// refuses a name that is no property.
bool setDefaultByName(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  const std::string text(name);
  if (!DefaultPropString::isDefaultProp(text)) return false;
  DefaultNameAccess::set(object, text, value);
  return true;
}

// "default" and "remove" take the inherited default of the property
// ("remove" first drops this object's own), "factory" the factory value,
// which is also the fallback of the other two; when neither exists the word
// stays an ordinary text value. "\default", "\factory" and "\remove" set
// the word itself.
bool applyWord(const COSClient* client, const COSInterfacePtr& object, COSPropInfo* property, const char* word) {
  const std::string w(word);
  if (w == "default" || w == "remove" || w == "factory") {
    const DefaultPropString key(std::string("default.") + object->getClass()->getName() + "." + property->getName(),
                                false);
    matrix::unique_vxArray value;
    if (w != "factory") {
      DefaultProp defaults(object);
      if (w == "remove") defaults.remove(key);
      value = defaults.get(key);
    }
    if (!value) value = factoryOrNull(key);
    if (!value) return false;
    detail::setFromArray(client, object.get(), property, value.get());
    return true;
  }
  if (w == "\\default" || w == "\\factory" || w == "\\remove") {
    matrix::unique_vxArray text(vxCreateString(word + 1));
    detail::setFromArray(client, object.get(), property, text.get());
    return true;
  }
  return false;
}

void setPairs(const COSInterfacePtr& object, const PropValuePairs& pairs, bool fromReset) {
  DefaultProp::setPVPairs(object, pairs, fromReset);
}

void clearAll(SGReference& block) { DefaultProp(block.getCOSReference()).clear(); }

}  // namespace

matrix::unique_vxArray DefaultNameAccess::get(const COSInterfacePtr& object, const std::string& name) {
  DefaultProp defaults(object);
  if (isWholeStoreName(name)) {
    logUsage(object, "get_default", "default", "default");
    return defaults.get();
  }
  if (DefaultPropString::queryingAllClassDefaults(name)) {
    logUsage(object, "get_default", name.substr(7), "default");
    return defaults.getClassDefaults(name);
  }
  const DefaultPropString parsed(name, false);
  logUsage(object, "get_default", parsed.getClassName(), parsed.getPropName());
  if (matrix::unique_vxArray value = defaults.get(parsed)) return value;
  return DefaultProp::getFactoryValue(parsed);
}

matrix::unique_vxArray DefaultNameAccess::getFactory(const COSInterfacePtr& object, const std::string& name) {
  const char* className = object->getClass()->getName();
  if (name.empty()) throw foundation::core::except::Error("VANTEL:sg:InvalidProperty", "''", className);
  if (name == "factory" || name == "Factory") {
    // Only the root holds the list of all factory values.
    if (!object->getClass()->isSubclassOf(COSID("vantel.ui.Root")))
      throw foundation::core::except::Error("VANTEL:sgutils:OnlyRootHasFactoryDefaults", className);
    vxArray* out[1] = {nullptr};
    inCallFcn("rootfactoryvalues", 1, out, 0, nullptr);
    return matrix::unique_vxArray(out[0]);
  }
  matrix::unique_vxArray value = DefaultProp::getFactoryValue(DefaultPropString(name, false));
  if (!value) throw foundation::core::except::Error("VANTEL:sg:InvalidProperty", name, className);
  return value;
}

matrix::unique_vxArray DefaultNameAccess::set(const COSInterfacePtr& object, const std::string& name,
                                              const vxArray* value) {
  if (DefaultPropString::isFactoryProp(name))
    throw foundation::core::except::Error("VANTEL:sgutils:CannotSetFactoryValue", name);
  // Parsed before anything else: a bare "default" is refused here.
  const DefaultPropString parsed(name, false);
  DefaultProp defaults(object);
  if (!value) return defaults.set(parsed);
  logUsage(object, "set_default", parsed.getClassName(), parsed.getPropName());
  if (isScalarTextWord(value, "default") || isScalarTextWord(value, "remove"))
    defaults.remove(parsed);
  else
    defaults.set(parsed, value);
  return nullptr;
}

void DefaultNameAccess::installFrameHooks() {
  FrameHooks& hooks = frameHooks();
  hooks.defaultNameSetter = &setDefaultByName;
  hooks.wordRules = &applyWord;
  hooks.defaultPairs = &detail::collectDefaultPairs;
  hooks.defaultPairsSetter = &setPairs;
  hooks.defaultClearer = &clearAll;
}

}  // namespace sgutils
