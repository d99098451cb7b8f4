// Base of the class info of a custom meta property class: its instances are
// properties, and its data blocks hold the attributes a library adds.
#pragma once

#include "vcos/MetaClassBase.h"

class VCOS_API COSCustomMetaPropertyInfo : public MetaClassBase {};
