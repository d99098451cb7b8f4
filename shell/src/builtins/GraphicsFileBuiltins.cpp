// savefig and openfig: a figure with its tree to a file and back; and the
// writer and reader that save and load use for values holding graphics
// objects (sgutils/persistence/GraphicsFile.h).
#include "builtins/GraphicsFileBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "builtins/SaveLoadHooks.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

// The name of the one value a figure file holds.
constexpr char kFigureEntry[] = "figure";

// A loaded figure that tops a saved tree is a new figure of the root.
sgutils::GraphicsLoadOptions loadOptions(const vxReadOptions& read) {
  sgutils::GraphicsLoadOptions options;
  options.makeFunctionHandle = read.makeFunctionHandle;
  options.makeCapturingFunctionHandle = read.makeCapturingFunctionHandle;
  options.parentOfTopLevel = [](const COSInterfacePtr& object) {
    return sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass}) ? sgclasses::root() : COSInterfacePtr();
  };
  return options;
}

// savefig(f, file): the figure and everything below it.
void bSavefig(Interpreter&, int, Out&, Args in) {
  checkArgs("savefig", in, 2, 2);
  const vxArray* figure = in[0].get();
  if (!vxIsObject(figure) || vxGetNumberOfElements(figure) != 1)
    throw Error("VANTEL:sgsh:savefig:NotFigure");
  const COSInterfacePtr object = omGetArrayElement(figure, 0);
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) throw Error("VANTEL:sg:DeletedObject");
  if (!sgclasses::isOfClass(object.get(), {sgclasses::kFigureClass})) throw Error("VANTEL:sgsh:savefig:NotFigure");
  const std::pair<std::string, const vxArray*> values[] = {{kFigureEntry, figure}};
  sgutils::GraphicsFile::save(textArg("savefig", in[1]), values);
}

// f = openfig(file): the saved figure, made anew under the root.
void bOpenfig(Interpreter&, int, Out& out, Args in) {
  checkArgs("openfig", in, 1, 1);
  std::vector<vxNamedValue> values =
      sgutils::GraphicsFile::load(textArg("openfig", in[0]), loadOptions(handleReadOptions()));
  for (vxNamedValue& v : values)
    if (v.name == kFigureEntry && vxIsObject(v.value.get())) {
      out.push_back(Value(v.value.release()));
      return;
    }
  // Whatever else the file made goes with the values; no figure is left
  // behind that nobody holds.
  for (vxNamedValue& v : values)
    if (vxIsObject(v.value.get()))
      for (std::size_t i = 0; i < vxGetNumberOfElements(v.value.get()); ++i)
        if (COSInterfacePtr o = omGetLiveArrayElement(v.value.get(), i)) o->deleteObject(COSGetPublicClient());
  throw Error("VANTEL:sgsh:openfig:NoFigure");
}

}  // namespace

void registerGraphicsFileBuiltins() {
  SaveLoadHooks& hooks = SaveLoadHooks::instance();
  hooks.holdsObjects = &sgutils::GraphicsFile::holdsObjects;
  hooks.save = [](const std::string& path, std::span<const std::pair<std::string, const vxArray*>> values) {
    sgutils::GraphicsFile::save(path, values);
  };
  hooks.load = [](const std::string& path, const vxReadOptions& read) {
    return sgutils::GraphicsFile::load(path, loadOptions(read));
  };
  BuiltinRegistry& r = BuiltinRegistry::instance();
  r.add<bSavefig>("savefig", "savefig(f, file)",
                  "Saves the figure f with all its objects to file: their properties and modes, stored "
                  "defaults, children in order, callbacks and user data. A failed save leaves an existing "
                  "file unchanged.");
  r.add<bOpenfig>("openfig", "f = openfig(file)",
                  "Opens a figure saved by savefig as a new figure. A damaged file makes no objects and "
                  "raises an error.");
}

}  // namespace sgsh::builtins
