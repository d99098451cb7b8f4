// Not installed. The client of "vantel.graphics.internal.CopyContext", kept
// when the class is registered: a copy passes it to every overridable call,
// so that the restricted copy methods admit it.
#pragma once

class COSClient;

namespace sgutils::copy {
const COSClient* contextClient() noexcept;
void setContextClient(const COSClient* client) noexcept;
}  // namespace sgutils::copy
