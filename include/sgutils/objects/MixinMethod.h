// A method of a generated mixin whose body is a plain
// function: the class system's call shape, with every word an array (the
// convention of built-in methods; outputs belong to the caller). The
// description is the one all mixin methods share. A restricted method
// carries an access list: only its defining class, the listed classes and
// their subclasses may call it.
#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodBase.h"
#include "vcos/ExtendedMemberAccess.h"

namespace sgutils {

class SGUTILS_API MixinMethod final : public COSMethodBase {
 public:
  using Body = void (*)(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);

  // `inputs` and `outputs` name the arguments; they are untyped, so arrays
  // pass as they are. `isStatic` methods get no object first.
  MixinMethod(COSID classId, const char* name, Body body, std::initializer_list<const char*> inputs,
              std::initializer_list<const char*> outputs, bool isStatic = false);
  // A restricted instance method, open to the classes of `access`.
  MixinMethod(COSID classId, const char* name, Body body, std::initializer_list<const char*> inputs,
              std::initializer_list<const char*> outputs, const ExtendedMemberAccess& access);

  const ExtendedMemberAccess* getExtendedAccess() const override { return access_.get(); }
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;

 private:
  Body body_;
  std::unique_ptr<ExtendedMemberAccess> access_;
};

// Untyped arguments of those names, for a method signature.
SGUTILS_API std::vector<COSMethodSignature::Argument> untypedArguments(std::initializer_list<const char*> names);

// Adds a new MixinMethod to the class.
inline void addMixinMethod(COSClass* cls, COSID classId, const char* name, MixinMethod::Body body,
                           std::initializer_list<const char*> inputs, std::initializer_list<const char*> outputs,
                           bool isStatic = false) {
  cls->addMethod(new MixinMethod(classId, name, body, inputs, outputs, isStatic));
}

// Adds a new restricted MixinMethod to the class.
inline void addRestrictedMixinMethod(COSClass* cls, COSID classId, const char* name, MixinMethod::Body body,
                                     std::initializer_list<const char*> inputs,
                                     std::initializer_list<const char*> outputs, const ExtendedMemberAccess& access) {
  cls->addMethod(new MixinMethod(classId, name, body, inputs, outputs, access));
}

}  // namespace sgutils
