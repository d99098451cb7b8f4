// A method of the Copyable mixin or of a subclass that overrides one:
// copyElement and connectCopyToTree are restricted to the copy classes
// (CopyContext and Copyable, with its subclasses, and the classes the
// Copyable registration names), copy is public. Inputs are untyped, so
// arrays pass as they are, unless given with their types.
#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/ExtendedMemberAccess.h"

namespace sgutils {

class SGUTILS_API CopyableMethod : public COSMethodBase {
 public:
  using Body = void (*)(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);

  CopyableMethod(COSID classId, const char* name, Body body, std::initializer_list<const char*> inputs,
                 std::initializer_list<const char*> outputs, bool restricted, unsigned signatureFlags = 0);
  CopyableMethod(COSID classId, const char* name, Body body, std::vector<COSMethodSignature::Argument> inputs,
                 std::vector<COSMethodSignature::Argument> outputs, bool restricted, unsigned signatureFlags = 0);
  const ExtendedMemberAccess* getExtendedAccess() const override { return access_.get(); }
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;

 private:
  Body body_;
  std::unique_ptr<ExtendedMemberAccess> access_;
};

// Bases of the overrides of copyElement and connectCopyToTree in C++: the
// override does its part in its own invoke and calls invokeDefaultImpl for
// the default's. copyElement must return what the default made.
class SGUTILS_API CopyableSubclassCopyElementMI : public CopyableMethod {
 public:
  explicit CopyableSubclassCopyElementMI(COSID classId);

 protected:
  static void invokeDefaultImpl(const COSClient* client, int& nout, COSValue* out, int nin, const COSValue* in);
};

class SGUTILS_API CopyableSubclassConnectCopyMI : public CopyableMethod {
 public:
  explicit CopyableSubclassConnectCopyMI(COSID classId);

 protected:
  static void invokeDefaultImpl(const COSClient* client, int& nout, COSValue* out, int nin, const COSValue* in);
};

}  // namespace sgutils
