// Graphics classes for the property-model tests, written as a library above
// sgutils writes them:
// - "sg2utils.TestPostSetFcn": a graphics object that is also Selectable
//   (and so GraphicsPickable); its Graphics block keeps a journal of every
//   doPostSet it receives.
// - "sg2utils.TestPropertyFlags": a graphics object with plain properties
//   that carry graphics attributes (AffectsObject, AffectsLegend, ...), so
//   the custom set path of the metaclass runs for them, and a colour triple
//   EdgeColor written by hand in the generated pattern; its "Component" is
//   an internal component, and its methods "addNode" and "replaceChild" note
//   their calls in nodeCalls().
// - "sg2utils.TestLoadObjBase": a graphics object with the generated
//   test mixin TwinProperties (properties with serializable twins);
//   "sg2utils.TestUpdateViewInfo" tries the same but is not on the
//   mixin's list of allowed subclasses.
// - "sg2utils.TestNodeChild": a handle class with a "NodeParent" property.
#pragma once

#include <string>
#include <vector>

#include "sgutils/sgutils.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgutils/objects/Selectable.gen.h"

namespace sgtest::propmodel {

inline constexpr const char kSelectableClass[] = "sg2utils.TestPostSetFcn";
inline constexpr const char kFlagsClass[] = "sg2utils.TestPropertyFlags";
inline constexpr const char kTwinClass[] = "sg2utils.TestLoadObjBase";
inline constexpr const char kRefusedTwinClass[] = "sg2utils.TestUpdateViewInfo";
inline constexpr const char kNodeChildClass[] = "sg2utils.TestNodeChild";

struct PostSet {
  std::string property;
  bool twoFlagForm;  // the (bool, bool) overload
  DirtyFlags flags;  // for the (bool, bool) form: limits and object
  graphics::datatype::AutoManual selectedModeThen;  // Selectable objects only
};

class JournalingHandle : public SGHandle {
 public:
  void doPostSet(COSInterface* object, COSPropInfo* property, DirtyFlags flags) override;
  void doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) override;
  std::vector<PostSet> posts;
  // The colour triple EdgeColor of "sg2utils.TestPropertyFlags", written by
  // hand with the generated property kinds and held by value.
  graphics::datatype::RGBAColor edgeColor;
  unsigned char edgeColorMode = 0;
};

// Starts the library and registers both classes (once).
void registerPropertyModelClasses();
COSInterfacePtr makeObject(const char* className);
// "addNode obj child" and the like, one entry per call of a node method.
std::vector<std::string>& nodeCalls();
JournalingHandle& handleOf(const COSInterfacePtr& object);
graphics::mixin::Selectable& selectableOf(const COSInterfacePtr& object);
COSPropInfo* prop(const COSInterfacePtr& object, const char* name);

// Sets and gets through the client path as the public client.
void publicSet(const COSInterfacePtr& object, const char* name, COSValue value);
COSValue publicGet(const COSInterfacePtr& object, const char* name);
const unsigned char* modeWord(graphics::datatype::AutoManual mode);

// Turns the process-wide AbortSet switch on for a scope.
struct AbortSetOn {
  AbortSetOn() { SGReference::setAbortSet(true); }
  ~AbortSetOn() { SGReference::setAbortSet(false); }
};
// Turns the old SimplePropInfo set behaviour on for a scope.
struct OldSetBehaviour {
  OldSetBehaviour();
  ~OldSetBehaviour();
};

}  // namespace sgtest::propmodel
