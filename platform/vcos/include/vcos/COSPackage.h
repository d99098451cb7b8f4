// A namespace of classes. Packages live for the life of the process; a
// package owns its namespace info and the class infos added to it.
#pragma once

#include <memory>
#include <unordered_map>

#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"

class COSClassInfo;
class COSNamespaceInfo;

class VCOS_API COSPackage {
 public:
  // The package of that full name, or null.
  static COSPackage* getNamespace(COSID name);
  static COSPackage* getNamespace(const char* name) { return getNamespace(COSID(name)); }
  // Adds (and takes) a namespace info; returns the package, or the existing
  // one of that name (the new info is then deleted).
  static COSPackage* addNamespace(COSNamespaceInfo* info);

  COSID getName() const noexcept { return name_; }
  COSNamespaceInfo* getNamespaceInfo() const noexcept { return info_.get(); }

  // The class of that short or full name in this package, built on first
  // request; null when it does not exist.
  void findClass(COSInterfacePtr& out, const char* name);
  // Registers a class info (taken). The class is built when first needed.
  // Raises "VANTEL:vcos:ExistingName" for a name already present.
  void addClass(COSClassInfo* info, int reserved1 = 0, int reserved2 = 2);
  // The full name of a class of this package.
  COSID fullNameOf(const char* shortName) const;

  explicit COSPackage(COSNamespaceInfo* info);
  ~COSPackage();

 private:
  COSID name_;
  std::unique_ptr<COSNamespaceInfo> info_;
};
