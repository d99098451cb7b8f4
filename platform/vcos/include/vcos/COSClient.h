// The identity on whose behalf an operation runs: the public client, or the
// private client of one class (which sees that class's private members and
// the protected members of its ancestors).
#pragma once

#include "foundation/PlatformExport.h"

class COSClass;

class VCOS_API COSClient {
 public:
  constexpr explicit COSClient(COSClass* cls = nullptr) noexcept : cls_(cls) {}
  COSClass* getClass() const noexcept { return cls_; }
  bool isPublic() const noexcept { return cls_ == nullptr; }

 private:
  COSClass* cls_;
};

// The ordinary client of scripts and of the library's public operations.
VCOS_API const COSClient* COSGetPublicClient() noexcept;
