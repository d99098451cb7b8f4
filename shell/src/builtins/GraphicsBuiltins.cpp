// Built-ins of the graphics objects: making them (figure, axes, line, text,
// patch, group, contextmenu, plot), the current ones (groot, gcf, gca,
// hold), clearing (cla, clf, close), the tree (findobj, findall, allchild,
// ancestor, isgraphics), drawnow, and get/set of default names.
#include "builtins/GraphicsBuiltins.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "builtins/BuiltinSupport.h"
#include "sgclasses/AxesTexts.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/FigureNumbers.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Plotting.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/DefaultPropString.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "sgutils/tree/ScopeShowHiddenHandlesOn.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"

namespace sgsh::builtins {
namespace {

using sgclasses::isOfClass;

// A graphics object alive now, or null.
COSInterfacePtr liveGraphics(const vxArray* value) {
  if (!value || !vxIsObject(value) || vxGetNumberOfElements(value) != 1) return {};
  COSInterfacePtr object = omGetArrayElement(value, 0);
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return {};
  return object->getClass()->isSubclassOf(COSID("vantel.graphics.Graphics")) ? object : COSInterfacePtr();
}

// One live graphics object given to `fn`; a deleted one raises
// "VANTEL:sg:DeletedObject", anything else "VANTEL:sgsh:NotGraphicsObject".
COSInterfacePtr objectArg(const char* fn, const Value& v) {
  if (vxIsObject(v.get()) && vxGetNumberOfElements(v.get()) == 1) {
    COSInterfacePtr object = omGetArrayElement(v.get(), 0);
    if (object && (object->isDestroyed() || object->isBeingDestroyed())) throw Error("VANTEL:sg:DeletedObject");
  }
  COSInterfacePtr object = liveGraphics(v.get());
  if (!object) throw Error("VANTEL:sgsh:NotGraphicsObject", fn);
  return object;
}

// Whether the argument is a graphics object (live or not): a leading parent.
bool isObjectValue(const Value& v) { return vxIsObject(v.get()); }

Value objectValue(const COSInterfacePtr& object) {
  return object ? Value(omCreateVCOSScalar(object)) : Value::emptyDouble();
}

std::vector<const vxArray*> rawPairs(Args in, const char* fn) {
  if (in.size() % 2 != 0) throw Error("VANTEL:sgsh:NameValuePairs", fn);
  std::vector<const vxArray*> pairs;
  for (const Value& v : in) pairs.push_back(v.get());
  return pairs;
}

// f(parent, name, value, ...) or f(name, value, ...) with the parent
// `fallback` gives.
COSInterfacePtr makeWithParent(const char* fn, const char* className, Args in, COSInterfacePtr (*fallback)()) {
  COSInterfacePtr parent;
  if (!in.empty() && isObjectValue(in[0])) {
    parent = objectArg(fn, in[0]);
    in = in.subspan(1);
  }
  const std::vector<const vxArray*> pairs = rawPairs(in, fn);
  if (!parent) {
    // A Parent among the pairs wins over the current object.
    bool named = false;
    for (std::size_t i = 0; i < pairs.size(); i += 2)
      if (ops::isText(pairs[i]) && ops::textOf(pairs[i]) == "Parent") named = true;
    if (!named) parent = fallback();
  }
  COSInterfacePtr made = sgclasses::create(className, parent, pairs);
  return made;
}

// A figure number: a real positive integer scalar.
double figureNumber(const char* fn, const Value& v) {
  const vxArray* a = v.get();
  if (!vxIsDouble(a) || vxIsComplex(a) || vxGetNumberOfElements(a) != 1) throw Error("VANTEL:sgsh:NotFigure", fn);
  const double n = vxGetPr(a)[0];
  if (!(n >= 1) || n != std::floor(n) || n > 9007199254740992.0) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", n);
    throw Error("VANTEL:sgsh:BadFigureNumber", text);
  }
  return n;
}

COSInterfacePtr currentAxesMade() { return sgclasses::currentAxes(true); }
COSInterfacePtr currentFigureMade() { return sgclasses::currentFigure(true); }
COSInterfacePtr rootObject() { return sgclasses::root(); }

template <const char* ClassName, COSInterfacePtr (*Fallback)()>
void bMake(Interpreter&, int, Out& out, Args in) {
  const char* fn = std::strrchr(ClassName, '.') + 1;
  out.push_back(objectValue(makeWithParent(fn, ClassName, in, Fallback)));
}

BuiltinFn& plainSet();

// Sets the pairs on `object` as set(object, pairs...) does: all or nothing.
void setPairs(Interpreter& interp, const COSInterfacePtr& object, Args pairs) {
  if (pairs.empty()) return;
  std::vector<Value> args{objectValue(object)};
  args.insert(args.end(), pairs.begin(), pairs.end());
  Out ignored;
  plainSet()(interp, 0, ignored, Args(args));
}

// figure, figure(pairs), figure(f) (makes f current), figure(n) (selects
// figure number n, or makes it), each of the last two with pairs too.
void bFigure(Interpreter& interp, int, Out& out, Args in) {
  if (!in.empty() && isObjectValue(in[0])) {
    COSInterfacePtr figure = objectArg("figure", in[0]);
    if (!isOfClass(figure.get(), {sgclasses::kFigureClass})) throw Error("VANTEL:sgsh:NotFigure", "figure");
    rawPairs(in.subspan(1), "figure");
    setPairs(interp, figure, in.subspan(1));
    sgclasses::makeCurrent(figure);
    out.push_back(objectValue(figure));
    return;
  }
  if (!in.empty() && !ops::isText(in[0].get())) {
    const double number = figureNumber("figure", in[0]);
    const std::vector<const vxArray*> pairs = rawPairs(in.subspan(1), "figure");
    if (COSInterfacePtr existing = sgclasses::findFigure(number)) {
      setPairs(interp, existing, in.subspan(1));
      out.push_back(objectValue(sgclasses::figureNumbered(number)));
    } else {
      out.push_back(objectValue(sgclasses::figureNumbered(number, pairs)));
    }
    return;
  }
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root(), rawPairs(in, "figure"));
  out.push_back(objectValue(figure));
}

