// Graphics classes written the way a library above sgutils writes them, for
// the frame's tests: "sg2utils.TestPropertyDefinition", a concrete subclass
// of "vantel.graphics.Graphics" whose C++ block derives from SGHandle. It has
// a "Parent" property that hooks it into the object tree, a "Width" whose
// set refuses negative values, a "Tag", "BeingDeleted", and a journal of the
// stage hooks that ran. "CreateFcn" runs through the library's creation
// listener.
#pragma once

#include <string>
#include <vector>

#include "sgdatatypes/VCallback.h"
#include "sgutils/sgutils.h"
#include "vx/vx.h"

namespace sgtest {

using graphics::datatype::VCallback;

inline constexpr const char kTestClass[] = "sg2utils.TestPropertyDefinition";

struct Journal {
  std::vector<std::string> stages;  // "<Tag>:<hook>", in order
  bool failSetup = false;           // the next Setup raises
  bool failCreationComplete = false;
  int resets = 0;                   // doReset calls
  int defaultsApplied = 0;
};
Journal& journal();

class TestGraphicsObject : public SGHandle {
 public:
  void Setup(COSInterfacePtr object) override;
  void SetupFailed(COSInterfacePtr object) override;
  void CreationComplete(COSInterfacePtr object) override;
  void ApplyingDefaults(COSInterfacePtr object) override;
  void DefaultsApplied(COSInterfacePtr object, bool fromReset) override;
  unsigned stageHooksThatAct() const noexcept override { return kAllHooksAct; }
  bool resetAllowed(COSInterfacePtr) override { return allowReset; }
  void doReset(COSInterfacePtr object) override;

  double width = 1.0;
  std::string tag;
  VCallback createFcn;
  bool allowReset = true;

 private:
  void record(const char* hook);
};

// Starts the library (once) and registers the test classes (once).
void registerTestClasses();

// Construction as the language does it: name-value inputs as arrays; the
// result is the new object. Inputs are borrowed.
COSInterfacePtr construct(std::initializer_list<const vxArray*> inputs);
TestGraphicsObject* blockOf(const COSInterfacePtr& object);

// Small owning helpers for test inputs.
using Arr = matrix::unique_vxArray;
Arr str(const char* text);
Arr num(double value);
// A callback value (a function handle array) that runs `fn`.
Arr callback(VCallback::Function fn);
Arr obj(const COSInterfacePtr& object);

// Property access through the language's path.
Arr getProp(const COSInterfacePtr& object, const char* name);
void setProp(const COSInterfacePtr& object, const char* name, const vxArray* value);

}  // namespace sgtest
