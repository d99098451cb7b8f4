// The object that a copy transaction hands to overridable methods, and the
// entry point of a copy. CopyContextImpl is its one implementation.
#pragma once

#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

class COSClient;

namespace sgutils {

class SGUTILS_API CopyContext {
 public:
  CopyContext(const CopyContext&) = delete;
  CopyContext& operator=(const CopyContext&) = delete;

  // The copies of the objects of `array` that belong to this transaction,
  // made at once when still pending; objects outside are dropped, so the
  // result may be shorter than the input. A new array owned by the caller.
  virtual vxArray* getCopy(const COSClient* client, const vxArray* array) = 0;
  // A logical array of the size of `array`: true where an object is copied by
  // this transaction. Runs no task.
  virtual vxArray* willBeCopied(const COSClient* client, const vxArray* array) const = 0;
  // The object receiving the copies (an empty placeholder array for none).
  virtual const vxArray* getDestinationParent() const = 0;
  // The top-level sources, in a column.
  virtual const vxArray* getCopySources() const = 0;
  virtual ~CopyContext() = default;

  // Copies each source with its subtree under the parents, as one
  // transaction per parent. With several sources and several parents the
  // numbers must agree; one source goes to every parent; no parent gives
  // parentless copies. `copyCallbacks` also copies callback properties and
  // ApplicationData. Returns a column of the top-level copies, owned.
  static vxArray* doCopyObjects(const std::vector<COSInterfacePtr>& sources, const std::vector<COSInterfacePtr>& parents,
                                bool copyCallbacks);

 protected:
  CopyContext() = default;
};

}  // namespace sgutils