void bAxes(Interpreter&, int, Out& out, Args in) {
  if (in.size() == 1 && isObjectValue(in[0])) {
    COSInterfacePtr target = objectArg("axes", in[0]);
    if (isOfClass(target.get(), {sgclasses::kAxesClass})) {
      sgclasses::makeCurrent(target);
      out.push_back(objectValue(target));
      return;
    }
  }
  COSInterfacePtr axes = makeWithParent("axes", sgclasses::kAxesClass, in, &currentFigureMade);
  sgclasses::makeCurrent(axes);
  out.push_back(objectValue(axes));
}

constexpr char kLine[] = "vantel.graphics.primitive.Line";
constexpr char kText[] = "vantel.graphics.primitive.Text";
constexpr char kPatch[] = "vantel.graphics.primitive.Patch";
constexpr char kGroup[] = "vantel.graphics.primitive.Group";
constexpr char kContextMenu[] = "vantel.ui.container.ContextMenu";

// plot(y), plot(x, y), plot(ax, ...), any number of such data groups, each
// with an optional line specification, then name-value pairs for every line:
// plot(y1, 'r', x2, y2, 'LineWidth', 2). A text after a group's data is its
// line specification when it reads as one, or when an odd number of
// arguments is left (it then must read as one).
void bPlot(Interpreter&, int, Out& out, Args in) {
  COSInterfacePtr axes;
  if (!in.empty() && isObjectValue(in[0])) {
    axes = objectArg("plot", in[0]);
    in = in.subspan(1);
  }
  std::vector<sgclasses::PlotSeries> series;
  std::size_t i = 0;
  while (i < in.size() && !ops::isText(in[i].get())) {
    sgclasses::PlotSeries one;
    if (i + 1 < in.size() && !ops::isText(in[i + 1].get())) {
      one.x = in[i].get();
      one.y = in[i + 1].get();
      i += 2;
    } else {
      one.y = in[i].get();
      i += 1;
    }
    if (i < in.size() && ops::isText(in[i].get())) {
      const std::string text = ops::textOf(in[i].get());
      std::optional<sgclasses::LineSpec> parsed = sgclasses::parseLineSpec(text);
      if (parsed) {
        one.spec = *parsed;
        ++i;
      } else if ((in.size() - i) % 2 == 1) {
        throw Error("VANTEL:sgsh:BadLineSpec", text);
      }
    }
    series.push_back(std::move(one));
  }
  if (series.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "plot");
  const std::vector<const vxArray*> pairs = rawPairs(in.subspan(i), "plot");
  if (!axes) axes = sgclasses::currentAxes(true);
  const std::vector<COSInterfacePtr> lines = sgclasses::plot(axes, series, pairs);
  matrix::unique_vxArray result(omCreateVCOSMatrix(lines.size(), 1, sgclasses::kLineClass));
  for (std::size_t k = 0; k < lines.size(); ++k) omSetArrayElement(result.get(), k, lines[k]);
  out.push_back(Value(result.release()));
}

