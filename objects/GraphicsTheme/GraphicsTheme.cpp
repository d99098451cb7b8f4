// The hand-written half of GraphicsTheme: the automatic value of each
// property, worked out when it is read, and the attribute look-ups that the
// rest of the theme code asks a theme.
#include "sgutils/objects/GraphicsTheme.gen.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "foundation/core/except/Error.h"
#include "foundation/uithemes/ThemeColors.h"
#include "sgdatatypes/Enumeration.h"
#include "sgutils/colorvalues/ColorValues.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/MemberAccess.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace graphics::theme {
namespace {

using graphics::datatype::ColorMap;
using graphics::datatype::ColorOrder;
using graphics::datatype::RGBAColor;
using graphics::datatype::ZeroToOne;

constexpr double kDarkGridAlpha = 0.25;
constexpr double kLightGridAlpha = 0.15;
constexpr const char kDefaultBasemapFcn[] = "vantel.graphics.chart.internal.maps.defaultBasemap";

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

COSTypeConversion& conversion(const char* from, const char* to) {
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID(from), COSID(to));
  if (!c) throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", from, to);
  return *c;
}

const COSDataType& unicodeType() {
  static const COSDataTypePtr t("unicodeString");
  return *t;
}

// The override colour as the single row of a colour order or map.
std::vector<double> rowOf(const RGBAColor& c) { return {c.red(), c.green(), c.blue()}; }

}  // namespace

GraphicsTheme* GraphicsTheme::fromObject(const COSInterfacePtr& object) {
  if (!object || object->isDestroyed()) return nullptr;
  return sgutils::blockOf<GraphicsTheme>(object.get(), classID());
}

bool GraphicsTheme::isDarkStyle() { return getBaseColorStyle().isDark(); }

std::vector<std::string> GraphicsTheme::getValidNamedAttributes() {
  return {"ContainerColor",     "BackgroundColor",   "BaseTextColor",
          "HyperlinkColor",     "HyperlinkVisitedColor", "ContinuousColorList",
          "DiscreteColorList",  "DiscreteColorListExtended", "Basemap",
          "AxesMinorGridAlpha", "AxesGridAlpha"};
}

bool GraphicsTheme::getThemeAttributeColor(const std::string& attribute, RGBAColor& out) {
  if (overrideColor_) {
    out = *overrideColor_;
    return true;
  }
  // Anything but dark, white included, resolves as light.
  const std::optional<std::string> text = uithemes::utils::getColor(attribute, isDarkStyle() ? "dark" : "light");
  if (!text) return false;
  out = RGBAColor(*text);
  return true;
}

void GraphicsTheme::setDefaultColorIfAuto(bool isAuto, RGBAColor& target, const std::string& attribute) {
  if (!isAuto) return;
  RGBAColor found;
  if (getThemeAttributeColor(attribute, found)) target = found;
}

vxArray* GraphicsTheme::getThemeAttributeValue(const std::string& attribute) {
  const std::string wanted = lowered(attribute);
  for (const std::string& name : getValidNamedAttributes()) {
    if (lowered(name) != wanted) continue;
    COSClass* cls = getClassInstance();
    COSPropInfo* property = cls ? cls->findPropertyExact(COSID(name.c_str())) : nullptr;
    COSInterface* self = getCOSObject();
    if (!property || !self || property->getMemberGetAccess() != PublicAccess) break;
    // The public get, so that automatic values are worked out afresh.
    const BorrowedPropertyValue value = BorrowedPropertyValue::read(self, COSGetPublicClient(), property);
    const COSDataTypePtr type = property->getDataType();
    return conversion(type->getID().c_str(), "any").convert(value.get()).asPointer<vxArray>();
  }
  RGBAColor color;
  if (!getThemeAttributeColor(attribute, color)) return vxCreateString("");
  vxArray* row = vxCreateDoubleMatrix(1, 3, vxREAL);
  double* pr = vxGetPr(row);
  pr[0] = color.red();
  pr[1] = color.green();
  pr[2] = color.blue();
  return row;
}

void GraphicsTheme::singleColorThemeOverride(const RGBAColor* color) {
  overrideColor_ = color ? std::make_unique<RGBAColor>(*color) : nullptr;
  typed_.clear();
  resolved_.clear();
}

const vxArray* GraphicsTheme::resolvedThemeAttributeValue(const std::string& attribute) {
  auto it = resolved_.find(attribute);
  if (it == resolved_.end()) {
    matrix::unique_vxArray value(getThemeAttributeValue(attribute));
    // Kept past the call that asked for it.
    vxSetArrayScope(value.get(), vxSCOPE_PERSISTENT);
    it = resolved_.emplace(attribute, std::move(value)).first;
  }
  return it->second.get();
}

