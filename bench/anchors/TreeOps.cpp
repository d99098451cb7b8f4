#include "TreeOps.h"

#include "AnchorNode.h"
#include "sgdatatypes/ClientEnum.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/Findobj.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgbench {

COSInterfacePtr buildTree(int containers, int leaves) {
  COSInterfacePtr root = newAnchorNode();
  for (int c = 0; c < containers; ++c) {
    COSInterfacePtr container = newAnchorNode();
    root->hookChild(container.get());
    for (int l = 0; l < leaves; ++l) {
      COSInterfacePtr leaf = newAnchorNode();
      container->hookChild(leaf.get());
    }
  }
  return root;
}

void destroyTree(COSInterfacePtr& root) {
  root->deleteObject(COSGetPublicClient());
  root.reset();
}

COSInterface* childAt(COSInterface* parent, int index) {
  COSInterface* c = parent->getOldestChild();
  while (c && index-- > 0) c = c->getNewerSibling();
  return c;
}

void markSelected(COSInterface* root) {
  for (COSInterface* c = root->getOldestChild(); c; c = c->getNewerSibling()) {
    int i = 0;
    for (COSInterface* leaf = c->getOldestChild(); leaf; leaf = leaf->getNewerSibling(), ++i)
      if (i % kSelectEvery == 0) nodeData(leaf).setSelected(true, graphics::datatype::PublicClient);
  }
}

std::size_t findSelectedByName(COSInterface* root) {
  // The anchors search the raw tree; the node has no Children of its own.
  const sgutils::DefaultFindobjClassInfo::FindAllScope rawTree;
  matrix::unique_vxArray start(omCreateVCOSScalar(COSInterfacePtr(root)));
  matrix::unique_vxArray name(vxCreateString("Selected")), value(vxCreateString("on"));
  const vxArray* args[] = {name.get(), value.get()};
  matrix::unique_vxArray found(vcos::findobj(start.get(), 2, args));
  return vxGetNumberOfElements(found.get());
}

namespace {
std::size_t countSelected(COSInterface* o) {
  std::size_t n = nodeData(o).getSelected() ? 1 : 0;
  for (COSInterface* c = o->getNewestChild(); c; c = c->getOlderSibling()) n += countSelected(c);
  return n;
}
}  // namespace

std::size_t findSelectedTyped(COSInterface* root) { return countSelected(root); }

}  // namespace sgbench
