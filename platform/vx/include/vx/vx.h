// The whole array API.
#pragma once

#include "vx/Mprotected_vxArray.h"
#include "vx/matrix.h"
#include "vx/vxCell.h"
#include "vx/vxCompare.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxError.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxMemory.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"
#include "vx/vxText.h"
#include "vx/vxTypes.h"
