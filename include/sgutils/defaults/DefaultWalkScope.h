// While one lives, the walk that collects the defaults of a new parent's
// ancestors keeps its last empty answer for its (parent, class): objects of
// one class connected one after another under one parent, as a copy does,
// walk the ancestors once. The kept answer holds while the stored defaults
// are unchanged (storedDefaultsEpoch) and the parent's ancestors are the
// same objects; otherwise the walk runs as without the scope. Scopes nest;
// the answer is forgotten when the outermost ends. Interpreter thread only.
#pragma once

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API DefaultWalkScope {
 public:
  DefaultWalkScope() noexcept;
  ~DefaultWalkScope();
  DefaultWalkScope(const DefaultWalkScope&) = delete;
  DefaultWalkScope& operator=(const DefaultWalkScope&) = delete;
};

}  // namespace sgutils
