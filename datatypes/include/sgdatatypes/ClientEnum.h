// On whose behalf a generated setter writes: 0 is the owning class's private
// client (the internal face is written and the mode stays), anything else the
// public client (the public face, so the mode turns manual).
#pragma once

namespace graphics::datatype {

enum ClientEnum : int { PrivateClient = 0, PublicClient = 1 };

}  // namespace graphics::datatype
