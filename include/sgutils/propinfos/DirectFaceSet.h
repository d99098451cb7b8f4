// The public writes of a generated triple without the second and third
// trips through the client path. A public set of the public face `X` runs,
// when nothing observes it, exactly what the custom set path would: `XMode`
// turns manual, then the value goes to `X_I`. These answer when that holds
// and write the mode straight away; anything observed (a property listener
// on `X` or `XMode`, another meta class's custom set, an access rule) keeps
// the client path, so listeners, access errors and custom sets stay as they
// were.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSValue.h"

class COSInterface;
class COSPropInfo;

namespace sgutils::detail {

enum class FaceSetCourse {
  ClientPath,     // observed or guarded: the client path
  Plain,          // no custom set turned on: the face's setValue alone
  ModeThenValue,  // the graphics custom set: the mode manual, then setValue
};

// The course of a public set of the public face `face` with its mode `mode`.
SGUTILS_API FaceSetCourse publicFaceSetCourse(COSInterface* object, const COSPropInfo* face,
                                              const COSPropInfo* mode) noexcept;

// Writes `mode` manual as the public client: the mode's own setValue when
// nothing observes the mode, else the client path.
SGUTILS_API void setModeManualPublic(COSInterface* object, COSPropInfo* mode);

}  // namespace sgutils::detail
