#include "sgutils/copy/CopyableMethod.h"

#include <vector>

#include "sgutils/objects/MixinMethod.h"
#include "src/copy/CopyAccess.h"
#include "src/copy/CopyElement.h"
#include "vcos/COSMethodSignature.h"

namespace sgutils {

namespace copy {
ExtendedMemberAccess copyAccessList() {
  return ExtendedMemberAccess{COSID("vantel.graphics.internal.CopyContext"),
                              COSID("vantel.graphics.mixin.internal.Copyable"), COSID("vantel.graphics.Graphics"),
                              COSID("vantel.graphics.eventdata.Annotation")};
}
}  // namespace copy

CopyableMethod::CopyableMethod(COSID classId, const char* name, Body body, std::initializer_list<const char*> inputs,
                               std::initializer_list<const char*> outputs, bool restricted,
                               unsigned signatureFlags)
    : CopyableMethod(classId, name, body, untypedArguments(inputs), untypedArguments(outputs), restricted,
                     signatureFlags) {}

CopyableMethod::CopyableMethod(COSID classId, const char* name, Body body,
                               std::vector<COSMethodSignature::Argument> inputs,
                               std::vector<COSMethodSignature::Argument> outputs, bool restricted,
                               unsigned signatureFlags)
    : COSMethodBase(classId, COSID(name), restricted ? ProtectedAccess : PublicAccess, "Part of copying objects",
                    COSMethodSignature::createMethodSignature(COSID(name), std::move(inputs), std::move(outputs),
                                                              signatureFlags)),
      body_(body) {
  if (restricted) access_ = std::make_unique<ExtendedMemberAccess>(copy::copyAccessList());
}

void CopyableMethod::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                            const COSValue* prhs) const {
  body_(client, nlhs, plhs, nrhs, prhs);
}

CopyableSubclassCopyElementMI::CopyableSubclassCopyElementMI(COSID classId)
    : CopyableMethod(classId, "copyElement", &copy::defaultCopyElement, {"source"}, {"copy"}, true) {}

void CopyableSubclassCopyElementMI::invokeDefaultImpl(const COSClient* client, int& nout, COSValue* out, int nin,
                                                      const COSValue* in) {
  copy::defaultCopyElement(client, nout, out, nin, in);
}

CopyableSubclassConnectCopyMI::CopyableSubclassConnectCopyMI(COSID classId)
    : CopyableMethod(classId, "connectCopyToTree", &copy::defaultConnectCopyToTree,
                     {"source", "copy", "parent", "context"}, {}, true) {}

void CopyableSubclassConnectCopyMI::invokeDefaultImpl(const COSClient* client, int& nout, COSValue* out, int nin,
                                                      const COSValue* in) {
  copy::defaultConnectCopyToTree(client, nout, out, nin, in);
}

}  // namespace sgutils
