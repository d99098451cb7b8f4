// Values a class keeps in a file beside its stored properties, for state
// that no stored property holds (a figure's theme, say). The class's
// library registers an extension once; the writer asks it for the extra
// fields of each object of the class (subclasses too), and the reader hands
// it each saved field that is no stored property of the object, after the
// properties and modes are set.
#pragma once

#include <functional>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxSerialize.h"

class COSClass;

namespace sgutils {

class SGUTILS_API SavedFieldsExtension {
 public:
  using Save = std::function<void(const COSInterfacePtr& object, std::vector<vxNamedValue>& fields)>;
  // Returns whether it took the field.
  using Load = std::function<bool(const COSInterfacePtr& object, const vxNamedValue& field)>;

  // Registers (or replaces) the extension of the class of that full name.
  static void add(const char* className, Save save, Load load);
  static void remove(const char* className);
  // The extensions that apply to objects of the class, base classes first.
  static std::vector<const SavedFieldsExtension*> of(const COSClass* cls);

  Save save;
  Load load;
};

}  // namespace sgutils
