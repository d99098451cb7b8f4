// The view through which one graphics object's default values are read and
// written. The store is a 1-by-1 struct on the object's Graphics block
// (SGHandle::getDefaultProp), null until the first write; each field is
// named by the compat form of a default name ("defaultLineColor") and holds
// the value as an array. A field whose value is null counts as absent.
//
// A look-up climbs the "Parent" chain until some store has the field. A new
// object collects the stores of its ancestors for its own class, root first
// (SGReference::getDefaultPropValuePairs), and setPVPairs applies them:
// manual properties are left alone, internal faces are written so that
// modes stay automatic, and mode properties are written last.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "sgutils/SgutilsExport.h"
#include "sgutils/defaults/DefaultPropString.h"
#include "sgutils/defaults/PropValuePairs.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"
#include "vx/matrix.h"

class COSPropInfo;
class SGHandle;

namespace sgutils {

class SGUTILS_API DefaultProp {
 public:
  // Takes the view (without keeping the object alive). An object read from
  // a file hands its saved defaults ("InternalDefaultPropMap") to the store
  // here, once.
  explicit DefaultProp(COSInterfacePtr object);

  // A copy of the whole store, or null.
  matrix::unique_vxArray get() const;
  // The value of one default, from this object or the nearest ancestor that
  // has it; null when none has.
  matrix::unique_vxArray get(const DefaultPropString& name) const;
  // The worker of the form above. `themeValue` carries a value found on the
  // way up that is handed back only when no store has the default.
  matrix::unique_vxArray get(const DefaultPropString& name, matrix::unique_vxArray& themeValue) const;
  // All defaults of the classes whose short name begins with the rest of
  // `name` after its prefix ("defaultLine"), as a struct; null without a store.
  matrix::unique_vxArray getClassDefaults(const std::string& name) const;
  // The store itself (borrowed), or null.
  const vxArray* getDefaultPropArray() const noexcept;
  // A copy of that object's store, or null.
  static matrix::unique_vxArray getDefaults(const COSInterfacePtr& object);

  // For each stored name, the list of its possible values (a struct).
  matrix::unique_vxArray set() const;
  // The possible values of that property as an n-by-1 cell (0-by-0 when
  // its type has no list).
  matrix::unique_vxArray set(const DefaultPropString& name) const;
  // Validates the value against the property's type and stores it. A class
  // that does not exist is ignored; the text "factory" stores the
  // property's factory value; "\default", "\factory", "\remove" store the
  // word itself.
  void set(const DefaultPropString& name, const vxArray* value);
  // Takes the field out (case-insensitive); no such field does nothing.
  void remove(const DefaultPropString& name);
  void clear();
  bool contains(const DefaultPropString& name) const;

  // Appends this object's defaults for the class of that full name, as
  // property names ("Color") with shared copies of the values.
  void appendDefaults(PropValuePairs& pairs, const std::string& className) const;
  // The same for a class name that the caller holds (no copy is made).
  void appendDefaults(PropValuePairs& pairs, std::string_view className) const;

  // Applies pairs to an object in order, as the public client: mode
  // properties after all others, nothing to a property whose mode is
  // manual, the internal face where there is a public one. `resetOnly`
  // skips properties that do not allow reset. Names the object does not
  // have are skipped.
  static void setPVPairs(const COSInterfacePtr& object, const PropValuePairs& pairs, bool resetOnly);

  // The factory value that a name addresses ("defaultLineColor",
  // "factoryLineColor"), or null when its type cannot leave as an array.
  // A name with a class and no property ("factoryLine") gives the struct of
  // classFactoryValues. The rules of defaults apply: an unknown class raises
  // "VANTEL:sgutils:InvalidClass", a property without defaults
  // "VANTEL:sg:DefaultCannotBeSetGet".
  static matrix::unique_vxArray getFactoryValue(const DefaultPropString& name);

 private:
  // The property that a default name addresses, or null when its class does
  // not exist. Raises for an empty, unknown or non-defaultable property.
  static COSPropInfo* resolve(const DefaultPropString& name);
  vxArray* store() const noexcept;
  vxArray* ensureStore();
  void appendPairsOfShortName(PropValuePairs& pairs, const std::string& shortName, bool stripNames) const;
  // The same with the full class name that the short name maps to.
  void appendPairsOfClass(PropValuePairs& pairs, const std::string& shortName, const std::string& mapped,
                          bool stripNames) const;

  COSInterfacePtr object_;
  COSID propertyId_;
  SGHandle* handleData_ = nullptr;
};

}  // namespace sgutils