const COSValue* GraphicsTheme::resolvedTypedValue(const std::string* attribute, const COSDataTypePtr& type) {
  if (const COSValue* kept = typed_.find(attribute, type.getID())) return kept;
  static const COSID any("any");
  COSTypeConversion* conversion = COSTypeRepository::getConversion(any, type.getID());
  if (!conversion) return nullptr;
  const vxArray* value = resolvedThemeAttributeValue(*attribute);
  // An attribute the theme cannot resolve gives no value (asked again next time).
  if (vxIsChar(value) && vxIsEmpty(value)) return nullptr;
  return typed_.add(attribute, type, conversion->convert(COSValue(value)));
}

// Any change of the theme's own properties may change what an attribute resolves to.
void GraphicsTheme::doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags) {
  typed_.clear();
  resolved_.clear();
  GeneratedBlock::doPostSet(object, property, flags);
}

void GraphicsTheme::doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  typed_.clear();
  resolved_.clear();
  GeneratedBlock::doPostSet(object, property, limitsDirty, objectDirty);
}

void GraphicsTheme::copyStateFrom(const GraphicsTheme& other) {
  name_I_ = other.name_I_;
  nameMode_ = other.nameMode_;
  baseColorStyle_I_ = other.baseColorStyle_I_;
  baseColorStyleMode_ = other.baseColorStyleMode_;
  containerColor_I_ = other.containerColor_I_;
  containerColorMode_ = other.containerColorMode_;
  backgroundColor_I_ = other.backgroundColor_I_;
  backgroundColorMode_ = other.backgroundColorMode_;
  baseTextColor_I_ = other.baseTextColor_I_;
  baseTextColorMode_ = other.baseTextColorMode_;
  hyperlinkColor_I_ = other.hyperlinkColor_I_;
  hyperlinkColorMode_ = other.hyperlinkColorMode_;
  hyperlinkVisitedColor_I_ = other.hyperlinkVisitedColor_I_;
  hyperlinkVisitedColorMode_ = other.hyperlinkVisitedColorMode_;
  discreteColorList_I_ = other.discreteColorList_I_;
  discreteColorListMode_ = other.discreteColorListMode_;
  discreteColorListExtended_I_ = other.discreteColorListExtended_I_;
  discreteColorListExtendedMode_ = other.discreteColorListExtendedMode_;
  continuousColorList_I_ = other.continuousColorList_I_;
  continuousColorListMode_ = other.continuousColorListMode_;
  axesGridAlpha_I_ = other.axesGridAlpha_I_;
  axesGridAlphaMode_ = other.axesGridAlphaMode_;
  axesMinorGridAlpha_I_ = other.axesMinorGridAlpha_I_;
  axesMinorGridAlphaMode_ = other.axesMinorGridAlphaMode_;
  basemap_InternalStorage_I_ = other.basemap_InternalStorage_I_;
  basemap_InternalStorageMode_ = other.basemap_InternalStorageMode_;
  singleColorThemeOverride(other.overrideColor_.get());
}

// Automatic values. Each is stored in its member when the mode is auto; a
// manual value is answered as stored. The variable names are kept in
// statics so that a read builds no string.

const std::u16string& GraphicsTheme::getNameImpl() {
  if (nameMode_ == 0) {
    const sgutils::BaseColorSchemeType style = getBaseColorStyle();
    name_I_ = style.isDark() ? u"Dark Theme" : style.isLight() ? u"Light Theme" : u"";
  }
  return name_I_;
}

const RGBAColor& GraphicsTheme::refreshedColor(unsigned char mode, RGBAColor& value, const std::string& variable) {
  setDefaultColorIfAuto(mode == 0, value, variable);
  return value;
}

const RGBAColor& GraphicsTheme::getContainerColorImpl() {
  static const std::string kVariable = "--cv-backgroundColor-primary";
  return refreshedColor(containerColorMode_, containerColor_I_, kVariable);
}

const RGBAColor& GraphicsTheme::getBackgroundColorImpl() {
  static const std::string kVariable = "--cv-backgroundColor-input";
  return refreshedColor(backgroundColorMode_, backgroundColor_I_, kVariable);
}

const RGBAColor& GraphicsTheme::getBaseTextColorImpl() {
  static const std::string kVariable = "--cv-color-primary";
  return refreshedColor(baseTextColorMode_, baseTextColor_I_, kVariable);
}

const RGBAColor& GraphicsTheme::getHyperlinkColorImpl() {
  static const std::string kVariable = "--cv-color-hyperlink";
  return refreshedColor(hyperlinkColorMode_, hyperlinkColor_I_, kVariable);
}

const RGBAColor& GraphicsTheme::getHyperlinkVisitedColorImpl() {
  static const std::string kVariable = "--cv-color-hyperlink-visited";
  return refreshedColor(hyperlinkVisitedColorMode_, hyperlinkVisitedColor_I_, kVariable);
}

