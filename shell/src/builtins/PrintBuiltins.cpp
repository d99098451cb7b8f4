// print, exportgraphics and saveas: a figure written as a picture, its
// format chosen by the file's extension. Each figure's exports go through
// its one view, so an export redraws only what changed since the last.
#include "builtins/PrintBuiltins.h"

#include <cstdlib>
#include <string>

#include "builtins/BuiltinSupport.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgrender/FigureViews.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

constexpr double kScreenDpi = 96;

// The one figure of an argument: an object, or a figure's number.
COSInterfacePtr figureOf(const vxArray* value, const char* what) {
  if (vxGetNumberOfElements(value) != 1) throw Error("VANTEL:sgsh:NotGraphicsObject", what);
  if (vxIsObject(value)) return omGetArrayElement(value, 0);
  if (vxIsDouble(value) && !vxIsComplex(value))
    return COSInterfacePtr(graphics::datatype::HandleNumberTable::entryFor(vxGetPr(value)[0]));
  throw Error("VANTEL:sgsh:NotGraphicsObject", what);
}

std::string fileOf(const vxArray* value, const char* what) {
  if (!ops::isText(value)) throw Error("VANTEL:sgsh:print:BadOption", what);
  return ops::textOf(value);
}

double scaleOfDpi(const vxArray* value) {
  if (!vxIsDouble(value) || vxGetNumberOfElements(value) != 1) throw Error("VANTEL:sgsh:print:BadOption");
  return vxGetScalar(value) / kScreenDpi;
}

// print(f, file) and print(f, file, '-r150'): -r gives dots per inch.
void bPrint(Interpreter&, int, Out&, Args in) {
  checkArgs("print", in, 2, 3);
  double scale = 1;
  if (in.size() == 3) {
    const std::string opt = ops::isText(in[2].get()) ? ops::textOf(in[2].get()) : "";
    char* end = nullptr;
    const double dpi = opt.size() > 2 && opt.compare(0, 2, "-r") == 0 ? std::strtod(opt.c_str() + 2, &end) : 0;
    if (!end || *end != '\0') throw Error("VANTEL:sgsh:print:BadOption");
    scale = dpi / kScreenDpi;
  }
  sgrender::FigureViews::exportFigure(figureOf(in[0].get(), "print"), fileOf(in[1].get(), "print"), scale);
}

// exportgraphics(f, file) and exportgraphics(f, file, 'Resolution', dpi).
void bExportgraphics(Interpreter&, int, Out&, Args in) {
  checkArgs("exportgraphics", in, 2, 4);
  double scale = 1;
  if (in.size() == 3) throw Error("VANTEL:sgsh:print:BadOption");
  if (in.size() == 4) {
    if (!ops::isText(in[2].get()) || ops::textOf(in[2].get()) != "Resolution") throw Error("VANTEL:sgsh:print:BadOption");
    scale = scaleOfDpi(in[3].get());
  }
  sgrender::FigureViews::exportFigure(figureOf(in[0].get(), "exportgraphics"),
                                         fileOf(in[1].get(), "exportgraphics"), scale);
}

// saveas(f, file): the figure at its own size.
void bSaveas(Interpreter&, int, Out&, Args in) {
  checkArgs("saveas", in, 2, 2);
  sgrender::FigureViews::exportFigure(figureOf(in[0].get(), "saveas"), fileOf(in[1].get(), "saveas"));
}

}  // namespace

void registerPrintBuiltins() {
  BuiltinRegistry& r = BuiltinRegistry::instance();
  r.add<bPrint>("print", "print(f, 'out.png')\nprint(f, 'out.pdf', '-r192')",
                "Writes the figure as a PNG, SVG or PDF picture, by the file's extension, at its Position size; "
                "-r gives dots per inch (96 is the figure's own size).");
  r.add<bExportgraphics>("exportgraphics", "exportgraphics(f, 'out.svg')\nexportgraphics(f, 'out.png', 'Resolution', 192)",
                         "Writes the figure as a PNG, SVG or PDF picture, by the file's extension; "
                         "'Resolution' gives dots per inch.");
  r.add<bSaveas>("saveas", "saveas(f, 'out.pdf')",
                 "Writes the figure as a PNG, SVG or PDF picture at its own size, by the file's extension.");
}

}  // namespace sgsh::builtins