void bGroot(Interpreter&, int, Out& out, Args in) {
  checkArgs("groot", in, 0, 0);
  out.push_back(objectValue(sgclasses::root()));
}

void bGcf(Interpreter&, int, Out& out, Args in) {
  checkArgs("gcf", in, 0, 0);
  out.push_back(objectValue(sgclasses::currentFigure(true)));
}

void bGca(Interpreter&, int, Out& out, Args in) {
  checkArgs("gca", in, 0, 0);
  out.push_back(objectValue(sgclasses::currentAxes(true)));
}

// hold on, hold off, hold (toggles), hold(ax, 'on').
void bHold(Interpreter&, int, Out&, Args in) {
  checkArgs("hold", in, 0, 2);
  COSInterfacePtr axes;
  if (!in.empty() && isObjectValue(in[0])) {
    axes = objectArg("hold", in[0]);
    in = in.subspan(1);
  }
  if (!axes) axes = sgclasses::currentAxes(true);
  if (in.empty()) {
    sgclasses::setHold(axes, !sgclasses::isHoldOn(axes));
    return;
  }
  const std::string word = textArg("hold", in[0]);
  if (word == "on")
    sgclasses::setHold(axes, true);
  else if (word == "off")
    sgclasses::setHold(axes, false);
  else
    throw Error("VANTEL:sgsh:BadHoldWord", word);
}

// Deletes the visible children of `owner` except those in `keep`.
void deleteChildren(const COSInterfacePtr& owner, std::initializer_list<const COSInterface*> keep) {
  std::vector<COSInterfacePtr> doomed;
  for (COSInterface* child = owner->getNewestChild(); child; child = child->getOlderSibling())
    if (std::find(keep.begin(), keep.end(), child) == keep.end() && !child->isBeingDestroyed())
      doomed.emplace_back(child);
  for (const COSInterfacePtr& child : doomed)
    if (!child->isDestroyed()) child->deleteObject(COSGetPublicClient());
}

void bCla(Interpreter&, int, Out&, Args in) {
  checkArgs("cla", in, 0, 1);
  COSInterfacePtr axes = in.empty() ? sgclasses::currentAxes(false) : objectArg("cla", in[0]);
  if (!axes) return;
  matrix::unique_vxArray self(omCreateVCOSScalar(axes));
  matrix::unique_vxArray title(vxGetProperty(self.get(), 0, "Title"));
  COSInterfacePtr keep = liveGraphics(title.get());
  // The labels stay with the title (read without making any).
  const auto own = sgclasses::axesOwnTexts(axes.get());
  deleteChildren(axes, {keep.get(), own[1].get(), own[2].get()});
}

void bClf(Interpreter&, int, Out&, Args in) {
  checkArgs("clf", in, 0, 1);
  COSInterfacePtr figure = in.empty() ? sgclasses::currentFigure(false) : objectArg("clf", in[0]);
  if (figure) deleteChildren(figure, {});
}

