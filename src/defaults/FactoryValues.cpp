// Factory values: one by name (DefaultProp::getFactoryValue) and the maps of
// a class and of all classes (FactoryBuiltins.h). A factory value is what a
// property's provider gives as its factory default, leaving as an array
// through its type's conversion.
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/ClassNameMap.h"
#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/defaults/FactoryBuiltins.h"
#include "sgutils/themes/ThemeBuiltins.h"
#include "sgutils/themes/ThemeMappingTable.h"
#include "sgutils/themes/ThemeSettings.h"
#include "src/builtins/TextArgument.h"
#include "src/defaults/DefaultValueConversion.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeRepository.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

namespace sgutils {

namespace {

using FactoryMap = std::map<std::string, matrix::unique_vxArray>;

// Null when the type has no way in from an array: such a property has no
// factory value that the language could see.
matrix::unique_vxArray factoryArray(const COSPropInfo* property) {
  const COSDataTypePtr type = property->getDataType();
  if (!type->isVANTELArrayType() && !COSTypeRepository::getArrayConversion(*type, /*toArray=*/false)) return nullptr;
  return detail::typedToArray(type, property->getFactoryDefault());
}

// The properties that the lists show: visible, defaults allowed, readable by
// the public client. Sorted by name in byte order, each once.
std::vector<const COSPropInfo*> listedProperties(const COSClass* cls) {
  std::vector<const COSPropInfo*> props;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < cls->getPropertyCount(); ++i) {
    const COSPropInfo* p = cls->getPropertyAt(i);
    if (!p || !p->isVisible() || !p->isDefaultAllowed() || p->getMemberGetAccess() != PublicAccess) continue;
    if (seen.insert(p->getName()).second) props.push_back(p);
  }
  std::sort(props.begin(), props.end(),
            [](const COSPropInfo* a, const COSPropInfo* b) { return std::string_view(a->getName()) < b->getName(); });
  return props;
}

std::string fieldPrefix(std::string shortName) {
  if (!shortName.empty() && shortName[0] >= 'a' && shortName[0] <= 'z') shortName[0] = char(shortName[0] - 'a' + 'A');
  return "factory" + shortName;
}

// Adds "factory<Short><Prop>" for each property; a field already present
// keeps its first value.
void addFactoryMap(FactoryMap& map, const std::string& shortName, const std::vector<const COSPropInfo*>& props) {
  const std::string prefix = fieldPrefix(shortName);
  for (const COSPropInfo* p : props) {
    std::string field = prefix + p->getName();
    if (map.contains(field)) continue;
    map.emplace(std::move(field), factoryArray(p));
  }
}

vxArray* structOf(FactoryMap& map) {
  std::vector<const char*> names;
  names.reserve(map.size());
  for (const auto& entry : map) names.push_back(entry.first.c_str());
  matrix::unique_vxArray result(vxCreateStructMatrix(1, 1, static_cast<int>(names.size()), names.data()));
  int f = 0;
  for (auto& entry : map) vxSetFieldByNumber(result.get(), 0, f++, entry.second.release());
  return result.release();
}

std::string fullClassName(const DefaultPropString& name) {
  const std::string ns = name.getNamespaceName();
  return ns.empty() ? name.getClassName() : ns + "." + name.getClassName();
}

// The value that a themed property of the class takes under the built-in
// theme of the automatic style (the graphics setting, else the desktop's);
// null for a property that no theme row names or an attribute the theme
// does not give.
matrix::unique_vxArray expectedThemeValue(const std::string& className, const std::string& propName) {
  const themes::ThemeMap* row = themes::findBuiltinThemeMap(className);
  if (!row) return nullptr;
  const auto attribute = row->find(propName);
  if (attribute == row->end()) return nullptr;
  const bool dark = themes::computeAutoTheme(themes::desktopThemeSetting()).isDark();
  vxArray* made[1] = {nullptr};
  (dark ? darkThemeBuiltin : lightThemeBuiltin)(1, made, 0, nullptr);
  const matrix::unique_vxArray theme(made[0]);
  const matrix::unique_vxArray attributeName(vxCreateString(attribute->second.c_str()));
  vxArray* out[1] = {nullptr};
  const vxArray* in[2] = {theme.get(), attributeName.get()};
  getAttributeValue(1, out, 2, in);
  matrix::unique_vxArray value(out[0]);
  if (!value || (vxIsChar(value.get()) && vxIsEmpty(value.get()))) return nullptr;
  return value;
}

}  // namespace

matrix::unique_vxArray DefaultProp::getFactoryValue(const DefaultPropString& name) {
  if (!name.getClassName().empty() && name.getPropName().empty()) {
    matrix::unique_vxArray in(vxCreateString(fullClassName(name).c_str()));
    vxArray* out[1] = {nullptr};
    const vxArray* args[1] = {in.get()};
    classFactoryValues(1, out, 1, args);
    return matrix::unique_vxArray(out[0]);
  }
  // With themes that follow the desktop automatically, a themed property's
  // factory value is the one of the theme in force.
  if (themes::automaticFigureThemesOn())
    if (matrix::unique_vxArray themed = expectedThemeValue(fullClassName(name), name.getPropName())) return themed;
  const COSPropInfo* property = resolve(name);
  if (!property) throw foundation::core::except::Error("VANTEL:sgutils:InvalidClass", name.getClassName(),
                                                       name.getNamespaceName());
  return factoryArray(property);
}

}  // namespace sgutils

extern "C" void classFactoryValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs > 1) matrix::detail::error_maxrhs();
  if (nrhs < 1) matrix::detail::error_minrhs();
  const std::string className = sgutils::builtins::readTextArgument(prhs[0]);
  const COSClass* cls = COSClass::getClass(COSID(className.c_str()));
  if (!cls) throw foundation::core::except::Error("VANTEL:sgutils:InvalidClass", className, "");
  const auto props = sgutils::listedProperties(cls);
  const auto& reverse = sgdatatypes::typemap::getReverseClassNameMap();
  const auto it = reverse.find(className);
  // A class without a short name has no default names, so no list.
  if (it == reverse.end()) return;
  sgutils::FactoryMap map;
  sgutils::addFactoryMap(map, it->second, props);
  plhs[0] = sgutils::structOf(map);
}

extern "C" void rootFactoryValues(int, vxArray* plhs[], int, const vxArray*[]) {
  const auto& classes = sgdatatypes::typemap::getClassNameMap();
  std::vector<std::string> keys;
  keys.reserve(classes.size());
  for (const auto& entry : classes) keys.push_back(entry.first);
  std::sort(keys.begin(), keys.end());
  sgutils::FactoryMap map;
  for (const std::string& key : keys) {
    const auto entry = classes.find(key);
    // Classes of the map that are not registered in this process are passed over.
    const COSClass* cls = COSClass::getClass(COSID(entry->second.c_str()));
    if (!cls) continue;
    sgutils::addFactoryMap(map, key, sgutils::listedProperties(cls));
  }
  plhs[0] = sgutils::structOf(map);
}
