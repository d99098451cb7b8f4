// The library-supplied description of one namespace (package). The defaults
// load nothing on demand.
#pragma once

#include "foundation/PlatformExport.h"

class COSPackage;

class VCOS_API COSNamespaceInfo {
 public:
  virtual ~COSNamespaceInfo();
  // The full dotted name of the namespace.
  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;
  virtual const char* getDetails() const;
  virtual void initializePackage(COSPackage* package);
  // True when a class of that short name was added to the package.
  virtual bool attemptToLoadClass(const char* name);
  virtual bool attemptToLoadFunction(const char* name);
  virtual bool attemptToLoadInnerNamespace(const char* name);
  virtual bool attemptToLoadSubPackage(const char* name);
  virtual bool attemptToLoadType(const char* name);
  virtual bool canLoadDynamicContent() const;
  virtual bool isDestructible() const;
  virtual bool isLocked() const;
  virtual int getMethodSelector() const;
  // Raises "VANTEL:vcos:ExistingName".
  virtual void throwErrorForDefinitionOfExistingName(const char* name) const;
};
