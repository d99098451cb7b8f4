// copyobj: copies graphics objects with their subtrees under new parents,
// each parent's share as one transaction.
#include "builtins/CopyBuiltins.h"

#include <vector>

#include "builtins/BuiltinSupport.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgutils/copy/CopyContext.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

// The objects of an argument, deleted ones included (the copy reports
// them): an object array, or numbers of graphics objects. An empty value
// gives none.
std::vector<COSInterfacePtr> objectsOf(const vxArray* value, const char* what) {
  std::vector<COSInterfacePtr> out;
  const std::size_t n = vxGetNumberOfElements(value);
  out.reserve(n);
  if (vxIsObject(value)) {
    for (std::size_t i = 0; i < n; ++i) out.push_back(omGetArrayElement(value, i));
  } else if (vxIsDouble(value) && !vxIsComplex(value)) {
    for (std::size_t i = 0; i < n; ++i)
      out.emplace_back(graphics::datatype::HandleNumberTable::entryFor(vxGetPr(value)[i]));
  } else if (n != 0) {
    throw Error("VANTEL:sgsh:NotGraphicsObject", what);
  }
  return out;
}

// copyobj(h, parent) and copyobj(h, parent, 'legacy'): h and parent may each
// hold several objects (equal numbers, or one of them a single object).
// 'legacy' also copies the callbacks and ApplicationData.
void bCopyobj(Interpreter&, int, Out& out, Args in) {
  checkArgs("copyobj", in, 2, 3);
  bool legacy = false;
  if (in.size() == 3) {
    if (!ops::isText(in[2].get()) || ops::textOf(in[2].get()) != "legacy")
      throw Error("VANTEL:sgsh:copyobj:BadOption", ops::isText(in[2].get()) ? ops::textOf(in[2].get()) : "");
    legacy = true;
  }
  const std::vector<COSInterfacePtr> sources = objectsOf(in[0].get(), "copyobj");
  std::vector<COSInterfacePtr> parents = objectsOf(in[1].get(), "copyobj");
  for (const COSInterfacePtr& parent : parents)
    if (!parent) throw Error("VANTEL:copyobj:InvalidParentHandle");
  out.push_back(Value(sgutils::CopyContext::doCopyObjects(sources, parents, legacy)));
}

}  // namespace

void registerCopyBuiltins() {
  BuiltinRegistry::instance().add<bCopyobj>(
      "copyobj", "c = copyobj(h, parent)\nc = copyobj(h, parent, 'legacy')",
      "Copies objects with their descendants under the parent or parents, as one transaction; "
      "'legacy' copies callbacks too.");
}

}  // namespace sgsh::builtins