const ColorOrder& GraphicsTheme::getDiscreteColorListImpl() {
  if (discreteColorListMode_ == 0)
    discreteColorList_I_ = overrideColor_ ? ColorOrder(rowOf(*overrideColor_))
                                          : sgutils::colorvalues::factoryColorOrder(!isDarkStyle());
  return discreteColorList_I_;
}

const ColorOrder& GraphicsTheme::getDiscreteColorListExtendedImpl() {
  if (discreteColorListExtendedMode_ == 0)
    discreteColorListExtended_I_ = overrideColor_ ? ColorOrder(rowOf(*overrideColor_))
                                                  : sgutils::colorvalues::extendedColorOrder(!isDarkStyle());
  return discreteColorListExtended_I_;
}

const ColorMap& GraphicsTheme::getContinuousColorListImpl() {
  if (continuousColorListMode_ == 0)
    continuousColorList_I_ =
        overrideColor_ ? ColorMap(rowOf(*overrideColor_)) : sgutils::colorvalues::factoryColorMap();
  return continuousColorList_I_;
}

const ZeroToOne& GraphicsTheme::getAxesGridAlphaImpl() {
  if (axesGridAlphaMode_ == 0) axesGridAlpha_I_ = ZeroToOne(isDarkStyle() ? kDarkGridAlpha : kLightGridAlpha);
  return axesGridAlpha_I_;
}

const ZeroToOne& GraphicsTheme::getAxesMinorGridAlphaImpl() {
  if (axesMinorGridAlphaMode_ == 0)
    axesMinorGridAlpha_I_ = ZeroToOne(isDarkStyle() ? kDarkGridAlpha : kLightGridAlpha);
  return axesMinorGridAlpha_I_;
}

// The default basemap belongs to the chart library: it is asked on every
// read in auto mode, and its errors pass through.
const std::u16string& GraphicsTheme::getBasemap_InternalStorageImpl() {
  if (basemap_InternalStorageMode_ == 0) {
    matrix::unique_vxArray dark(isDarkStyle() ? vxCreateString("dark") : nullptr);
    const vxArray* in[1] = {dark.get()};
    vxArray* out[1] = {nullptr};
    inCallFcn(kDefaultBasemapFcn, 1, out, dark ? 1 : 0, in);
    matrix::unique_vxArray result(out[0]);
    const COSValue text = conversion("any", "unicodeString").convert(COSValue(result.get()));
    const auto* converted = text.asPointer<const std::u16string>();
    basemap_InternalStorage_I_ = converted ? *converted : std::u16string();
    unicodeType().destroy(text);
  }
  return basemap_InternalStorage_I_;
}

COSValue GraphicsTheme::getBasemapImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return unicodeType().copy(COSValue(&getBasemap_InternalStorage()));
}

void GraphicsTheme::setBasemapImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  const auto* text = value.asPointer<const std::u16string>();
  setBasemap_InternalStorage(text ? *text : std::u16string(), graphics::datatype::PublicClient);
}

COSValue GraphicsTheme::getBasemapModeImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(graphics::datatype::canonicalEnumerationByte(basemap_InternalStorageMode_));
}

void GraphicsTheme::setBasemapModeImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  const auto* mode = value.asPointer<const unsigned char>();
  setBasemap_InternalStorageMode(static_cast<graphics::datatype::AutoManual>(mode ? *mode : 0));
}

COSValue GraphicsTheme::getOverrideColorImpl(COSPropInfo* property, const COSClient*, COSInterface*) {
  return overrideColor_ ? property->getDataType()->copy(COSValue(overrideColor_.get())) : COSValue();
}

void GraphicsTheme::setOverrideColorImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  singleColorThemeOverride(value.asPointer<const RGBAColor>());
}

}  // namespace graphics::theme

namespace graphics::theme {

// A new theme of the class, through the class system with the public client;
// only the style is set, so everything else stays automatic.
vxArray* GraphicsTheme::builtinThemeFactory(bool isDark) {
  matrix::unique_vxArray array(omConstructObjectWithClient(classID(), 0, nullptr, COSGetPublicClient()));
  GraphicsTheme* theme = fromObject(omGetArrayElement(array.get(), 0));
  if (theme)
    theme->setBaseColorStyle(isDark ? sgutils::BaseColorSchemeType::Dark : sgutils::BaseColorSchemeType::Light,
                             graphics::datatype::PrivateClient);
  return array.release();
}

vxArray* GraphicsTheme::builtinThemeFactory(const std::string& name) {
  const std::string wanted = lowered(name);
  if (wanted == "dark") return builtinThemeFactory(true);
  if (wanted == "light") return builtinThemeFactory(false);
  return nullptr;
}

}  // namespace graphics::theme
