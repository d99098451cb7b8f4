// The ChildManager of the concrete containers, held by the container's
// block. Children widen to hidden children while the root's
// ShowHiddenHandles is on.
#pragma once

#include "sgclasses/SgclassesExport.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/tree/ChildListing.h"
#include "sgutils/tree/ChildManager.h"

namespace sgclasses {

class SGCLASSES_API ContainerChildren : public sgutils::ChildManager {
 public:
  explicit ContainerChildren(const SGReference* block) noexcept : block_(block) {}
  COSInterfacePtr getOwnerObject() const override { return COSInterfacePtr(block_->getCOSObject()); }
  void collectChildren(sgutils::ChildList& out) override;
  // How the Children of `instance` are chosen, for findobj's walk in place:
  // widened by the root for a concrete container (as collectChildren does),
  // none for the other concrete classes (they have no Children), else built.
  static sgutils::ChildListing listingOf(COSInterface* instance);

  using ChildManager::getChildList;
  using ChildManager::setChildList;

 private:
  const SGReference* block_;
};

}  // namespace sgclasses
