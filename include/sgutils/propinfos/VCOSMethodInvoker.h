// Calls a class method by name from C++ with COSValue inputs and outputs:
// the inputs are turned into arrays by their signature types, the call goes
// through the class system, and the outputs come back as typed values.
// Access chooses the methods looked at: 0 public ones, 1 public and
// protected ones, 4 all; any other value finds nothing.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSValue.h"
#include "vcos/MemberAccess.h"

class COSClass;
class COSClient;
class COSMethodInfo;
class COSMethodSignature;

namespace sgutils {

class SGUTILS_API VCOSMethodInvoker {
 public:
  // The method of that name with exactly these numbers of outputs and inputs.
  VCOSMethodInvoker(COSClass* cls, COSID methodId, int outputs, int inputs, MemberAccess access);
  // The first public method of that name (whose signature `signature`
  // fits, when given).
  VCOSMethodInvoker(COSClass* cls, COSID methodId, const COSMethodSignature* signature);
  VCOSMethodInvoker(COSClass* cls, COSID methodId, const COSMethodSignature* signature, int access);

  bool exists() const noexcept { return method_ != nullptr; }
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const;
  void invokeStatic(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const;

 private:
  void invokeImpl(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs,
                  bool isStaticCall) const;

  COSID methodId_;
  std::string className_;
  COSID classId_;
  COSMethodInfo* method_ = nullptr;
};

SGUTILS_API void callVCOSMethod(COSID methodId, int access, COSClass* cls, const COSClient* client, int& nlhs,
                                COSValue* plhs, int nrhs, const COSValue* prhs);
SGUTILS_API void callVCOSMethod(COSID methodId, COSClass* cls, const COSClient* client, int& nlhs, COSValue* plhs,
                                int nrhs, const COSValue* prhs);
// The first public method of that name, without a test of its signature.
SGUTILS_API void callStaticVCOSMethod(COSID methodId, COSClass* cls, const COSClient* client, int& nlhs,
                                      COSValue* plhs, int nrhs, const COSValue* prhs);

}  // namespace sgutils
