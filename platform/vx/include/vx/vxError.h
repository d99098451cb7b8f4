// Warnings through the array API's warning channel.
#pragma once

#include <string>

#include "foundation/PlatformExport.h"
#include "foundation/i18n/Message.h"

// Issues the message as a warning ("Warning: <text>"), unless switched off.
VX_API void vxWarningMsgId(const i18n::Message& message);
