// A mode face set from manual back to auto hands its property back to the
// theme: the property takes its themed value at once, not only at the next
// theme change.
#pragma once

#include "sgutils/SgutilsExport.h"

class COSInterface;
class COSPropInfo;

namespace sgutils::themes {

// `mode` is the mode face `XMode` of the property `X` of `object`, just set
// to auto. Sets `X` to the value of the governing theme when the object is
// themed and the theme maps `X`; otherwise nothing happens.
SGUTILS_API void modeSetBackToAuto(COSInterface* object, const COSPropInfo* mode);

}  // namespace sgutils::themes
