// What a method takes and gives: named, typed inputs and outputs, the
// variable-input and variable-output marks, the static flag and the access.
// A call is accepted when the input count fits and every typed input passes
// its type's checkValue. With the variable-input mark, the last input stands
// for any number of inputs (none included), each of its type.
#pragma once

#include <memory>
#include <vector>

#include "vcos/COSDataTypePtr.h"
#include "vcos/MemberAccess.h"

class VCOS_API COSMethodSignature {
 public:
  struct Argument {
    COSID name;
    COSDataTypePtr type;  // empty: any word
    bool optional = false;
  };
  enum Flags : unsigned { None = 0, VarArgIn = 1, VarArgOut = 2, Static = 4 };

  static std::shared_ptr<COSMethodSignature> createMethodSignature(COSID name, std::vector<Argument> inputs,
                                                                   std::vector<Argument> outputs,
                                                                   unsigned flags = None,
                                                                   MemberAccess access = PublicAccess);

  COSID getName() const noexcept { return name_; }
  const std::vector<Argument>& getInputs() const noexcept { return inputs_; }
  const std::vector<Argument>& getOutputs() const noexcept { return outputs_; }
  bool hasVarArgIn() const noexcept { return (flags_ & VarArgIn) != 0; }
  bool hasVarArgOut() const noexcept { return (flags_ & VarArgOut) != 0; }
  bool isStatic() const noexcept { return (flags_ & Static) != 0; }
  MemberAccess getAccess() const noexcept { return access_; }
  int minInputs() const noexcept { return minIn_; }
  // -1 when unbounded.
  int maxInputs() const noexcept { return hasVarArgIn() ? -1 : static_cast<int>(inputs_.size()); }
  int maxOutputs() const noexcept { return hasVarArgOut() ? -1 : static_cast<int>(outputs_.size()); }
  bool accepts(int nrhs, const COSValue* prhs) const;

  COSMethodSignature(COSID name, std::vector<Argument> inputs, std::vector<Argument> outputs, unsigned flags,
                     MemberAccess access);

 private:
  COSID name_;
  std::vector<Argument> inputs_;
  std::vector<Argument> outputs_;
  unsigned flags_;
  MemberAccess access_;
  int minIn_ = 0;
};

using COSMethodSignaturePtr = std::shared_ptr<COSMethodSignature>;
