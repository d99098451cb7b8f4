// Not installed. The base of the visitors that sort a class's properties
// for a copy: each visit adds at most one entry, and a property that arrives
// again through a base class keeps its first entry.
#pragma once

#include <vector>

#include "sgutils/copy/Copyable.h"
#include "vcos/COSDataType.h"  // before COSDataTypePtr.h: the pointer needs it complete
#include "vcos/COSDataTypePtr.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSVisitor.h"

namespace sgutils {
class PropInfoBase;
}

namespace sgutils::copy {

struct PropertyCopyEntry {
  const COSPropInfo* property;
  PropertyCopyKind kind;
  // The property's type, taken once with the plan; it compares a copied
  // value with what the new object already holds.
  COSDataTypePtr type;
  // A value face whose value lives in its class's block copies block to
  // block: the face, and the index of its block's class in the plan's
  // blockClasses (null and -1 for other properties).
  PropInfoBase* face = nullptr;
  int block = -1;
  // The Copyable flag: compared in the two objects' Copyable data first.
  bool copyableFlag = false;
};

class PropertyCopyVisitor : public COSVisitor {
 public:
  explicit PropertyCopyVisitor(const COSInterface* object) noexcept : object(object) {}
  const std::vector<PropertyCopyEntry>& entries() const noexcept { return entries_; }
  bool has(const COSPropInfo* property) const;
  void add(const COSPropInfo* property, PropertyCopyKind kind);

 protected:
  const COSInterface* object;

 private:
  std::vector<PropertyCopyEntry> entries_;
  std::vector<COSID> names_;
};

}  // namespace sgutils::copy
