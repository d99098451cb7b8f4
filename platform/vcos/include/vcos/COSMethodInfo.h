// The description of one method; also an instance of a meta method class.
// invoke is the one pure operation: `nlhs` comes in as the number of outputs
// asked for (and may be raised from 0 to 1); outputs belong to the caller,
// inputs are borrowed. An instance method gets its object as the first input.
#pragma once

#include <cstddef>

#include "vcos/COSInterface.h"
#include "vcos/MemberAccess.h"

class COSClient;
class COSMethodSignature;
class ExtendedMemberAccess;

class VCOS_API COSMethodInfo : public COSInterface {
 public:
  // Method infos come from the class system's allocator; a class owns them.
  static void* operator new(std::size_t size);
  static void operator delete(void* p) noexcept;

  COSMethodInfo() noexcept : COSInterface(COSKind::Method) {}

  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;
  virtual bool isLookupScope() const;
  virtual const char* getDetailedDescription() const;
  virtual MemberAccess getMemberAccess() const;
  virtual const ExtendedMemberAccess* getExtendedAccess() const;
  // Null accepts any call.
  virtual const COSMethodSignature* getMethodSignature() const;
  virtual void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const = 0;
  virtual bool isFirstArgDispatch() const;
  virtual bool isStatic() const;
  virtual bool isAbstract() const;
  virtual bool isSealed() const;
  virtual bool isVisible() const;
  virtual bool isDestructible() const;
  virtual bool isLocked() const;
  virtual bool isExplicit() const;
  // True: the inherited methods of the same name are not tried after this one.
  virtual bool doesMethodOverrideAllSignatures() const;
  // A constructor's entry for a construction without inputs: it takes the
  // new object as it is, where invoke finds it in a 1-by-1 object array.
  // The class system calls it in place of invoke only where the call would
  // reach invoke (the only candidate of its name, admitted, its signature
  // taking no inputs). False, having done nothing: no such entry.
  virtual bool constructWithoutInputs(const COSClient* client, const COSInterfacePtr& object) const;

  COSID getID() const noexcept { return id_; }
  COSClass* getDefiningClass() const noexcept { return definingClass_; }

 protected:
  ~COSMethodInfo() override;

 private:
  friend class COSClass;
  COSID id_;
  COSClass* definingClass_ = nullptr;
};
