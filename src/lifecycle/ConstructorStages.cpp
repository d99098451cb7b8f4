// The stages of a new graphics object, run by every constructor method
// (ObjectCtorMI.h), and the catch-all that takes a half-built object out of
// the tree when a stage fails.
#include <cassert>

#include "sgutils/classinfo/BaseObjectCOSInfo.h"
#include "sgutils/lifecycle/ConstructionStep.h"
#include "sgutils/lifecycle/ErrorWithoutJVM.h"
#include "sgutils/lifecycle/ObjectCtorMI.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSClass.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeRepository.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"

namespace sgutils {

void runConstructorStages(const COSClient* callClient, const COSInterfacePtr& object, SGReference* block,
                          const COSClient* privateClient, int nrhs, const COSValue* prhs) {
  ErrorWithoutJVM::throwErrorWithoutJVM();
  assert(block && "a constructor method's class must allocate a block deriving from SGReference");
  if (!block) return;
  const ScopedConstructionStep::Taken step = ScopedConstructionStep::take(object->getClass());
  try {
    // One question to the block for both hooks: a block whose hooks act
    // (every hand-written one) takes no further check.
    const unsigned acts = block->stageHooksThatAct();
    if (acts & SGReference::kSetupActs)
      block->Setup(object);
    else
      block->runSetup(object, acts);
    step.run(object);
    if (nrhs > 0) SGHandle::setPVPairs(callClient, object, nrhs, prhs);
    if (acts & SGReference::kCreationCompleteActs)
      block->CreationComplete(object);
    else
      block->runCreationComplete(object, acts);
  } catch (...) {
    // An object that the failure already deleted gets neither step.
    if (!object->isDestroyed()) {
      block->SetupFailed(object);
      static const COSID parentId("Parent");
      if (COSPropInfo* parent = object->getClass()->findPropertyExact(parentId)) {
        matrix::unique_vxArray empty(vxCreateDoubleMatrix(0, 0, vxREAL));
        try {
          object->setPropertyValue(privateClient, parent, COSValue(empty.get()));
        } catch (...) {
          // The first failure is the one the caller must see.
        }
      }
    }
    throw;
  }
}

COSMethodSignaturePtr constructorSignature(COSID classId) {
  // One variable input of type "any", one output of the class itself (its
  // type is made by the repository from the class, which exists by now).
  static const COSID any("any");
  return COSMethodSignature::createMethodSignature(
      classId, {{COSID("varargin"), COSTypeRepository::getType(any), /*optional=*/true}},
      {{COSID("obj"), COSTypeRepository::getType(classId), false}}, COSMethodSignature::VarArgIn);
}

const COSClient* privateClientOf(COSClass* cls) {
  if (auto* info = dynamic_cast<BaseObjectCOSInfo*>(cls->getClassInfo())) return info->getClient();
  return cls->getPrivateClient();
}

}  // namespace sgutils
