// Deleting the children of an object (see ClearChildren.h).
#include "sgutils/tree/ClearChildren.h"

#include <optional>

#include "foundation/io/uout.h"
#include "sgutils/tree/ChildStrategy.h"
#include "sgutils/tree/ScopeShowHiddenHandlesOn.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"
#include "vcos/VxProperty.h"

namespace sgutils {

namespace {

// Whether `object` is one of the exempt objects or an ancestor of one.
bool holdsExempt(const COSInterface* object, const std::vector<COSInterfacePtr>& exempt) {
  for (const COSInterfacePtr& e : exempt)
    for (const COSInterface* o = e.get(); o; o = o->getOwnerObject())
      if (o == object) return true;
  return false;
}

bool serializable(const vxArray* children, std::size_t index) {
  matrix::unique_vxArray value;
  try {
    value.reset(vxGetProperty(children, index, "Serializable"));
  } catch (...) {
    return true;  // no such property: nothing says it is not saved
  }
  if (!value || vxIsEmpty(value.get())) return true;
  if (vxIsLogicalScalar(value.get())) return vxIsLogicalScalarTrue(value.get());
  if (vxIsChar(value.get())) return vxArrayToStdString(value.get()) != "off";
  return vxGetScalar(value.get()) != 0;
}

// With `includeHidden` an axes gives its children through its own method
// (which leaves out what belongs to the axes itself); otherwise every owner
// gives the visible "Children".
matrix::unique_vxArray readChildren(const COSInterfacePtr& owner, bool includeHidden) {
  matrix::unique_vxArray self(omCreateVCOSScalar(owner));
  static const COSID axes("vantel.graphics.axis.Axes");
  if (includeHidden && owner->getClass() && owner->getClass()->isSubclassOf(axes)) {
    vxArray* out[1] = {nullptr};
    const vxArray* in[] = {self.get()};
    if (omCallMethod(owner->getClass()->getID(), "getAllchildChildren", COSGetPublicClient(), 1, out, 1, in, true))
      return matrix::unique_vxArray(out[0]);
    return {};
  }
  return matrix::unique_vxArray(vxGetProperty(self.get(), 0, "Children"));
}

}  // namespace

void deleteChildren(const vxArray* children, const COSInterfacePtr& owner, const std::vector<COSInterfacePtr>& exempt,
                    bool includeHidden) {
  if (!children || vxIsEmpty(children) || !omIsVCOS(children)) return;
  std::vector<COSInterfacePtr> kept;
  for (std::size_t i = 0; i < vxGetNumberOfElements(children); ++i) {
    COSInterfacePtr child = omGetArrayElement(children, i);
    if (!child || child->isDestroyed()) continue;
    if (!serializable(children, i)) continue;
    if (!includeHidden && !ChildStrategy::isChildHandleVisible(child)) continue;
    if (holdsExempt(child.get(), exempt) || child == owner) continue;
    kept.push_back(std::move(child));
  }
  if (kept.empty()) return;
  matrix::unique_vxArray doomed(omCreateVCOSMatrix(1, kept.size(), "handle"));
  for (std::size_t i = 0; i < kept.size(); ++i) omSetArrayElement(doomed.get(), i, kept[i]);
  omSetClassOfHeterogeneousArray(doomed.get());
  const vxArray* in[] = {doomed.get()};
  bool performed = false;
  try {
    performed = omCallMethod("handle", "delete", COSGetPublicClient(), 0, nullptr, 1, in, false);
  } catch (...) {
  }
  if (!performed) services::io::uout << "Error in delete method\n";
}

void clearChildren(const COSInterfacePtr& owner, const std::vector<COSInterfacePtr>& exempt, bool includeHidden) {
  if (!owner || owner->isDestroyed()) return;
  matrix::unique_vxArray children;
  if (includeHidden) {
    ScopeShowHiddenHandlesOn showHidden;
    children = readChildren(owner, true);
  } else {
    children = readChildren(owner, false);
  }
  deleteChildren(children.get(), owner, exempt, includeHidden);
}

}  // namespace sgutils
