// Built-ins about functions and time: feval, cellfun, arrayfun, func2str,
// str2func, exist-style queries, tic and toc.
#include <chrono>
#include <cstdio>

#include <foundation/feature/Feature.h>

#include "builtins/BuiltinSupport.h"
#include "eval/Indexing.h"
#include "sgsh/FunctionHandle.h"
#include "sgsh/Output.h"
#include "sgsh/Parser.h"

namespace sgsh::builtins {
namespace {

// Calls a handle, or a function named by text.
std::vector<Value> callFunctionArg(Interpreter& interp, const Value& f, Args args, int nargout) {
  if (vxIsFunctionHandle(f.get())) return interp.callHandle(f.get(), args, nargout);
  return interp.call(textArg("feval", f), args, nargout);
}

void bFeval(Interpreter& interp, int nargout, Out& out, Args in) {
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "feval");
  for (Value& v : callFunctionArg(interp, in[0], in.subspan(1), nargout)) out.push_back(std::move(v));
}

// cellfun and arrayfun: apply the function to matching elements of the
// inputs. With 'UniformOutput', false the results are cells.
template <bool Cells>
void mapFunction(Interpreter& interp, int nargout, Out& out, Args in) {
  const char* fn = Cells ? "cellfun" : "arrayfun";
  if (in.size() < 2) throw Error("VANTEL:sgsh:NotEnoughInputs", fn);
  bool uniform = true;
  std::size_t end = in.size();
  if (end >= 4 && vxIsChar(in[end - 2].get()) && ops::textOf(in[end - 2].get()) == "UniformOutput") {
    uniform = ops::realAt(in[end - 1].get(), 0) != 0;
    end -= 2;
  }
  const Args inputs = in.subspan(1, end - 1);
  const vxSize n = vxGetNumberOfElements(inputs[0].get());
  for (const Value& v : inputs) {
    if (Cells && !vxIsCell(v.get())) throw Error("VANTEL:sgsh:NotCell", fn);
    if (vxGetNumberOfElements(v.get()) != n) throw Error("VANTEL:sgsh:SizeMismatch", fn, ops::sizeText(inputs[0].get()), ops::sizeText(v.get()));
  }
  const int outs = std::max(nargout, 1);
  const ops::Dims dims = ops::dimsOf(inputs[0].get());
  std::vector<std::vector<Value>> results(outs);
  for (vxSize i = 0; i < n; ++i) {
    std::vector<Value> args;
    for (const Value& v : inputs) {
      if (Cells) {
        const vxArray* el = vxGetCell(v.get(), i);
        args.push_back(el ? Value::copyOf(el) : Value::emptyDouble());
      } else {
        args.push_back(ops::gather(v.get(), std::vector<vxIndex>{i}, {1, 1}));
      }
    }
    std::vector<Value> r = callFunctionArg(interp, in[0], args, nargout);
    if (static_cast<int>(r.size()) < outs && (nargout > 0 || uniform)) throw Error("VANTEL:sgsh:NoValue");
    for (int k = 0; k < outs && k < static_cast<int>(r.size()); ++k) {
      if (uniform && (vxGetNumberOfElements(r[k].get()) != 1 || !ops::isNumberLike(r[k].get())))
        throw Error("VANTEL:sgsh:NotUniform", fn);
      results[k].push_back(std::move(r[k]));
    }
  }
  for (int k = 0; k < outs; ++k) {
    if (!uniform) {
      Value c = ops::makeArray(vxCELL_CLASS, dims);
      for (vxSize i = 0; i < results[k].size(); ++i) vxSetCell(c.mut(), i, results[k][i].release());
      out.push_back(std::move(c));
      continue;
    }
    bool allLogical = !results[k].empty();
    for (const Value& v : results[k]) allLogical &= vxIsLogical(v.get()) != 0;
    Value r = ops::makeArray(allLogical ? vxLOGICAL_CLASS : vxDOUBLE_CLASS, dims);
    for (vxSize i = 0; i < results[k].size(); ++i) {
      if (allLogical) vxGetLogicals(r.mut())[i] = vxGetLogicals(results[k][i].get())[0];
      else vxGetPr(r.mut())[i] = ops::realAt(results[k][i].get(), 0);
    }
    out.push_back(std::move(r));
  }
}

void bFunc2str(Interpreter&, int, Out& out, Args in) {
  checkArgs("func2str", in, 1, 1);
  if (!vxIsFunctionHandle(in[0].get())) throw Error("VANTEL:sgsh:NotHandle", "func2str");
  std::string t = vxGetFunctionHandle(in[0].get())->text();
  if (t.size() > 1 && t[0] == '@' && t[1] != '(') t.erase(0, 1);  // a named handle reads as its name
  out.push_back(Value::text(t));
}

void bStr2func(Interpreter& interp, int, Out& out, Args in) {
  checkArgs("str2func", in, 1, 1);
  const std::string t = textArg("str2func", in[0]);
  if (!t.empty() && t[0] == '@') {
    // An anonymous function from text: parse it as an expression.
    Program p = Parser::parse("h = " + t + ";");
    if (p.body->kids.size() != 1 || p.body->kids[0]->kind != NodeKind::Assign ||
        p.body->kids[0]->kids[1]->kind != NodeKind::Lambda)
      throw Error("VANTEL:sgsh:NotHandle", "str2func");
    NodePtr lambda = p.body->kids[0]->kids[1];
    out.push_back(interp.makeHandle(std::make_shared<FunctionHandle>(lambda, std::map<std::string, Value>{})));
    return;
  }
  out.push_back(interp.makeHandle(std::make_shared<FunctionHandle>(t)));
}

void bTic(Interpreter& interp, int nargout, Out& out, Args in) {
  checkArgs("tic", in, 0, 0);
  interp.timer() = std::chrono::steady_clock::now();
  if (nargout > 0)
    out.push_back(Value::scalar(static_cast<double>(
        std::chrono::duration_cast<std::chrono::microseconds>(interp.timer().time_since_epoch()).count())));
}

void bToc(Interpreter& interp, int nargout, Out& out, Args in) {
  checkArgs("toc", in, 0, 0);
  const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - interp.timer()).count();
  if (nargout > 0) {
    out.push_back(Value::scalar(s));
    return;
  }
  char buf[96];
  std::snprintf(buf, sizeof buf, "Elapsed time is %.6f seconds.\n", s);
  writeOutput(buf);
}

