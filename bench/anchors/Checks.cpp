// The checks behind --check: each workload takes the path it claims to (sets
// by name store, flip the mode and notify once per change; rejected values
// keep the old one), the tree has its shape, the searches find the 10,000
// selected leaves, and deleting the root frees every node.
#include <cstdio>
#include <exception>
#include <functional>

#include "AnchorNode.h"
#include "TreeOps.h"
#include "sgdatatypes/ClientEnum.h"
#include "sgdatatypes/RGBAColor.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"
#include "vcos/VxProperty.h"

namespace {

using graphics::datatype::AutoManual;
using graphics::datatype::RGBAColor;
using sgbench::AnchorNodeData;

int passed = 0, failed = 0;

void check(bool ok, const char* what) {
  if (ok) {
    ++passed;
  } else {
    ++failed;
    std::fprintf(stderr, "sg check FAILED: %s\n", what);
  }
}

// True when `f` raises (the value is refused).
bool raises(const std::function<void()>& f) {
  try {
    f();
  } catch (const std::exception&) {
    return true;
  }
  return false;
}

matrix::unique_vxArray row(double r, double g, double b) {
  matrix::unique_vxArray a(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(a.get())[0] = r;
  vxGetPr(a.get())[1] = g;
  vxGetPr(a.get())[2] = b;
  return a;
}

void checkSetsByName() {
  COSInterfacePtr node = sgbench::newAnchorNode();
  AnchorNodeData& d = sgbench::nodeData(node.get());
  matrix::unique_vxArray h(omCreateVCOSScalar(node));
  COSPropInfo* color = node->getClass()->findPropertyExact(COSID("Color"));
  long long notified = 0;
  COSInterfacePtr listener =
      COSListener::createListener(COSListenerOp::fromFunction([&](COSInterface*, COSEventData*) { ++notified; }));
  node->addPropertyListener(COSPropertyEvent::PostSet, color, COSListener::toListener(listener));

  check(d.getColorMode() == AutoManual::Auto && d.getSelectedMode() == AutoManual::Auto, "new node in auto mode");
  vxSetProperty(h.get(), 0, "Color", row(1, 0, 0).get());
  check(d.getColor() == RGBAColor(1, 0, 0), "colour set by name is stored");
  check(d.getColorMode() == AutoManual::Manual, "colour set by name turns its mode manual");
  check(notified == 1, "one notification per colour change");
  vxSetProperty(h.get(), 0, "Color", row(0, 0, 1).get());
  check(notified == 2, "a second change notifies again");

  matrix::unique_vxArray on(vxCreateLogicalScalar(true));
  vxSetProperty(h.get(), 0, "Selected", on.get());
  check(d.getSelected() && d.getSelectedMode() == AutoManual::Manual, "bool set by name is stored, mode manual");
  matrix::unique_vxArray got(vxGetProperty(h.get(), 0, "Selected"));
  check(vxIsChar(got.get()) && vxArrayToStdString(got.get()) == "on", "bool get by name gives 'on'");
  matrix::unique_vxArray c(vxGetProperty(h.get(), 0, "Color"));
  check(vxGetNumberOfElements(c.get()) == 3 && vxGetPr(c.get())[2] == 1, "colour get by name gives the stored row");

  // Refused values keep the old one.
  matrix::unique_vxArray bad(vxCreateString("notacolour")), badMode(vxCreateString("sideways")),
      wrongType(vxCreateCellMatrix(1, 1)), value(vxCreateLogicalScalar(false));
  check(raises([&] { vxSetProperty(h.get(), 0, "Color", bad.get()); }) && d.getColor() == RGBAColor(0, 0, 1),
        "an invalid colour is refused");
  check(raises([&] { vxSetProperty(h.get(), 0, "ColorMode", badMode.get()); }) &&
            d.getColorMode() == AutoManual::Manual,
        "a mode out of range is refused");
  check(raises([&] { vxSetProperty(h.get(), 0, "Selected", wrongType.get()); }) && d.getSelected(),
        "a value of the wrong type is refused");
  check(raises([&] { vxSetProperty(h.get(), 0, "NoSuchProperty", value.get()); }), "an unknown name is refused");
  check(notified == 2, "refused sets do not notify");

  // The typed setters take the public path: mode manual, listeners told.
  vxSetProperty(h.get(), 0, "ColorMode", matrix::unique_vxArray(vxCreateString("auto")).get());
  d.setColor(RGBAColor(0, 1, 0), graphics::datatype::PublicClient);
  check(d.getColor() == RGBAColor(0, 1, 0) && d.getColorMode() == AutoManual::Manual && notified == 3,
        "the typed colour setter stores, turns the mode manual and notifies");
  d.setSelected(false, graphics::datatype::PublicClient);
  check(!d.getSelected(), "the typed bool setter stores");
  node->removePropertyListener(COSPropertyEvent::PostSet, color, COSListener::toListener(listener));
  node->deleteObject(COSGetPublicClient());
}

void checkTree() {
  const std::size_t live = vcos::internal::liveInstanceCount();
  COSInterfacePtr root = sgbench::buildTree();
  check(vcos::internal::liveInstanceCount() - live == std::size_t(sgbench::kObjects), "the tree has 100,101 objects");
  int containers = 0;
  bool leavesOk = true;
  for (COSInterface* c = root->getOldestChild(); c; c = c->getNewerSibling(), ++containers) {
    int leaves = 0;
    for (COSInterface* l = c->getOldestChild(); l; l = l->getNewerSibling()) ++leaves;
    leavesOk = leavesOk && leaves == sgbench::kLeaves && c->getOwnerObject() == root.get();
  }
  check(containers == sgbench::kContainers && leavesOk, "root, 100 containers, 1,000 leaves each");
  sgbench::markSelected(root.get());
  check(sgbench::findSelectedByName(root.get()) == 10000, "findobj by a text value finds the 10,000 selected leaves");
  check(sgbench::findSelectedTyped(root.get()) == 10000, "the typed walk finds them too");
  check(sgbench::nodeData(sgbench::childAt(sgbench::childAt(root.get(), 3), 20)).getSelected() &&
            !sgbench::nodeData(sgbench::childAt(sgbench::childAt(root.get(), 3), 21)).getSelected(),
        "every tenth leaf is selected");
  sgbench::destroyTree(root);
  check(vcos::internal::liveInstanceCount() == live, "deleting the root frees every node");
}

}  // namespace

int runChecks() {
  sgbench::anchorNodeClass();
  try {
    checkSetsByName();
    checkTree();
  } catch (const std::exception& e) {
    std::fprintf(stderr, "sg check raised: %s\n", e.what());
    ++failed;
  }
  std::fprintf(stderr, "sg checks: %d passed, %d failed\n", passed, failed);
  return failed ? 2 : 0;
}
