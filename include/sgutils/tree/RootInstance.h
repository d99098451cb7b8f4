// The way to the root object. The library that owns the root class installs
// an accessor (per interpreter instance); this library only calls it.
#pragma once

#include <functional>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

// Whether a null root is an error (Refuse) or an answer (Tolerate).
enum class NullTolerance : int { Refuse = 0, Tolerate = 1 };

class SGUTILS_API RootInstance {
 public:
  using Accessor = std::function<COSInterfacePtr()>;

  // The root. With Refuse a null answer raises "VANTEL:root:Deleted". With
  // no accessor installed the empty function is called, which raises
  // std::bad_function_call.
  static COSInterfacePtr getRootInstance(NullTolerance tolerance);
  static void setGetRootInstanceFcn(const Accessor& accessor);
  static void clearGetRootInstanceFcn();
};

}  // namespace sgutils
