// The hand-written half of Themeable: the class's map (class method or
// table), the custom per-instance mappings, the combined map the theme
// application reads, and the structure form in which
// the custom mappings are saved and loaded.
#include "sgutils/objects/Themeable.gen.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>

#include "foundation/core/except/Error.h"
#include "sgutils/lifecycle/ObjectCtorMI.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/propinfos/PropInfoLookup.h"
#include "sgutils/propinfos/RelatedProperties.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSClient.h"
#include "vx/vx.h"

namespace graphics::mixin {

using foundation::core::except::Error;
using sgutils::themes::ThemeMap;

namespace {

bool isLive(const COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

// The object of the method's first input and its Themeable block.
std::pair<COSInterfacePtr, Themeable*> selfOf(int nrhs, const COSValue* prhs) {
  const auto* array = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  if (!array || !omIsVCOS(array) || vxGetNumberOfElements(array) != 1)
    throw Error("VANTEL:graphics:themes:InvalidThemeableInput");
  COSInterfacePtr object = omGetLiveArrayElement(array, 0);
  Themeable* block = isLive(object.get()) ? Themeable::fromObject(object.get()) : nullptr;
  if (!block) throw Error("VANTEL:graphics:themes:InvalidThemeableInput");
  return {object, block};
}

bool isText(const vxArray* value) {
  return value && (vxIsChar(value) || (vxIsString(value) && vxGetNumberOfElements(value) == 1));
}

std::string textInput(int nrhs, const COSValue* prhs, int index, const char* what) {
  const auto* value = nrhs > index ? prhs[index].asPointer<const vxArray>() : nullptr;
  if (!isText(value)) throw Error("VANTEL:graphics:themes:InvalidScalarTextInput", what);
  return vxArrayToStdString(value);
}

vxArray* emptyStruct() { return vxCreateStructMatrix(1, 1, 0, nullptr); }

void specifyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  if (nrhs != 3) throw Error("VANTEL:graphics:themes:InvalidThemeableInput");
  auto [object, block] = selfOf(nrhs, prhs);
  block->doSpecifyThemePropertyMapping(object, textInput(nrhs, prhs, 1, "Property name"),
                                       textInput(nrhs, prhs, 2, "Attribute name"));
}

// Takes the custom mapping away; the value on the object stays as it is.
void removeMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  auto [object, block] = selfOf(nrhs, prhs);
  block->removeCustomThemePropertyMapping(textInput(nrhs, prhs, 1, "Property name"));
}

// The custom attribute of a property; with a second input that is on, the
// combined one. Empty text for a property without a mapping.
void getMappingMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  auto [object, block] = selfOf(nrhs, prhs);
  const std::string property = textInput(nrhs, prhs, 1, "Property name");
  bool combined = false;
  if (nrhs > 2) {
    const auto* flag = prhs[2].asPointer<const vxArray>();
    if (isText(flag)) {
      const std::string word = vxArrayToStdString(flag);
      combined = equalsIgnoringCase(word, "on");
      if (!combined && !equalsIgnoringCase(word, "off"))
        throw Error("VANTEL:graphics:themes:InvalidScalarTextInput", "Combined");
    } else {
      combined = flag && !vxIsEmpty(flag) && vxGetScalar(flag) != 0;
    }
  }
  const std::string attribute = combined ? block->getCombinedThemePropertyMapping(object.get(), property)
                                         : block->getCustomThemePropertyMapping(property);
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(vxCreateString(attribute.c_str()));
}

// The defaults a subclass may override: no map of its own, nothing more to
// do after the property values were set.
void getThemeMapMethod(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) {
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(emptyStruct());
}

void applyThemeValuesMethod(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) {
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(true));
}

// getThemePropertyMapping takes its third input optionally, which the plain
// mixin method form does not say.
class GetMappingMethod final : public COSMethodBase {
 public:
  explicit GetMappingMethod(COSID classId)
      : COSMethodBase(classId, COSID("getThemePropertyMapping"), PublicAccess,
                      "The contents of the comment field should go here.",
                      COSMethodSignature::createMethodSignature(
                          COSID("getThemePropertyMapping"),
                          {{COSID("object"), COSDataTypePtr(), false},
                           {COSID("property"), COSDataTypePtr(), false},
                           {COSID("combined"), COSDataTypePtr(), true}},
                          sgutils::untypedArguments({"attribute"}), COSMethodSignature::None)) {}
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    getMappingMethod(client, nlhs, plhs, nrhs, prhs);
  }
};

}  // namespace

