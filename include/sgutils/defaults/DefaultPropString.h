// A default-value name as users write it, taken apart into prefix,
// namespace, class and property, and put together again in the forms the
// default store and the factory look-ups use.
//
//   compact: "defaultLineColor", "FactoryAxesXColor", "defaultLine"; the
//            class is the longest short class name the rest begins with
//            (sgdatatypes::typemap::getClassNameMap).
//   dotted:  "default.vantel.graphics.primitive.Line.Color", or
//            "default.Line.Color" without the package; no map, no case
//            change, any first token is the prefix.
//
// A compact name without a valid prefix raises BadDefaultPropNameException,
// one whose rest is empty "VANTEL:sgutils:EmptyClassName", one whose rest
// names no class "VANTEL:sgutils:InvalidClassName". A dotted name with fewer
// than three parts is accepted and leaves the fields empty.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API DefaultPropString {
 public:
  // Parses `name`. keepCase false: names are matched without regard to
  // case, and the property's first letter is made upper case.
  DefaultPropString(const std::string& name, bool keepCase);
  // The three parts as they are, with an empty prefix; nothing is parsed.
  DefaultPropString(const std::string& namespaceName, const std::string& className, const std::string& propName,
                    bool keepCase);

  std::string getPrefix() const { return prefix_; }
  std::string getNamespaceName() const { return namespaceName_; }
  std::string getClassName() const { return className_; }
  std::string getPropName() const { return propName_; }
  void setPropName(const char* propName) { propName_ = propName ? propName : ""; }

  // prefix.Class.Prop; the namespace is not part of it.
  std::string getAsCanonicalStr() const;
  // The name of the field in the default store: prefix, the class's short
  // name with an upper-case first letter (or the class name when the map
  // does not know the class), and the property: "defaultLineColor".
  std::string getAsCompatStr() const;
  // The property is "parent", in any case.
  bool isSettingDefaultParent() const;

  // Begins with "default" or "Default" (and has at least 7 characters).
  static bool isDefaultProp(const std::string& name);
  // Begins with "factory" or "Factory".
  static bool isFactoryProp(const std::string& name);
  // Whether `name` after its 7-character prefix is the beginning of some
  // short class name, so that it asks for all defaults of a class
  // ("defaultLine") rather than for one property ("defaultLineColor").
  // Raises std::out_of_range for a name shorter than the prefix.
  static bool queryingAllClassDefaults(const std::string& name);

 private:
  void parsePropString(const std::string& name);
  void parseDotted(const std::string& s);
  void parseCompact(std::string s);

  std::string prefix_;
  std::string separator_ = ".";
  std::string namespaceName_;
  std::string className_;
  std::string propName_;
  bool keepCase_;
};

}  // namespace sgutils
