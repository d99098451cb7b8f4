// What the views behind print, exportgraphics and saveas did: the counts of
// a figure's last export (exportstats) and how many views exist
// (exportviews), so that a script sees an export redraw only what changed.
#include "builtins/ExportViewBuiltins.h"

#include "builtins/BuiltinSupport.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgrender/FigureViews.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace sgsh::builtins {
namespace {

// The one object of an argument: an object, or a figure's number.
COSInterfacePtr objectOf(const vxArray* value) {
  if (vxGetNumberOfElements(value) == 1) {
    if (vxIsObject(value)) return omGetArrayElement(value, 0);
    if (vxIsDouble(value) && !vxIsComplex(value))
      return COSInterfacePtr(graphics::datatype::HandleNumberTable::entryFor(vxGetPr(value)[0]));
  }
  throw Error("VANTEL:sgsh:NotGraphicsObject", "exportstats");
}

Value count(std::size_t n) { return Value(vxCreateDoubleScalar(double(n))); }

// s = exportstats(f): Drawn and Reused (lines, patches and texts drawn anew
// and replayed), then Axes, Lines, Patches, Texts and Invalid of the last
// export of f.
void bExportstats(Interpreter&, int, Out& out, Args in) {
  checkArgs("exportstats", in, 1, 1);
  const COSInterfacePtr figure = objectOf(in[0].get());
  if (figure && (figure->isDestroyed() || figure->isBeingDestroyed())) throw Error("VANTEL:sg:DeletedObject");
  const sgrender::FigureView* view = sgrender::FigureViews::find(figure.get());
  if (!view) throw Error("VANTEL:sgsh:exportstats:NotExported");
  const sgrender::RenderStats& s = view->lastStats();
  const char* names[] = {"Drawn", "Reused", "Axes", "Lines", "Patches", "Texts", "Invalid"};
  Value result(vxCreateStructMatrix(1, 1, 7, names));
  const std::size_t values[] = {s.lines + s.patches + s.texts, s.reused, s.axes, s.lines, s.patches, s.texts,
                                s.skippedInvalid};
  for (int i = 0; i < 7; ++i) vxSetFieldByNumber(result.mut(), 0, i, count(values[i]).release());
  out.push_back(std::move(result));
}

// n = exportviews(): the figures that have an export view.
void bExportviews(Interpreter&, int, Out& out, Args in) {
  checkArgs("exportviews", in, 0, 0);
  out.push_back(count(sgrender::FigureViews::count()));
}

}  // namespace

void registerExportViewBuiltins() {
  BuiltinRegistry& r = BuiltinRegistry::instance();
  r.add<bExportstats>("exportstats", "s = exportstats(f)",
                      "What the last print, exportgraphics or saveas of figure f drew: Drawn (lines, patches "
                      "and texts drawn anew), Reused (replayed as the export before drew them), and Axes, "
                      "Lines, Patches, Texts and Invalid (lines whose data lengths differ). A PNG export "
                      "redraws only what changed since the figure's last PNG export; SVG and PDF draw "
                      "everything.");
  r.add<bExportviews>("exportviews", "n = exportviews()",
                      "The number of figures whose exports are kept as views: one per figure exported, "
                      "dropped when the figure is deleted.");
}

}  // namespace sgsh::builtins
