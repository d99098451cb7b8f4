// Methods of generated mixins written as plain functions (MixinMethod.h).
#include "sgutils/objects/MixinMethod.h"

#include <vector>

namespace sgutils {

std::vector<COSMethodSignature::Argument> untypedArguments(std::initializer_list<const char*> names) {
  std::vector<COSMethodSignature::Argument> out;
  out.reserve(names.size());
  for (const char* name : names) out.push_back({COSID(name), COSDataTypePtr(), false});
  return out;
}

MixinMethod::MixinMethod(COSID classId, const char* name, Body body, std::initializer_list<const char*> inputs,
                         std::initializer_list<const char*> outputs, bool isStatic)
    : COSMethodBase(classId, COSID(name), PublicAccess, "The contents of the comment field should go here.",
                    COSMethodSignature::createMethodSignature(COSID(name), untypedArguments(inputs), untypedArguments(outputs),
                                                              isStatic ? COSMethodSignature::Static
                                                                       : COSMethodSignature::None)),
      body_(body) {}

// With a list the plain access is not consulted; protected says the same to
// a reader of the method's description.
MixinMethod::MixinMethod(COSID classId, const char* name, Body body, std::initializer_list<const char*> inputs,
                         std::initializer_list<const char*> outputs, const ExtendedMemberAccess& access)
    : COSMethodBase(classId, COSID(name), ProtectedAccess, "The contents of the comment field should go here.",
                    COSMethodSignature::createMethodSignature(COSID(name), untypedArguments(inputs),
                                                              untypedArguments(outputs), COSMethodSignature::None)),
      body_(body),
      access_(std::make_unique<ExtendedMemberAccess>(access)) {}

void MixinMethod::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  body_(client, nlhs, plhs, nrhs, prhs);
}

}  // namespace sgutils
