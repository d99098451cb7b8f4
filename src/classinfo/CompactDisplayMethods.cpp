// The compact display providers of graphics objects and method aliases.
#include "foundation/core/except/Error.h"
#include "sgutils/classinfo/MethodAliasMI.h"
#include "sgutils/classinfo/OverloadCustomCompactDisplayProviderMI.h"
#include "src/classinfo/HeterogeneousDisplay.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/CompactRepresentation.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"

using foundation::core::except::Error;

namespace {

COSMethodSignaturePtr compactSignature(const char* name) {
  return COSMethodSignature::createMethodSignature(COSID(name),
                                                   {{COSID("object"), COSDataTypePtr(), false},
                                                    {COSID("displayConfiguration"), COSDataTypePtr(), true}},
                                                   {{COSID("rep"), COSDataTypePtr(), false}});
}

}  // namespace

OverloadCustomCompactDisplayProviderMI::OverloadCustomCompactDisplayProviderMI(COSID classId, const char* name)
    : COSMethodBase(classId, COSID(name), PublicAccess, "", compactSignature(name)) {}

void OverloadCustomCompactDisplayProviderMI::invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs,
                                                    const COSValue* prhs) const {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs < 1) matrix::detail::error_minrhs();
  if (nrhs > 2) matrix::detail::error_maxrhs();
  const vxArray* objects = prhs[0].asPointer<const vxArray>();
  matrix::unique_vxArray noConfiguration;
  const vxArray* configuration = nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr;
  if (!configuration) {
    noConfiguration.reset(vxCreateDoubleMatrix(0, 0, vxREAL));
    configuration = noConfiguration.get();
  }
  const matrix::unique_vxArray useSimpleName(vxCreateString("UseSimpleName"));
  const matrix::unique_vxArray yes(vxCreateLogicalScalar(true));
  const matrix::unique_vxArray className(vxCreateString("ClassName"));
  const matrix::unique_vxArray graphics(vxCreateString("Graphics"));
  const vxArray* in[6] = {objects, configuration, useSimpleName.get(), yes.get(), className.get(), graphics.get()};
  const bool mixed = objects && omIsVCOS(objects) && sgutils::detail::isHeterogeneousForDisplay(objects);
  vxArray* out[1] = {nullptr};
  vcos::FunctionDispatcher::instance().call(vcos::kDimensionsAndClassNameRepresentation, 1, out, mixed ? 6 : 4, in);
  plhs[0] = COSValue(out[0]);
  nlhs = 1;
}

MethodAliasMI::MethodAliasMI(COSID classId, const char* alias, const char* target)
    : COSMethodBase(classId, COSID(alias), PublicAccess, ""), target_(target) {}

void MethodAliasMI::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const {
  // The class of the first input decides, as for the target called by its
  // own name; an input that is no object leaves the class of the alias.
  COSClass* cls = nullptr;
  if (nrhs > 0)
    if (const vxArray* first = prhs[0].asPointer<const vxArray>(); first && omIsVCOS(first))
      cls = vcos::array::classOf(first);
  if (!cls) cls = getDefiningClass();
  if (!cls || !vcos::internal::callMethod(cls, target_, client, nlhs, plhs, nrhs, prhs))
    throw Error("VANTEL:vcos:UndefinedFunction", target_.str());
}
