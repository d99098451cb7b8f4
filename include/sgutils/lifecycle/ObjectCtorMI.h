// The constructor method of a graphics class. The class system makes the
// instance (one data block per class), then calls this with the new object
// as element 0 of the object array in plhs[0] and the caller's inputs. The stages: the Java
// check, Setup (base first), the name-value input, CreationComplete. When a
// stage fails, SetupFailed runs and "Parent" is emptied, so that a half-built
// object leaves the tree, and the error goes on to the caller.
#pragma once

#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/ObjectArray.h"

namespace sgutils {

struct PublicConstructorAccess {
  static constexpr MemberAccess access = PublicAccess;
};
struct PrivateConstructorAccess {
  static constexpr MemberAccess access = PrivateAccess;
};

// The stages, for a block already found. `privateClient` is the class's own
// client, used to empty "Parent" after a failure.
SGUTILS_API void runConstructorStages(const COSClient* callClient, const COSInterfacePtr& object, SGReference* block,
                                      const COSClient* privateClient, int nrhs, const COSValue* prhs);
// The signature of every constructor: any inputs, one output of the class.
SGUTILS_API COSMethodSignaturePtr constructorSignature(COSID classId);
// The private client of a class whose info derives from BaseObjectCOSInfo,
// else the class's own private client.
SGUTILS_API const COSClient* privateClientOf(COSClass* cls);

}  // namespace sgutils

// `Class` is the C++ block of the class (deriving from SGReference); the
// method finds it in the object by the id of the class that defines it.
template <class Class, class Access>
class ObjectCtorMI final : public COSMethodInfo {
 public:
  explicit ObjectCtorMI(COSID classId, COSID methodId)
      : methodId_(methodId), signature_(sgutils::constructorSignature(classId)) {}

  const char* getName() const override { return methodId_.c_str(); }
  const char* getDescription() const override { return "Constructor"; }
  MemberAccess getMemberAccess() const override { return Access::access; }
  const COSMethodSignature* getMethodSignature() const override { return signature_.get(); }

  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    if (nlhs < 1) return;
    const vxArray* self = plhs[0].asPointer<const vxArray>();
    if (!self) return;
    COSInterfacePtr object = omGetArrayElement(self, 0);
    if (!object) return;
    construct(client, object, nrhs, prhs);
  }

  bool constructWithoutInputs(const COSClient* client, const COSInterfacePtr& object) const override {
    construct(client, object, 0, nullptr);
    return true;
  }

 private:
  void construct(const COSClient* client, const COSInterfacePtr& object, int nrhs, const COSValue* prhs) const {
    COSClass* cls = getDefiningClass();
    auto* block = static_cast<Class*>(static_cast<SGReference*>(object->getInstanceData(cls->getID())));
    if (!privateClient_) privateClient_ = sgutils::privateClientOf(cls);
    sgutils::runConstructorStages(client, object, block, privateClient_, nrhs, prhs);
  }

  COSID methodId_;
  COSMethodSignaturePtr signature_;
  // Found on the first call, when the class is complete.
  mutable const COSClient* privateClient_ = nullptr;
};
