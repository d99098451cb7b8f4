// The class info of a root class described by a RootClassRow: the row's
// names and answers, and an initializeClass that adds the row's
// superclasses in their listed order and its allowed subclasses, then the
// members of the class (`addMembers`). The named root class infos derive
// from it and add allocation and members.
#pragma once

#include "sgutils/classinfo/BaseObjectCOSInfo.h"
#include "sgutils/classinfo/RootClassRow.h"

class SGUTILS_API RootClassInfo : public BaseObjectCOSInfo {
 public:
  explicit RootClassInfo(const RootClassRow& row) noexcept : row_(row) {}

  const char* getName() const override { return row_.name; }
  const char* getDescription() const override { return row_.description; }
  const char* getDetailedDescription() const override { return row_.detailedDescription; }
  bool isHandleClass() const override { return row_.handle; }
  bool isAbstract() const override { return row_.abstract; }
  bool classIsAbstract() const override { return isAbstract(); }
  bool isSealed() const override { return row_.sealed; }
  bool areChildrenSaved() const override;
  bool arePropertiesCaseInsensitive() const override { return false; }
  bool isPropertyTruncationAllowed() const override { return row_.truncationAllowed; }
  void initializeClass(COSClass* cls, const COSClient* client) override;

  const RootClassRow& row() const noexcept { return row_; }

 protected:
  // Properties, methods and events, after superclasses and allowed subclasses.
  virtual void addMembers(COSClass*) {}

 private:
  const RootClassRow& row_;
};

namespace sgutils {
// Adds `row`'s superclasses to `cls` so that the class lists them in the
// row's order: the first ones are prepended, so they go in reverse.
SGUTILS_API void addRowSuperclasses(COSClass* cls, const RootClassRow& row);
}  // namespace sgutils
