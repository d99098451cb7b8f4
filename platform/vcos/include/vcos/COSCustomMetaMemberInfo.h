// Base of the class info of a custom meta method class.
#pragma once

#include "vcos/MetaClassBase.h"

class VCOS_API COSCustomMetaMemberInfo : public MetaClassBase {};
