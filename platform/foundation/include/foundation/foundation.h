// The foundation services.
#pragma once

#include "foundation/PlatformExport.h"
#include "foundation/core/except/Error.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/core/except/WarningChannel.h"
#include "foundation/core/except/bad_alloc.h"
#include "foundation/i18n/Message.h"
#include "foundation/i18n/MessageCatalog.h"
