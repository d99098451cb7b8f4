#include "sgutils/themes/ThemeUtils.h"

#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/propinfos/ForceHonorModesScopeGuard.h"
#include "sgutils/propinfos/RelatedProperties.h"
#include "sgutils/themes/ThemeMappingTable.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"
#include "vx/vx.h"

namespace sgutils::themes {

using graphics::theme::GraphicsTheme;

namespace {

bool isLive(const COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

// A property the theme may write: it exists and its set access is public.
COSPropInfo* settable(const COSInterfacePtr& object, const std::string& name) {
  COSPropInfo* p = object->findPropertyInfo(COSID(name));
  return p && p->getMemberSetAccess() == PublicAccess ? p : nullptr;
}

bool isEmptyText(const vxArray* value) { return vxIsChar(value) && vxIsEmpty(value); }

}  // namespace

bool ThemeInfo::isValid() const noexcept { return isLive(theme_.get()); }

matrix::unique_vxArray ThemeInfo::getThemeAttributeValue(const std::string& attribute) const {
  GraphicsTheme* theme = isValid() ? GraphicsTheme::fromObject(theme_) : nullptr;
  if (!theme) return matrix::unique_vxArray(vxCreateString(""));
  return matrix::unique_vxArray(theme->getThemeAttributeValue(attribute));
}

bool setPVPair(const COSInterfacePtr& object, const std::string& property, const vxArray* value,
               bool overrideManualValues) {
  if (!value || isEmptyText(value) || !isLive(object.get())) return false;
  COSPropInfo* target = settable(object, property + "_I");
  if (!target) target = settable(object, property);
  if (!target) return false;
  if (!overrideManualValues) {
    // The mode is asked about the public name, whichever face is written.
    const AutoManual* mode = RelatedProperties(object, property).modeValue();
    if (mode && *mode == AutoManual::Manual) return false;
  }
  static const COSID any("any");
  COSDataTypePtr type = target->getDataType();
  COSValue typed = COSValue(value);
  ConvertedValue owned(type, COSValue());
  if (type.getID() != any) {
    COSTypeConversion* conversion = COSTypeRepository::getConversion(any, type.getID());
    if (!conversion) return false;
    owned = ConvertedValue(type, conversion->convert(COSValue(value)));
    typed = owned.get();
  }
  // An equal value sets nothing and so marks nothing dirty: a theme change
  // over a large tree where little changes stays cheap.
  const COSValue current = target->getValue(object.get());
  const bool equal = type->isEqual(current, typed);
  target->releaseValue(object.get(), current);
  if (equal) return false;
  object->setPropertyValue(COSGetPublicClient(), target, typed);
  return true;
}

bool applyThemeValues(const COSInterfacePtr& object, const ThemeInfo& theme, bool overrideManualValues) {
  if (!isLive(object.get()) || !theme.isValid()) return true;
  const ThemeMap* map = findBuiltinThemeMap(object->getClass()->getName());
  if (!map || map->empty()) return true;
  ForceHonorModesScopeGuard guard(object.get(), true);
  for (const auto& [property, attribute] : *map) {
    matrix::unique_vxArray value = theme.getThemeAttributeValue(attribute);
    setPVPair(object, property, value.get(), overrideManualValues);
    if (object->isDestroyed()) return false;
  }
  return true;
}

void applyThemeToSubtree(const COSInterfacePtr& node, const ThemeInfo& theme) {
  if (!isLive(node.get())) return;
  applyThemeValues(node, theme, false);
  for (COSInterface* child = node->getOldestChild(); child; child = child->getNewerSibling())
    applyThemeToSubtree(COSInterfacePtr(child), theme);
}

}  // namespace sgutils::themes