void bExist(Interpreter& interp, int, Out& out, Args in) {
  checkArgs("exist", in, 1, 1);
  const std::string name = textArg("exist", in[0]);
  out.push_back(Value::scalar(interp.findVariable(name) ? 1 : interp.isFunction(name) ? 5 : 0));
}

// feature('name') reads a feature, feature('name', value) sets it.
void bFeature(Interpreter&, int, Out& out, Args in) {
  checkArgs("feature", in, 1, 2);
  const std::string name = textArg("feature", in[0]);
  if (in.size() == 2) {
    foundation::feature::set(name, static_cast<int>(scalarArg("feature", in[1])));
    return;
  }
  out.push_back(Value::scalar(foundation::feature::value(name)));
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerFunctionBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bFeval>("feval", "[y, ...] = feval(f, x, ...)",
                "Calls a function given by name or handle.");
  r.add<mapFunction<true>>("cellfun", "y = cellfun(f, c, ...)\nc = cellfun(f, c, 'UniformOutput', false)",
                           "Calls a function on each element of cell arrays.");
  r.add<mapFunction<false>>("arrayfun", "y = arrayfun(f, a, ...)\nc = arrayfun(f, a, 'UniformOutput', false)",
                            "Calls a function on each element of arrays.");
  r.add<bFunc2str>("func2str", "s = func2str(f)",
                   "The text of a function handle.");
  r.add<bStr2func>("str2func", "f = str2func(text)",
                   "A function handle from a name or an anonymous function's text.");
  r.add<bTic>("tic", "tic\nt = tic",
              "Starts a stopwatch.");
  r.add<bToc>("toc", "toc\nseconds = toc\nseconds = toc(t)",
              "The seconds since the last tic.");
  r.add<bExist>("exist", "n = exist(name)\nn = exist(name, 'var')",
                "1 for a variable, 5 for a built-in, 2 for a function of the script, 8 for a class, 0 otherwise.");
  r.add<bFeature>("feature", "v = feature(name)\nfeature(name, value)",
                  "Reads or sets a switch of the running system.");
}

}  // namespace sgsh