// close, close(f) (figures, or their numbers), close all.
void bClose(Interpreter&, int, Out&, Args in) {
  checkArgs("close", in, 0, 1);
  if (!in.empty() && ops::isText(in[0].get())) {
    if (ops::textOf(in[0].get()) != "all") throw Error("VANTEL:sgsh:BadCloseWord", ops::textOf(in[0].get()));
    deleteChildren(sgclasses::root(), {});
    return;
  }
  if (in.empty()) {
    if (COSInterfacePtr figure = sgclasses::currentFigure(false)) figure->deleteObject(COSGetPublicClient());
    return;
  }
  // Every element is checked before any figure goes.
  const vxArray* value = in[0].get();
  std::vector<COSInterfacePtr> doomed;
  for (std::size_t k = 0; k < vxGetNumberOfElements(value); ++k) {
    COSInterfacePtr figure;
    if (vxIsObject(value)) {
      figure = omGetArrayElement(value, k);
      if (!figure || figure->isDestroyed() || figure->isBeingDestroyed()) throw Error("VANTEL:sg:DeletedObject");
    } else if (vxIsDouble(value) && !vxIsComplex(value)) {
      figure = sgclasses::findFigure(vxGetPr(value)[k]);
      if (!figure) throw Error("VANTEL:sgsh:NotFigure", "close");
    }
    if (!figure || !isOfClass(figure.get(), {sgclasses::kFigureClass})) throw Error("VANTEL:sgsh:NotFigure", "close");
    doomed.push_back(std::move(figure));
  }
  for (const COSInterfacePtr& figure : doomed)
    if (!figure->isDestroyed() && !figure->isBeingDestroyed()) figure->deleteObject(COSGetPublicClient());
}

// findobj(...) and findall(...) without an object search from the root;
// with objects they call the objects' findobj.
void findFrom(const char* fn, Out& out, Args in) {
  std::vector<const vxArray*> inputs;
  Value root;
  if (in.empty() || !isObjectValue(in[0])) {
    root = objectValue(sgclasses::root());
    inputs.push_back(root.get());
  }
  for (const Value& v : in) inputs.push_back(v.get());
  vxArray* result = nullptr;
  if (!omCallMethod(COSID("vantel.graphics.Graphics"), "findobj", COSGetPublicClient(), 1, &result,
                    static_cast<int>(inputs.size()), inputs.data(), true))
    throw Error("VANTEL:sgsh:NoSuchMethod", fn);
  out.push_back(Value(result));
}

void bFindobj(Interpreter&, int, Out& out, Args in) { findFrom("findobj", out, in); }

void bFindall(Interpreter&, int, Out& out, Args in) {
  struct FindAll {
    FindAll() { sgutils::DefaultFindobjClassInfo::setFindAllObjects(true); }
    ~FindAll() { sgutils::DefaultFindobjClassInfo::setFindAllObjects(false); }
  } all;
  findFrom("findall", out, in);
}

void bAllchild(Interpreter&, int, Out& out, Args in) {
  checkArgs("allchild", in, 1, 1);
  COSInterfacePtr object = objectArg("allchild", in[0]);
  sgutils::ScopeShowHiddenHandlesOn showAll;
  matrix::unique_vxArray self(omCreateVCOSScalar(object));
  out.push_back(Value(vxGetProperty(self.get(), 0, "Children")));
}

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// ancestor(h, type): h or its nearest ancestor whose Type (or class name)
// is `type`; empty when there is none.
void bAncestor(Interpreter&, int, Out& out, Args in) {
  checkArgs("ancestor", in, 2, 2);
  COSInterfacePtr object = objectArg("ancestor", in[0]);
  const std::string wanted = lower(textArg("ancestor", in[1]));
  for (COSInterface* up = object.get(); up; up = up->getOwnerObject()) {
    matrix::unique_vxArray self(omCreateVCOSScalar(COSInterfacePtr(up)));
    matrix::unique_vxArray type(vxGetProperty(self.get(), 0, "Type"));
    if (lower(vxArrayToStdString(type.get())) == wanted || lower(up->getClass()->getName()) == wanted) {
      out.push_back(objectValue(COSInterfacePtr(up)));
      return;
    }
  }
  out.push_back(Value::emptyDouble());
}

// isgraphics(h): true for each element that is a live graphics object (or
// the number of one).
void bIsgraphics(Interpreter&, int, Out& out, Args in) {
  checkArgs("isgraphics", in, 1, 1);
  const vxArray* value = in[0].get();
  const std::size_t n = vxGetNumberOfElements(value);
  vxArray* result = vxCreateLogicalMatrix(vxGetM(value), vxGetN(value));
  auto* flags = static_cast<bool*>(vxGetData(result));
  for (std::size_t i = 0; i < n; ++i) {
    COSInterfacePtr object;
    if (vxIsObject(value))
      object = omGetArrayElement(value, i);
    else if (vxIsDouble(value) && !vxIsComplex(value))
      object = COSInterfacePtr(graphics::datatype::HandleNumberTable::entryFor(vxGetPr(value)[i]));
    flags[i] = object && !object->isDestroyed() && !object->isBeingDestroyed() &&
               object->getClass()->isSubclassOf(COSID("vantel.graphics.Graphics"));
  }
  out.push_back(Value(result));
}

