// The entry point of a copy: checks, one transaction per parent, and the
// column of copies.
#include "sgutils/copy/CopyContext.h"

#include "foundation/core/except/Error.h"
#include "sgutils/copy/CopyContextImpl.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace sgutils {

namespace {

void validate(const COSInterfacePtr& parent, const std::vector<COSInterfacePtr>& sources) {
  if (parent && parent->isDestroyed()) throw Error("VANTEL:copyobj:InvalidParentHandle");
  for (const COSInterfacePtr& source : sources)
    if (!source || source->isDestroyed()) throw Error("VANTEL:sg:g_object:CannotCreateCopyOfInvalidHandle");
}

vxArray* copyInto(const COSInterfacePtr& parent, const std::vector<COSInterfacePtr>& sources, bool copyCallbacks) {
  validate(parent, sources);
  CopyContextImpl context(parent, sources);
  context.setCopyCallbacks(copyCallbacks);
  return context.run();
}

}  // namespace

vxArray* CopyContext::doCopyObjects(const std::vector<COSInterfacePtr>& sources,
                                    const std::vector<COSInterfacePtr>& parents, bool copyCallbacks) {
  const std::size_t s = sources.size();
  const std::size_t p = parents.size();
  if (s >= 2 && p >= 2 && s != p) throw Error("VANTEL:copyobj:VectorLengthNotEqual");
  if (p == 0) return copyInto(nullptr, sources, copyCallbacks);
  if (p == 1) return copyInto(parents[0], sources, copyCallbacks);

  // One transaction per parent, so two parents never share a map.
  std::vector<COSInterfacePtr> results;
  results.reserve(p);
  for (std::size_t i = 0; i < p; ++i) {
    const std::vector<COSInterfacePtr> one{s == 1 ? sources[0] : sources[i]};
    const matrix::unique_vxArray result(copyInto(parents[i], one, copyCallbacks));
    if (result && !vxIsEmpty(result.get())) results.push_back(omGetLiveArrayElement(result.get(), 0));
  }
  matrix::unique_vxArray column(omCreateVCOSMatrix(results.size(), 1, "vantel.graphics.GraphicsPlaceholder"));
  for (std::size_t i = 0; i < results.size(); ++i) omSetArrayElement(column.get(), i, results[i]);
  omSetClassOfHeterogeneousArray(column.get());
  return column.release();
}

}  // namespace sgutils
