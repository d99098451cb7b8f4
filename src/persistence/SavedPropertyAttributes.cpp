#include "src/persistence/SavedPropertyAttributes.h"

#include <cstring>
#include <string>

#include "foundation/core/except/Error.h"
#include "foundation/log/Logger.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "src/persistence/GraphicsLoader.h"
#include "src/persistence/LoadedValue.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSPropFlags.h"
#include "vcos/ExtendedMemberAccess.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace sgutils::persistence {

namespace {

// Bits of the flag word, by the name the file gives them. Transient and
// Visible are not among them (see the header).
struct FlagRow {
  const char* name;
  unsigned bit;
};
constexpr FlagRow kFlags[] = {
    {"Abstract", COSPropAbstract},
    {"InitAllowed", COSPropInitAllowed},
    {"DefaultAllowed", COSPropDefaultAllowed},
    {"Resettable", COSPropResetAllowed},
    {"Sealed", COSPropSealed},
    {"CopyAllowed", COSPropCopyAllowed},
    {"GetObservable", COSPropListenerGetAllowed},
    {"SetObservable", COSPropListenerSetAllowed},
    {"InspectAllowed", COSPropInspectAllowed},
    {"AbortSet", COSPropAbortSet},
    {"Static", COSPropStatic},
    {"Dependent", COSPropDependent},
    {"HoldsNoObjects", COSPropNoInterfaces},
    {"NeverAmbiguous", COSPropNeverAmbiguous},
    {"WeakReference", COSPropWeakReference},
    {"InternalDefault", COSPropInternalDefault},
    {"WarnOnCopyError", COSPropWarnOnCopyError},
    {"Grandfathered", COSPropGrandfathered},
};

// The graphics attributes kept on the property object's metadata block.
// Resettable is not here: for an added property it is the flag above.
struct MetaRow {
  const char* name;
  bool (*get)(const SGCustomMetaProperty&);
  void (*set)(SGCustomMetaProperty&, bool);
};
// One row: the attribute's name and its accessors on the block.
#define SG_META_ROW(Name)                                                                          \
  MetaRow {                                                                                        \
    #Name, [](const SGCustomMetaProperty& m) { return m.get##Name(); },                            \
        [](SGCustomMetaProperty& m, bool value) { m.set##Name(value); }                            \
  }
const MetaRow kMeta[] = {
    SG_META_ROW(DeepCopy),          SG_META_ROW(ReconnectOnCopy), SG_META_ROW(AffectsObject),
    SG_META_ROW(AffectsDataLimits), SG_META_ROW(AffectsLegend),   SG_META_ROW(InternalComponent),
    SG_META_ROW(UsedInUpdate),
};
#undef SG_META_ROW

const char* const kAccess[] = {"GetAccess", "SetAccess"};

// The flag bits that attributes stand for.
constexpr unsigned kNamedFlags = [] {
  unsigned all = 0;
  for (const FlagRow& row : kFlags) all |= row.bit;
  return all;
}();

vxArray* int32Scalar(int value) {
  vxArray* out = vxCreateNumericMatrix(1, 1, vxINT32_CLASS, vxREAL);
  *static_cast<std::int32_t*>(vxGetData(out)) = value;
  return out;
}

vxArray* classNames(const ExtendedMemberAccess& list) {
  vxArray* out = vxCreateCellMatrix(1, list.classes().size());
  for (std::size_t i = 0; i < list.classes().size(); ++i) vxSetCell(out, i, vxCreateString(list.classes()[i].c_str()));
  return out;
}

// A plain access or an access list; nullopt for a value that is neither.
struct AccessValue {
  std::optional<MemberAccess> plain;
  std::optional<std::vector<COSID>> list;
};
std::optional<AccessValue> readAccess(const vxArray* value) {
  if (vxGetClassID(value) == vxINT32_CLASS && !vxIsComplex(value) && vxIsScalar(value)) {
    const std::int32_t n = *static_cast<const std::int32_t*>(vxGetData(value));
    if (n < PublicAccess || n > NoAccess) return std::nullopt;
    return AccessValue{static_cast<MemberAccess>(n), std::nullopt};
  }
  if (!vxIsCell(value) || vxGetNumberOfDimensions(value) != 2 || vxGetM(value) > 1) return std::nullopt;
  std::vector<COSID> classes;
  const std::size_t n = vxGetNumberOfElements(value);
  for (std::size_t i = 0; i < n; ++i) {
    const vxArray* name = vxGetCell(value, i);
    if (!name || !vxIsChar(name) || vxGetM(name) != 1 || vxGetNumberOfDimensions(name) != 2) return std::nullopt;
    const std::string text = vxArrayToStdString(name);
    if (text.empty()) return std::nullopt;
    classes.emplace_back(text.c_str());
  }
  return AccessValue{std::nullopt, std::move(classes)};
}

void logNotRestored(std::string_view name, const char* what) {
  foundation::log::Logger& lg = serializationLog();
  if (lg.isOn(kFailedSetBit))
    lg.write(kFailedSetBit, std::string("        ").append(what).append(" of ").append(name).append(" not restored"));
}

}  // namespace

matrix::unique_vxArray SavedPropertyAttributes::write(const COSPropInfo* property) {
  const auto* generic = dynamic_cast<const COSGenericProp*>(property);
  if (!generic) return nullptr;
  std::vector<const char*> names;
  std::vector<matrix::unique_vxArray> values;
  const unsigned changed = (generic->getFlags() ^ unsigned(COSPropDefaultFlags)) & kNamedFlags;
  for (const FlagRow& row : kFlags) {
    if (!(changed & row.bit)) continue;
    names.push_back(row.name);
    values.emplace_back(vxCreateLogicalScalar((generic->getFlags() & row.bit) != 0));
  }
  const MemberAccess access[] = {generic->getMemberGetAccess(), generic->getMemberSetAccess()};
  const ExtendedMemberAccess* lists[] = {generic->getExtendedGetAccess(), generic->getExtendedSetAccess()};
  for (int k = 0; k < 2; ++k) {
    if (lists[k]) {
      names.push_back(kAccess[k]);
      values.emplace_back(classNames(*lists[k]));
    } else if (access[k] != PublicAccess) {
      names.push_back(kAccess[k]);
      values.emplace_back(int32Scalar(access[k]));
    }
  }
  if (const SGCustomMetaProperty* meta = SGCustomMetaProperty::of(property)) {
    const SGCustomMetaProperty fresh(nullptr);
    for (const MetaRow& row : kMeta) {
      const bool value = row.get(*meta);
      if (value == row.get(fresh)) continue;
      names.push_back(row.name);
      values.emplace_back(vxCreateLogicalScalar(value));
    }
  }
  if (names.empty()) return nullptr;
  matrix::unique_vxArray out(vxCreateStructMatrix(1, 1, static_cast<int>(names.size()), names.data()));
  for (std::size_t f = 0; f < values.size(); ++f) vxSetFieldByNumber(out.get(), 0, static_cast<int>(f), values[f].release());
  return out;
}

SavedPropertyAttributes SavedPropertyAttributes::read(const vxArray* saved, std::string_view name,
                                                      const char* className) {
  SavedPropertyAttributes out;
  if (!saved) return out;
  if (!vxIsStruct(saved) || vxGetNumberOfElements(saved) != 1) throw Error("VANTEL:sg:load:BadDynamicProperties", className);
  const std::string property(name);
  const int fields = vxGetNumberOfFields(saved);
  for (int f = 0; f < fields; ++f) {
    const char* attribute = vxGetFieldNameByNumber(saved, f);
    const vxArray* value = vxGetFieldByNumber(saved, 0, f);
    auto bad = [&] { return Error("VANTEL:sg:load:BadPropertyAttribute", property, attribute); };
    bool flag = false;
    const bool isFlag = value && vxGetLogicalScalar(value, &flag);
    bool known = false;
    for (const FlagRow& row : kFlags) {
      if (std::strcmp(row.name, attribute) != 0) continue;
      if (!isFlag) throw bad();
      (flag ? out.setFlags_ : out.clearFlags_) |= row.bit;
      known = true;
    }
    for (std::size_t m = 0; m < std::size(kMeta) && !known; ++m) {
      if (std::strcmp(kMeta[m].name, attribute) != 0) continue;
      if (!isFlag) throw bad();
      out.metaGiven_ |= 1u << m;
      if (flag) out.metaValues_ |= 1u << m;
      known = true;
    }
    for (int k = 0; k < 2 && !known; ++k) {
      if (std::strcmp(kAccess[k], attribute) != 0) continue;
      std::optional<AccessValue> access = value ? readAccess(value) : std::nullopt;
      if (!access) throw bad();
      out.access_[k] = access->plain;
      out.accessList_[k] = std::move(access->list);
      known = true;
    }
    if (!known) throw Error("VANTEL:sg:load:UnknownPropertyAttribute", property, attribute);
  }
  return out;
}

bool SavedPropertyAttributes::empty() const noexcept {
  return !setFlags_ && !clearFlags_ && !access_[0] && !access_[1] && !accessList_[0] && !accessList_[1] &&
         !metaGiven_;
}

void SavedPropertyAttributes::applyTo(COSPropInfo* property, std::string_view name) const {
  if (empty()) return;
  auto* generic = dynamic_cast<COSGenericProp*>(property);
  if (!generic) {
    logNotRestored(name, "attributes");
    return;
  }
  generic->setFlags((generic->getFlags() | setFlags_) & ~clearFlags_);
  if (access_[0] || access_[1])
    generic->setAccess(access_[0].value_or(generic->getMemberGetAccess()),
                       access_[1].value_or(generic->getMemberSetAccess()));
  auto toList = [](const std::vector<COSID>& classes) {
    ExtendedMemberAccess list;
    for (const COSID& c : classes) list.add(c);
    return list;
  };
  if (accessList_[0]) generic->setExtendedGetAccess(toList(*accessList_[0]));
  if (accessList_[1]) generic->setExtendedSetAccess(toList(*accessList_[1]));
  if (!metaGiven_) return;
  SGCustomMetaProperty* meta = SGCustomMetaProperty::of(property);
  if (!meta) {
    logNotRestored(name, "graphics attributes");
    return;
  }
  for (std::size_t m = 0; m < std::size(kMeta); ++m)
    if (metaGiven_ & (1u << m)) kMeta[m].set(*meta, (metaValues_ & (1u << m)) != 0);
}

}  // namespace sgutils::persistence
