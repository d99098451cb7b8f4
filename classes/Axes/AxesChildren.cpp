// The method "getAllchildChildren" of an axes: every child, hidden ones
// included, except the axes' own title and labels. Clearing an axes with its
// hidden children (clo with reset) reads its children through it, so those
// texts, which the axes makes once and keeps for its whole life, survive.
#include "sgutils/objects/Axes.gen.h"

#include <vector>

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/tree/ScopeShowHiddenHandlesOn.h"
#include "vcos/COSClass.h"
#include "vcos/COSMethodBase.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vx.h"
#include "vcos/VxProperty.h"

namespace sgclasses {
namespace {

class AxesAllChildrenMI final : public COSMethodBase {
 public:
  explicit AxesAllChildrenMI(COSID classId)
      : COSMethodBase(classId, COSID("getAllchildChildren"), PublicAccess,
                      "All children of the axes, hidden ones included, without its title and labels.") {}

  void invoke(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    if (nlhs > 1) matrix::detail::error_maxlhs();
    if (nrhs < 1) matrix::detail::error_minrhs();
    if (nrhs > 1) matrix::detail::error_maxrhs();
    const vxArray* self = prhs[0].asPointer<const vxArray>();
    const COSInterfacePtr axes = self && omIsVCOS(self) ? omGetLiveArrayElement(self, 0) : COSInterfacePtr();
    if (!axes) {
      plhs[0] = COSValue(omCreateVCOSEmpty("vantel.graphics.Graphics"));
      return;
    }
    matrix::unique_vxArray children;
    {
      sgutils::ScopeShowHiddenHandlesOn showHidden;
      children.reset(vxGetProperty(self, 0, "Children"));
    }
    const Axes* block = sgutils::blockOf<Axes>(axes.get(), Axes::classID());
    std::vector<COSInterfacePtr> kept;
    if (children && omIsVCOS(children.get()))
      for (std::size_t i = 0, n = vxGetNumberOfElements(children.get()); i < n; ++i)
        if (COSInterfacePtr child = omGetArrayElement(children.get(), i); child && !block->isOwnText(child.get()))
          kept.push_back(std::move(child));
    if (kept.empty()) {
      plhs[0] = COSValue(omCreateVCOSEmpty("vantel.graphics.Graphics"));
      return;
    }
    matrix::unique_vxArray result(omCreateVCOSMatrix(kept.size(), 1, "handle"));
    for (std::size_t i = 0; i < kept.size(); ++i) omSetArrayElement(result.get(), i, kept[i]);
    omSetClassOfHeterogeneousArray(result.get());
    plhs[0] = COSValue(result.release());
  }
};

}  // namespace

void Axes::addChildrenMethod(COSClass* cls, COSID classId) { cls->addMethod(new AxesAllChildrenMI(classId)); }

}  // namespace sgclasses
