// Base of the class info of a custom meta event class.
#pragma once

#include "vcos/MetaClassBase.h"

class VCOS_API COSCustomMetaEventInfo : public MetaClassBase {};
