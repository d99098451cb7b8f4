// Calling a method by name: the candidates of that name are kept per class,
// most derived first, in a table built with the class; the first one whose
// access admits the client and whose signature accepts the inputs runs.
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSObjectOperations.h"

using foundation::core::except::Error;

bool vcos::internal::callMethod(COSClass* cls, COSID methodId, const COSClient* client, int& nlhs, COSValue* plhs,
                                int nrhs, const COSValue* prhs) {
  assert(cls && "callMethod needs a class");
  const std::uint32_t* i = cls->tables().methodIndex.find(methodId);
  if (!i) return false;
  // No copy: the table is not touched again once a method is invoked, so a
  // method may add methods to the class while it runs.
  const std::vector<COSMethodInfo*>& candidates = cls->tables().methods[*i].candidates;
  bool refused = false;
  for (COSMethodInfo* m : candidates) {
    if (!admits(m->getMemberAccess(), m->getExtendedAccess(), m->getDefiningClass(), client)) {
      refused = true;
      if (m->doesMethodOverrideAllSignatures()) break;
      continue;
    }
    const COSMethodSignature* sig = m->getMethodSignature();
    if (sig && !sig->accepts(nrhs, prhs)) {
      if (m->doesMethodOverrideAllSignatures()) break;
      continue;
    }
    m->invoke(client, nlhs, plhs, nrhs, prhs);
    return true;
  }
  if (refused) throw Error(vcos::msg::MethodAccessDenied, methodId.str(), cls->getName());
  throw Error(vcos::msg::NoMatchingSignature, methodId.str(), cls->getName());
}