void bDrawnow(Interpreter&, int, Out&, Args in) {
  checkArgs("drawnow", in, 0, 0);
  sgclasses::drawnow();
}

// A value that the object's set reads as a word: "default", "factory",
// "remove", or one of them escaped by a backslash.
bool isWordValue(const vxArray* value) {
  if (!value || !ops::isText(value) || (vxIsChar(value) && vxGetM(value) != 1)) return false;
  const std::string text = ops::textOf(value);
  const std::string_view word = text.starts_with('\\') ? std::string_view(text).substr(1) : std::string_view(text);
  return word == "default" || word == "factory" || word == "remove";
}

// "default...", "Default..." and the factory names, "default" and "factory"
// alone included.
bool isDefaultName(const vxArray* name) {
  if (!ops::isText(name)) return false;
  const std::string text = ops::textOf(name);
  return sgutils::DefaultPropString::isDefaultProp(text) || sgutils::DefaultPropString::isFactoryProp(text);
}

BuiltinFn& plainGet() {
  static BuiltinFn fn = nullptr;
  return fn;
}
BuiltinFn& plainSet() {
  static BuiltinFn fn = nullptr;
  return fn;
}

// get(h, 'defaultLineLineWidth') on a graphics object reads its default
// store, get(h, 'factory...') the factory values; everything else is the
// ordinary get. A whole store that does not exist gives no output.
void bGet(Interpreter& interp, int nargout, Out& out, Args in) {
  if (in.size() == 2 && isDefaultName(in[1].get())) {
    COSInterfacePtr object = objectArg("get", in[0]);
    const std::string name = ops::textOf(in[1].get());
    const bool factory = sgutils::DefaultPropString::isFactoryProp(name);
    matrix::unique_vxArray value =
        factory ? sgutils::DefaultNameAccess::getFactory(object, name) : sgutils::DefaultNameAccess::get(object, name);
    if (value) {
      out.push_back(Value(std::move(value)));
    } else if (name != "default" && name != "Default") {
      // A property whose type cannot leave as an array has no value to give.
      throw Error("VANTEL:sgsh:NoDefaultValue", name);
    }
    return;
  }
  plainGet()(interp, nargout, out, in);
}

// set(h, name, value, ...) where some names are default names: each pair
// goes to the default store or the property, in order.
void bSet(Interpreter& interp, int nargout, Out& out, Args in) {
  // set(h, 'defaultLineColor') lists the values that default may take.
  if (in.size() == 2 && isDefaultName(in[1].get())) {
    COSInterfacePtr object = objectArg("set", in[0]);
    if (matrix::unique_vxArray values = sgutils::DefaultNameAccess::set(object, ops::textOf(in[1].get()), nullptr))
      out.push_back(Value(std::move(values)));
    return;
  }
  bool anyDefault = false;
  for (std::size_t i = 1; i < in.size(); i += 2)
    anyDefault = anyDefault || isDefaultName(in[i].get()) || (i + 1 < in.size() && isWordValue(in[i + 1].get()));
  if (!anyDefault || in.size() < 3 || in.size() % 2 == 0) {
    plainSet()(interp, nargout, out, in);
    return;
  }
  for (std::size_t i = 1; i + 1 < in.size(); i += 2) {
    if (isDefaultName(in[i].get())) {
      sgutils::DefaultNameAccess::set(objectArg("set", in[0]), ops::textOf(in[i].get()), in[i + 1].get());
    } else if (ops::isText(in[i].get()) && isWordValue(in[i + 1].get()) && vxIsObject(in[0].get())) {
      // Each object's own set takes the words: the default, the factory
      // value, or (escaped) the word as text.
      const std::string name = ops::textOf(in[i].get());
      const vxArray* objects = in[0].get();
      for (std::size_t k = 0, n = vxGetNumberOfElements(objects); k < n; ++k) {
        COSInterfacePtr object = omGetLiveArrayElement(objects, k);
        if (!object) throw Error("VANTEL:sg:DeletedObject");
        SGHandle::setProperty(COSGetPublicClient(), object, name.c_str(), in[i + 1].get());
      }
    } else {
      Out ignored;
      const Value pair[] = {in[0], in[i], in[i + 1]};
      plainSet()(interp, 0, ignored, Args(pair));
    }
  }
}

}  // namespace