void Themeable::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "applyThemeValues", &applyThemeValuesMethod, {"object", "theme"},
                          {"result"});
  sgutils::addMixinMethod(cls, classId, "getThemeAttributeMap", &getThemeMapMethod, {"object"}, {"map"});
  sgutils::addMixinMethod(cls, classId, "getThemeMap", &getThemeMapMethod, {}, {"map"}, /*isStatic=*/true);
  cls->addMethod(new GetMappingMethod(classId));
  sgutils::addMixinMethod(cls, classId, "removeThemePropertyMapping", &removeMethod, {"object", "property"}, {});
  sgutils::addMixinMethod(cls, classId, "specifyThemePropertyMapping", &specifyMethod,
                          {"object", "property", "attribute"}, {});
}

void Themeable::doSpecifyThemePropertyMapping(const COSInterfacePtr& object, const std::string& property,
                                              const std::string& attribute) {
  const bool remove = equalsIgnoringCase(attribute, "remove");
  if (attribute.empty()) throw Error("VANTEL:graphics:themes:InvalidScalarTextInput", "Attribute name");
  if (!isLive(object.get())) throw Error("VANTEL:graphics:themes:InvalidThemeableInput");
  COSClass* cls = object->getClass();
  COSPropInfo* info = sgutils::getAmbiguousMatchingPropInfo(cls, property.c_str());
  if (!info || info->getMemberSetAccess() != PublicAccess || !info->isVisible())
    throw Error("VANTEL:graphics:themes:InvalidClassProperty", std::string(cls->getName()));
  // From here on the property's own name: no mapping under a partial or
  // wrongly cased name.
  const std::string name(info->getName());
  sgutils::RelatedProperties related(object, name);
  std::string old;
  if (remove) {
    removeCustomThemePropertyMapping(name);
  } else {
    old = getCustomThemePropertyMapping(name);
    addCustomThemePropertyMapping(name, attribute);
    related.setMode(sgutils::AutoManual::Auto);
  }
  const sgutils::AutoManual* mode = related.modeValue();
  const bool isAuto = !mode || *mode == sgutils::AutoManual::Auto;
  if (getCombinedThemePropertyMapping(object.get(), name).empty() && remove && isAuto) {
    // Nothing themes the property any more: back to its default value.
    for (const char* word : {"default", "factory"}) {
      try {
        matrix::unique_vxArray value(vxCreateString(word));
        ::SGHandle::setProperty(COSGetPublicClient(), object, name.c_str(), value.get());
        related.setMode(sgutils::AutoManual::Auto);
        return;
      } catch (const std::exception&) {
      }
    }
    throw Error("VANTEL:graphics:themes:NoFactorySupport", name);
  }
  try {
    sgutils::themes::setPropertyToThemedValue(object, name, true);
  } catch (const std::exception&) {
    if (!old.empty())
      addCustomThemePropertyMapping(name, old);
    else
      removeCustomThemePropertyMapping(name);
    throw Error("VANTEL:graphics:themes:InvalidThemeableProperty", name, attribute);
  }
}

Themeable* Themeable::fromObject(const COSInterface* object) noexcept {
  if (!object) return nullptr;
  void* slot = object->getInstanceData(classID());
  return slot ? static_cast<Themeable*>(static_cast<SGReference*>(slot)) : nullptr;
}

namespace {

// Folds a structure of text fields into a map, in field order; a later field
// overwrites an earlier key.
void fold(const vxArray* given, ThemeMap& map) {
  if (!given || !vxIsStruct(given) || vxGetNumberOfElements(given) < 1) return;
  for (int field = 0, count = vxGetNumberOfFields(given); field < count; ++field) {
    const vxArray* text = vxGetFieldByNumber(given, 0, field);
    if (!text || !(vxIsChar(text) || vxIsString(text))) continue;
    map.insert_or_assign(vxGetFieldNameByNumber(given, field), vxArrayToStdString(text));
  }
}

bool overrides(const COSClass* cls, const std::string& method) {
  COSClass* mine = Themeable::getClassInstance();
  return cls && mine && sgutils::isMethodOverridden(*mine, *const_cast<COSClass*>(cls), method);
}

// What a class says once about theming, kept for the theme walk. The weak
// reference keeps the class's memory, so no other class takes its address.
struct ClassThemeInfo {
  COSInterfacePtr cls;
  ThemeMap map;
  bool asksInstance = false;
};

const ClassThemeInfo& classInfo(const COSClass* cls) {
  static std::unordered_map<const COSClass*, ClassThemeInfo> cache;
  if (auto it = cache.find(cls); it != cache.end()) return it->second;
  ClassThemeInfo info{COSInterfacePtr(const_cast<COSClass*>(cls), COSWeakReference), Themeable::getThemeMap(cls),
                      false};
  static const std::string instanceMethod("getThemeAttributeMap");
  info.asksInstance = info.map.empty() && overrides(cls, instanceMethod);
  return cache.emplace(cls, std::move(info)).first->second;
}

}  // namespace

