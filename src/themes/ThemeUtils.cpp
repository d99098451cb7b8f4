#include "sgutils/themes/ThemeUtils.h"
#include "sgutils/themes/ModeBackToAuto.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>


#include "sgutils/objects/GraphicsTheme.gen.h"
#include "foundation/log/LogRecord.h"
#include "foundation/log/Logger.h"
#include "sgutils/lifecycle/ObjectCtorMI.h"
#include "sgutils/objects/CustomThemeable.gen.h"
#include "sgutils/objects/ThemeContainer.gen.h"
#include "sgutils/objects/Themeable.gen.h"
#include "sgutils/propinfos/PropInfoLookup.h"
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
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace sgutils::themes {

using foundation::log::kDebug;
using graphics::theme::GraphicsTheme;

namespace {

bool isLive(const COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

bool isEmptyText(const vxArray* value) { return vxIsChar(value) && vxIsEmpty(value); }

}  // namespace

bool ThemeInfo::isValid() const noexcept { return isLive(theme_.get()); }

matrix::unique_vxArray ThemeInfo::getThemeAttributeValue(const std::string& attribute) const {
  GraphicsTheme* theme = isValid() ? GraphicsTheme::fromObject(theme_) : nullptr;
  if (!theme) return matrix::unique_vxArray(vxCreateString(""));
  return matrix::unique_vxArray(theme->getThemeAttributeValue(attribute));
}

namespace {

// One themed property of a class, resolved once: the face the theme writes
// and the mode it asks. The class keeps its properties alive.
struct Slot {
  const std::string* property;
  const std::string* attribute;
  COSPropInfo* target;
  COSPropInfo* mode;
  DerivedThemeValue derived;
  COSDataTypePtr type;  // the target's; null without a target
};

struct ClassSlots {
  // Weak: keeps the class's memory, so that no other class takes its address
  // while its properties are remembered here.
  COSInterfacePtr cls;
  std::vector<Slot> slots;
  // The class overrides the class method "applyThemeValues".
  bool callsApplyMethod = false;
  // Objects of the class keep the whole theme (CustomThemeable).
  bool customThemeable = false;
  // The class has no map of its own and asks each object for one.
  bool asksInstance = false;
};

struct DerivedEntry {
  COSID classId;
  COSID property;
  DerivedThemeValue fn;
};

std::vector<DerivedEntry>& derivedEntries() {
  static std::vector<DerivedEntry> entries;
  return entries;
}

DerivedThemeValue derivedFor(const COSClass* cls, std::string_view property) {
  for (const DerivedEntry& e : derivedEntries())
    if (property == e.property.c_str() && cls->isSubclassOf(e.classId)) return e.fn;
  return nullptr;
}

COSPropInfo* settableOn(const COSClass* cls, const std::string& name) {
  COSPropInfo* p = cls->findPropertyExact(COSID(name));
  return p && p->getMemberSetAccess() == PublicAccess ? p : nullptr;
}

// The mode face that counts: publicly readable and of type AutoManual.
COSPropInfo* modeOn(const COSClass* cls, const std::string& name) {
  static const COSID autoManual("vantel.graphics.datatype.AutoManual");
  COSPropInfo* p = cls->findPropertyExact(COSID(name + "Mode"));
  return p && p->getMemberGetAccess() == PublicAccess && p->getDataType().getID() == autoManual ? p : nullptr;
}

// The resolved rows of a class; the names are built once per class, not per
// object, so a walk over many objects of one class builds no string. The
// class's map is kept by Themeable for the life of the process.
const ClassSlots& slotsFor(const COSClass* cls) {
  static std::unordered_map<const COSClass*, ClassSlots> cache;
  // Runs of one class (a walk over many lines, lines made one after the
  // other) skip the hash.
  static const COSClass* lastClass = nullptr;
  static const ClassSlots* lastSlots = nullptr;
  if (cls == lastClass) return *lastSlots;
  auto it = cache.find(cls);
  if (it == cache.end()) {
    ClassSlots entry{COSInterfacePtr(const_cast<COSClass*>(cls), COSWeakReference), {}};
    for (const auto& [property, attribute] : graphics::mixin::Themeable::classThemeMap(cls)) {
      COSPropInfo* target = settableOn(cls, property + "_I");
      if (!target) target = settableOn(cls, property);
      entry.slots.push_back({&property, &attribute, target, modeOn(cls, property), derivedFor(cls, property),
                             target ? target->getDataType() : COSDataTypePtr()});
    }
    COSClass* themeable = graphics::mixin::Themeable::getClassInstance();
    entry.callsApplyMethod =
        themeable && isMethodOverridden(*themeable, *const_cast<COSClass*>(cls), "applyThemeValues");
    entry.customThemeable = cls->isSubclassOf(graphics::mixin::CustomThemeable::classID());
    entry.asksInstance = graphics::mixin::Themeable::asksInstanceThemeMap(cls);
    it = cache.emplace(cls, std::move(entry)).first;
  }
  lastClass = cls;
  lastSlots = &it->second;
  return it->second;
}

// The class method "applyThemeValues" of a class that overrides it, for what
// a plain property set cannot do; its logical output is the result.
bool callApplyMethod(const COSInterfacePtr& object, const ThemeInfo& theme) {
  COSClass* cls = object->getClass();
  matrix::unique_vxArray self(omCreateVCOSScalar(object)), themeArray(omCreateVCOSScalar(theme.getThemeCosi()));
  const vxArray* inputs[] = {self.get(), themeArray.get()};
  vxArray* out[1] = {nullptr};
  static const COSID method("applyThemeValues");
  if (!omCallMethod(cls->getID(), method, privateClientOf(cls), 1, out, 2, inputs, /*dispatchOnObject=*/true))
    return true;
  matrix::unique_vxArray result(out[0]);
  return !result || vxIsEmpty(result.get()) || vxGetScalar(result.get()) != 0;
}

bool isManual(const COSInterfacePtr& object, COSPropInfo* mode) {
  if (!mode) return false;
  // Mode words point at process-lifetime bytes: nothing to give back.
  const auto* value = mode->getValue(object.get()).asPointer<const AutoManual>();
  return value && *value == AutoManual::Manual;
}

foundation::log::Logger& propertyLog() {
  static foundation::log::Logger& lg = foundation::log::channel("theme::property");
  return lg;
}

foundation::log::Logger& visitorLog() {
  static foundation::log::Logger& lg = foundation::log::channel("theme::visitor");
  return lg;
}

constexpr const char* kSetPV = "sgutils::themes::setPVPair - ";

// The value each set of an all-or-nothing walk replaced, so that a walk that
// raises can be taken back; newest last.
struct JournalEntry {
  COSInterfacePtr object;
  COSPropInfo* target;
  ConvertedValue old;
};
std::vector<JournalEntry>* activeJournal = nullptr;
// Counts the sets a walk would make instead of making them.
std::size_t* activeDryRun = nullptr;

void rollBack(std::vector<JournalEntry>& journal) noexcept {
  for (auto it = journal.rbegin(); it != journal.rend(); ++it) {
    if (!isLive(it->object.get())) continue;
    try {
      it->object->setPropertyValue(COSGetPublicClient(), it->target, it->old.get());
    } catch (...) {
      // The first failure is the one the caller sees; the rest goes back as far as it can.
    }
  }
  journal.clear();
}

// The last steps, once the faces and the typed value are known: the mode,
// the comparison with what the object holds, the set. `typed` stays the
// caller's.
bool setTyped(const COSInterfacePtr& object, const std::string& name, COSPropInfo* target, COSPropInfo* mode,
              COSValue typed, const COSDataTypePtr& type, bool overrideManualValues) {
  if (!overrideManualValues && isManual(object, mode)) {
    FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << name << " is in Manual mode, skip.";
    return false;
  }
  // An equal value sets nothing and so marks nothing dirty: a theme change
  // over a large tree where little changes stays cheap.
  const COSValue current = target->getValue(object.get());
  const bool equal = type->isEqual(current, typed);
  if (equal || !activeJournal) target->releaseValue(object.get(), current);
  if (equal) {
    FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << name << " is unchanged, skip.";
    return false;
  }
  if (activeDryRun) {
    ++*activeDryRun;
    return false;
  }
  if (activeJournal) {
    ConvertedValue old(type, type->copy(current));
    target->releaseValue(object.get(), current);
    activeJournal->push_back({object, target, std::move(old)});
  }
  object->setPropertyValue(COSGetPublicClient(), target, typed);
  FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << "success settting " << name << ".";
  return true;
}

COSID anyType() {
  static const COSID any("any");
  return any;
}

bool checkFaces(const std::string& name, const vxArray* value, COSPropInfo* target) {
  FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << "setting property " << name;
  if (!value || isEmptyText(value)) {
    FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << name << " value is null, skip.";
    return false;
  }
  if (!target) {
    FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << name << " cosProp is null, skip.";
    return false;
  }
  if (propertyLog().isOn(kDebug) && std::string_view(target->getName()).ends_with("_I"))
    FOUNDATION_LOG(propertyLog(), kDebug) << kSetPV << "using  " << target->getName() << " property.";
  return true;
}

// A value as an array: converted to the face's type here. Each skip writes
// its line when the channel is on; nothing is built otherwise.
bool setResolved(const COSInterfacePtr& object, const std::string& name, COSPropInfo* target, COSPropInfo* mode,
                 const vxArray* value, bool overrideManualValues) {
  if (!checkFaces(name, value, target)) return false;
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
  return setTyped(object, name, target, mode, typed, type, overrideManualValues);
}

// The theme's values: the theme keeps each attribute's value until it
// changes, so a new object under a themed figure does not ask afresh.
class ValueCache {
 public:
  explicit ValueCache(const ThemeInfo& theme)
      : theme_(theme.isValid() ? GraphicsTheme::fromObject(theme.getThemeCosi()) : nullptr) {}
  const vxArray* get(const std::string& attribute) {
    return theme_ ? theme_->resolvedThemeAttributeValue(attribute) : nullptr;
  }
  // Converted to the slot's type and kept with the theme; null when there is none.
  const COSValue* typed(const std::string* attribute, const COSDataTypePtr& type) {
    return theme_ ? theme_->resolvedTypedValue(attribute, type) : nullptr;
  }

 private:
  GraphicsTheme* theme_;
};

bool setPVPairOn(const COSInterfacePtr& object, const std::string& property, const vxArray* value,
                 bool overrideManualValues);

// An object with custom mappings: its combined map is its own, so the names
// are resolved and the attributes asked per object (custom mappings are rare).
bool applyCombined(const COSInterfacePtr& object, const graphics::mixin::Themeable& themeable, const ThemeInfo& theme,
                   bool overrideManualValues) {
  const ThemeMap map = themeable.getCombinedThemeAttributeMap(object.get());
  if (map.empty()) return true;
  ForceHonorModesScopeGuard guard(object.get(), true);
  for (const auto& [property, attribute] : map) {
    if (property.empty()) continue;
    matrix::unique_vxArray value;
    // A custom mapping is the user's word; otherwise the object may work the value out itself.
    if (themeable.getCustomThemePropertyMapping(property).empty())
      if (DerivedThemeValue derived = derivedFor(object->getClass(), property)) value = derived(object.get());
    if (!value) value = theme.getThemeAttributeValue(attribute);
    setPVPairOn(object, property, value.get(), overrideManualValues);
    if (object->isDestroyed()) return false;
  }
  return true;
}

bool applyWithCache(const COSInterfacePtr& object, ValueCache& values, const ThemeInfo& theme,
                    bool overrideManualValues) {
  // Only an object with a Themeable side takes part in theming.
  const auto* themeable = graphics::mixin::Themeable::fromObject(object.get());
  if (!themeable) return true;
  const COSClass* cls = object->getClass();
  const ClassSlots& entry = slotsFor(cls);
  // An object that draws from the whole theme gets it first.
  if (entry.customThemeable && !activeDryRun)
    if (auto* custom = graphics::mixin::CustomThemeable::fromObject(object.get())) {
      custom->updateTheme(theme.getThemeCosi());
      if (!isLive(object.get())) return false;
    }
  if (entry.asksInstance || themeable->hasCustomThemePropertyMappings()) {
    if (!applyCombined(object, *themeable, theme, overrideManualValues)) return false;
  } else if (!entry.slots.empty()) {
    ForceHonorModesScopeGuard guard(object.get(), true);
    matrix::unique_vxArray owned;
    for (const Slot& slot : entry.slots) {
      if (slot.derived && (owned = slot.derived(object.get()))) {
        // Worked out by the object itself: converted here, as any array.
        setResolved(object, *slot.property, slot.target, slot.mode, owned.get(), overrideManualValues);
      } else if (!slot.target || slot.type.getID() == anyType()) {
        setResolved(object, *slot.property, slot.target, slot.mode, values.get(*slot.attribute), overrideManualValues);
      } else {
        // The theme's value, converted once per theme and type and kept with the theme.
        const COSValue* typed = values.typed(slot.attribute, slot.type);
        if (!typed) {
          checkFaces(*slot.property, nullptr, slot.target);
        } else {
          if (propertyLog().isOn(kDebug)) checkFaces(*slot.property, values.get(*slot.attribute), slot.target);
          setTyped(object, *slot.property, slot.target, slot.mode, *typed, slot.type, overrideManualValues);
        }
      }
      if (object->isDestroyed()) return false;
    }
  }
  if (!entry.callsApplyMethod || activeDryRun) return true;
  return callApplyMethod(object, theme) && !object->isDestroyed();
}

void walk(const COSInterfacePtr& node, ValueCache& values, const ThemeInfo& theme) {
  if (!isLive(node.get())) return;
  applyWithCache(node, values, theme, false);
  for (COSInterface* child = node->getOldestChild(); child; child = child->getNewerSibling())
    walk(COSInterfacePtr(child), values, theme);
}

bool setPVPairOn(const COSInterfacePtr& object, const std::string& property, const vxArray* value,
                 bool overrideManualValues) {
  if (!isLive(object.get())) return false;
  const COSClass* cls = object->getClass();
  COSPropInfo* target = settableOn(cls, property + "_I");
  if (!target) target = settableOn(cls, property);
  // The mode is asked about the public name, whichever face is written.
  return setResolved(object, property, target, modeOn(cls, property), value, overrideManualValues);
}

}  // namespace

bool setPVPair(const COSInterfacePtr& object, const std::string& property, const vxArray* value,
               bool overrideManualValues) {
  return setPVPairOn(object, property, value, overrideManualValues);
}

bool applyThemeValues(const COSInterfacePtr& object, const ThemeInfo& theme, bool overrideManualValues) {
  FOUNDATION_LOG(propertyLog(), kDebug) << "sgutils::themes::applyThemeValues - overrideManualValues input is "
                                        << overrideManualValues;
  if (!isLive(object.get()) || !theme.isValid()) return true;
  ValueCache values(theme);
  return applyWithCache(object, values, theme, overrideManualValues);
}

void applyThemeToSubtree(const COSInterfacePtr& node, const ThemeInfo& theme, bool allOrNothing) {
  if (!theme.isValid()) return;
  FOUNDATION_LOG(visitorLog(), kDebug) << "TVI from node: " << (node ? node->getClass()->getName() : "");
  ValueCache values(theme);
  if (!allOrNothing) {
    walk(node, values, theme);
    return;
  }
  std::vector<JournalEntry> journal;
  // A walk started by a listener of this one keeps a journal of its own.
  struct Scope {
    std::vector<JournalEntry>* saved;
    explicit Scope(std::vector<JournalEntry>* mine) : saved(std::exchange(activeJournal, mine)) {}
    ~Scope() { activeJournal = saved; }
  };
  try {
    Scope scope(&journal);
    walk(node, values, theme);
  } catch (...) {
    rollBack(journal);
    throw;
  }
}

std::size_t countUnthemedValues(const COSInterfacePtr& node, const ThemeInfo& theme) {
  if (!theme.isValid()) return 0;
  std::size_t count = 0;
  struct Scope {
    std::size_t* saved;
    std::vector<JournalEntry>* savedJournal;
    explicit Scope(std::size_t* mine)
        : saved(std::exchange(activeDryRun, mine)), savedJournal(std::exchange(activeJournal, nullptr)) {}
    ~Scope() {
      activeDryRun = saved;
      activeJournal = savedJournal;
    }
  } scope(&count);
  ValueCache values(theme);
  walk(node, values, theme);
  return count;
}

}  // namespace sgutils::themes

namespace sgutils::themes {

namespace {
GoverningThemeLookup& lookupSlot() noexcept {
  static GoverningThemeLookup lookup = nullptr;
  return lookup;
}
}  // namespace

void setGoverningThemeLookup(GoverningThemeLookup lookup) noexcept { lookupSlot() = lookup; }

void modeSetBackToAuto(COSInterface* object, const COSPropInfo* mode) {
  if (!isLive(object) || !mode || !graphics::mixin::Themeable::fromObject(object)) return;
  const std::string_view name = mode->getName();
  if (!name.ends_with("Mode")) return;
  setPropertyToThemedValue(COSInterfacePtr(object), std::string(name.substr(0, name.size() - 4)), false);
}

void registerDerivedThemeValue(COSID classId, COSID property, DerivedThemeValue derived) {
  derivedEntries().push_back({classId, property, derived});
}

COSInterfacePtr getGoverningTheme(const COSInterface* object) {
  GoverningThemeLookup lookup = lookupSlot();
  return lookup && object ? lookup(object) : COSInterfacePtr();
}

namespace {

// The nearest theme container at or above `object`, or null.
const COSInterface* nearestContainer(const COSInterface* object) {
  for (const COSInterface* up = object; up; up = up->getOwnerObject())
    if (graphics::mixin::ThemeContainer::fromObject(up)) return up;
  return nullptr;
}

COSInterfacePtr builtinLightTheme(matrix::unique_vxArray& holder) {
  holder.reset(GraphicsTheme::builtinThemeFactory(false));
  return holder ? omGetArrayElement(holder.get(), 0) : COSInterfacePtr();
}

}  // namespace

void setPropertyToThemedValue(const COSInterfacePtr& object, const std::string& property, bool assumeLightTheme) {
  if (!isLive(object.get())) return;
  const auto* themeable = graphics::mixin::Themeable::fromObject(object.get());
  if (!themeable) return;
  if (propertyLog().isOn(kDebug)) {
    const COSInterface* container = nearestContainer(object.get());
    FOUNDATION_LOG(propertyLog(), kDebug) << "setThemePropertyValue for object of class: "
                                          << object->getClass()->getName() << ". Parent of class "
                                          << (container ? container->getClass()->getName() : "");
  }
  ThemeInfo theme(getGoverningTheme(object.get()));
  if (theme.isValid()) FOUNDATION_LOG(propertyLog(), kDebug) << "setPropertyToThemedValue: get theme from theme container.";
  matrix::unique_vxArray light;
  if (!theme.isValid() && assumeLightTheme) {
    theme = ThemeInfo(builtinLightTheme(light));
    FOUNDATION_LOG(propertyLog(), kDebug) << "setPropertyToThemedValue: assuming light theme.";
  }
  if (!theme.isValid()) return;
  FOUNDATION_LOG(propertyLog(), kDebug) << "setPropertyToThemedValue: valid theme - setting PV pair.";
  const std::string attribute = themeable->getCombinedThemePropertyMapping(object.get(), property);
  matrix::unique_vxArray value;
  if (!attribute.empty() && themeable->getCustomThemePropertyMapping(property).empty())
    if (DerivedThemeValue derived = derivedFor(object->getClass(), property)) value = derived(object.get());
  if (!value) value = theme.getThemeAttributeValue(attribute);
  setPVPair(object, property, value.get(), false);
}

void restoreThemeOnReset(const COSInterfacePtr& object, bool restoreLightIfNoTheme) {
  if (!isLive(object.get())) return;
  const COSInterface* container = nearestContainer(object.get());
  if (container)
    FOUNDATION_LOG(visitorLog(), kDebug) << "Applying theme to new child of class " << object->getClass()->getName()
                                         << ". Parent of class " << container->getClass()->getName();
  const graphics::mixin::ThemeContainer* block =
      container ? graphics::mixin::ThemeContainer::fromObject(container) : nullptr;
  if (block && block->getThemeCOSI()) {
    block->startApplyingTheme(object);
    return;
  }
  if (!restoreLightIfNoTheme) return;
  // Outside any themed container: back on the light values.
  matrix::unique_vxArray light;
  graphics::mixin::ThemeContainer::startApplyingTheme(object, builtinLightTheme(light));
}

}  // namespace sgutils::themes