void registerGraphicsBuiltins() {
  BuiltinRegistry& r = BuiltinRegistry::instance();
  if (!plainGet()) {
    plainGet() = r.find("get");
    plainSet() = r.find("set");
  }
  r.add<bFigure>("figure", "f = figure\nf = figure(name, value, ...)\nf = figure(n)\nfigure(f)",
                 "Makes a figure, or selects figure n (making it when there is none) or f, and makes it current.");
  r.add<bAxes>("axes", "ax = axes\nax = axes(name, value, ...)",
               "Makes axes in the current figure and makes them current.");
  r.add<bMake<kLine, &currentAxesMade>>("line", "h = line(name, value, ...)",
                                        "Makes a line in the current axes.");
  r.add<bMake<kText, &currentAxesMade>>("text", "h = text(name, value, ...)",
                                        "Makes a text in the current axes.");
  r.add<bMake<kPatch, &currentAxesMade>>("patch", "h = patch(name, value, ...)",
                                         "Makes a patch in the current axes.");
  r.add<bMake<kGroup, &currentAxesMade>>("group", "h = group(name, value, ...)",
                                         "Makes a group in the current axes.");
  r.add<bMake<kContextMenu, &currentFigureMade>>("contextmenu", "h = contextmenu(name, value, ...)",
                                                 "Makes a context menu in the current figure.");
  r.add<bPlot>("plot", "h = plot(y)\nh = plot(x, y)\nh = plot(x1, y1, spec1, x2, y2, ...)\nh = plot(ax, x, y, spec, name, value, ...)",
               "Plots lines of data in the current axes, one per column of a matrix; a line spec such as 'r--' gives colour, style and marker.");
  r.add<bGroot>("groot", "r = groot",
                "The root of the object tree.");
  r.add<bGcf>("gcf", "f = gcf",
              "The current figure, made when there is none.");
  r.add<bGca>("gca", "ax = gca",
              "The current axes, made when there are none.");
  r.add<bHold>("hold", "hold on\nhold off\nhold\nhold(ax, 'on')",
               "Whether new plots keep what the axes show.");
  r.add<bCla>("cla", "cla\ncla(ax)",
              "Deletes the visible children of the axes.");
  r.add<bClf>("clf", "clf\nclf(f)",
              "Deletes the visible children of the figure.");
  r.add<bClose>("close", "close\nclose(f)\nclose(n)\nclose all",
                "Deletes figures: the current one, the given ones, or all.");
  r.add<bFindobj>("findobj", "h = findobj\nh = findobj(h, name, value, ...)",
                  "Objects below the given ones whose properties match; '-regexp', '-depth', '-not', '-and', '-or', '-function' refine the search.");
  r.add<bFindall>("findall", "h = findall(h, name, value, ...)",
                  "Like findobj, hidden handles included.");
  r.add<bAllchild>("allchild", "c = allchild(h)",
                   "All children of an object, hidden handles included.");
  r.add<bAncestor>("ancestor", "a = ancestor(h, type)",
                   "The object or its nearest ancestor of the type; empty when there is none.");
  r.add<bIsgraphics>("isgraphics", "tf = isgraphics(h)\ntf = isgraphics(h, type)",
                     "True for valid graphics objects, of the type when given.");
  r.add<bDrawnow>("drawnow", "drawnow",
                  "Brings the views up to date with the objects.");
  if (plainGet()) r.add<bGet>("get", "v = get(h, name)\ns = get(h)\nc = get(h, {name, ...})",
              "Property values of objects; with no name all visible properties, sorted.");
  if (plainSet()) r.add<bSet>("set", "set(h, name, value, ...)\nset(h, {name, ...}, values)\ns = set(h)",
              "Sets property values of objects; with no name lists the settable properties.");
  (void)&rootObject;
}

}  // namespace sgsh::builtins