ThemeMap Themeable::getThemeMap(const COSClass* cls) {
  ThemeMap map;
  if (!cls) return map;
  static const std::string method("getThemeMap");
  if (overrides(cls, method)) {
    vxArray* out[1] = {nullptr};
    omCallMethod(cls->getID(), COSID(method), sgutils::privateClientOf(const_cast<COSClass*>(cls)), 1, out, 0,
                 nullptr, /*dispatchOnObject=*/false);
    matrix::unique_vxArray result(out[0]);
    fold(result.get(), map);
    return map;
  }
  if (const ThemeMap* row = sgutils::themes::findBuiltinThemeMap(cls->getName())) map = *row;
  return map;
}

ThemeMap Themeable::getThemeMap(std::string_view className) {
  if (COSClass* cls = COSClass::getClass(COSID(className))) return getThemeMap(cls);
  return sgutils::themes::builtinThemeMap(className);
}

const ThemeMap& Themeable::classThemeMap(const COSClass* cls) { return classInfo(cls).map; }

bool Themeable::asksInstanceThemeMap(const COSClass* cls) { return classInfo(cls).asksInstance; }

ThemeMap Themeable::getCombinedThemeAttributeMap(const COSInterface* object) const {
  ThemeMap map;
  if (!object) return map;
  const COSClass* cls = object->getClass();
  map = classThemeMap(cls);
  if (map.empty() && asksInstanceThemeMap(cls)) {
    // The instance's own map, asked only when its class has none.
    matrix::unique_vxArray self(omCreateVCOSScalar(COSInterfacePtr(const_cast<COSInterface*>(object))));
    const vxArray* inputs[] = {self.get()};
    vxArray* out[1] = {nullptr};
    static const COSID method("getThemeAttributeMap");
    omCallMethod(cls->getID(), method, sgutils::privateClientOf(const_cast<COSClass*>(cls)), 1, out, 1, inputs,
                 /*dispatchOnObject=*/true);
    matrix::unique_vxArray result(out[0]);
    fold(result.get(), map);
  }
  for (const auto& [property, attribute] : custom_) map.insert_or_assign(property, attribute);
  return map;
}

std::string Themeable::getCombinedThemePropertyMapping(const COSInterface* object, std::string_view property) const {
  if (auto it = custom_.find(property); it != custom_.end()) return it->second;
  if (!object) return {};
  const COSClass* cls = object->getClass();
  if (asksInstanceThemeMap(cls)) {
    const ThemeMap map = getCombinedThemeAttributeMap(object);
    auto it = map.find(property);
    return it == map.end() ? std::string() : it->second;
  }
  const ThemeMap& row = classThemeMap(cls);
  auto it = row.find(property);
  return it == row.end() ? std::string() : it->second;
}

std::string Themeable::getCustomThemePropertyMapping(std::string_view property) const {
  auto it = custom_.find(property);
  return it == custom_.end() ? std::string() : it->second;
}

void Themeable::addCustomThemePropertyMapping(const std::string& property, const std::string& attribute) {
  custom_.insert_or_assign(property, attribute);
}

void Themeable::removeCustomThemePropertyMapping(std::string_view property) {
  if (auto it = custom_.find(property); it != custom_.end()) custom_.erase(it);
}

COSValue Themeable::getCustomThemePropertyMappingsImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  vxArray* result = vxCreateStructMatrix(1, 1, 0, nullptr);
  for (const auto& [property, attribute] : custom_) {
    const int field = vxAddField(result, property.c_str());
    vxSetFieldByNumber(result, 0, field, vxCreateString(attribute.c_str()));
  }
  return COSValue(result);
}

// A load replaces the custom mappings in one step and applies no values;
// a value other than a structure just clears them.
void Themeable::setCustomThemePropertyMappingsImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  clearThemePropertyMappings();
  const auto* given = value.asPointer<const vxArray>();
  if (!given || !vxIsStruct(given) || vxGetNumberOfElements(given) < 1) return;
  for (int field = 0, count = vxGetNumberOfFields(given); field < count; ++field) {
    const vxArray* text = vxGetFieldByNumber(given, 0, field);
    if (!text || !vxIsChar(text)) continue;
    custom_.insert_or_assign(vxGetFieldNameByNumber(given, field), vxArrayToStdString(text));
  }
}

}  // namespace graphics::mixin
