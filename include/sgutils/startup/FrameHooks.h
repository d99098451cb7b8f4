// The points where later parts of the library join the object frame. The
// frame calls each hook when it is set and does the plain thing otherwise;
// the part that implements a hook sets it once, at start-up.
//
//   defaultNameSetter   a constructor input named like a default ("defaultLineColor")
//   wordRules           the words "default", "remove", "factory" and their escapes
//   defaultPairs        the defaults that apply to an object under a parent
//   defaultPairsSetter  applies those pairs
//   themeOnReset        gives a reset object its theme again
//   converterReplacer   the load/save converters of a newly added class
//   defaultClearer      drops all stored defaults of an object
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/defaults/PropValuePairs.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"

class COSClient;
class COSPropInfo;
class SGReference;
struct vxArray;

namespace sgutils {

struct FrameHooks {
  // True when `name` is a default name and the value was stored as a default.
  bool (*defaultNameSetter)(const COSInterfacePtr& object, const char* name, const vxArray* value) = nullptr;
  // True when `word` (UTF-8 text of a scalar text input) was taken as a word.
  bool (*wordRules)(const COSClient* client, const COSInterfacePtr& object, COSPropInfo* property,
                    const char* word) = nullptr;
  // Appends the names and values that apply to the block's object under `parent`.
  void (*defaultPairs)(SGReference& block, const COSInterfacePtr& parent, PropValuePairs& pairs) = nullptr;
  void (*defaultPairsSetter)(const COSInterfacePtr& object, const PropValuePairs& pairs, bool fromReset) = nullptr;
  void (*themeOnReset)(const COSInterfacePtr& object, bool force) = nullptr;
  void (*converterReplacer)(COSID classId, bool isAbstract) = nullptr;
  void (*defaultClearer)(SGReference& block) = nullptr;
};

// The process-wide hook table.
SGUTILS_API FrameHooks& frameHooks() noexcept;

}  // namespace sgutils
