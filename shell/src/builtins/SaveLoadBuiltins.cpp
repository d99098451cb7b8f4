// save and load: workspace variables to a saved value file and back. The
// file format belongs to the array runtime (vx/vxSerialize.h); function
// handles are saved as their text and made again by str2func on load.
#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>

#include <vx/vxSerialize.h>

#include "builtins/BuiltinSupport.h"
#include "builtins/SaveLoadHooks.h"
#include "sgsh/FunctionHandle.h"
#include "sgsh/Parser.h"

namespace sgsh::builtins {

SaveLoadHooks& SaveLoadHooks::instance() {
  static SaveLoadHooks hooks;
  return hooks;
}

vxArray* functionHandleFromText(const std::string& text) {
  static const BuiltinFn str2func = BuiltinRegistry::instance().find("str2func");
  // A named handle is saved as "@name"; str2func takes the bare name.
  const bool named = text.size() > 1 && text[0] == '@' && text[1] != '(';
  std::vector<Value> args;
  args.push_back(Value::text(named ? std::string_view(text).substr(1) : std::string_view(text)));
  Out out;
  str2func(Interpreter::current(), 1, out, args);
  return out.at(0).release();
}

vxArray* functionHandleWithCaptures(const std::string& text, std::vector<vxNamedValue> captured) {
  // Parsed as str2func parses an anonymous function; only such a text can
  // have captured variables.
  Program p = Parser::parse("h = " + text + ";");
  if (p.body->kids.size() != 1 || p.body->kids[0]->kind != NodeKind::Assign ||
      p.body->kids[0]->kids[1]->kind != NodeKind::Lambda)
    throw Error("VANTEL:sgsh:NotHandle", "load");
  std::map<std::string, Value> variables;
  for (vxNamedValue& v : captured) variables.emplace(std::move(v.name), Value(v.value.release()));
  NodePtr lambda = p.body->kids[0]->kids[1];
  return Interpreter::current().makeHandle(std::make_shared<FunctionHandle>(lambda, std::move(variables))).release();
}

vxReadOptions handleReadOptions() {
  vxReadOptions options;
  options.makeFunctionHandle = functionHandleFromText;
  options.makeCapturingFunctionHandle = functionHandleWithCaptures;
  return options;
}

namespace {

bool isVariableName(const std::string& name) {
  auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  if (name.empty() || name.size() > 63 || !letter(name[0])) return false;
  return std::all_of(name.begin(), name.end(), [&](char c) { return letter(c) || (c >= '0' && c <= '9') || c == '_'; });
}

// save(file) saves every variable; save(file, 'x', 'y') the named ones.
void bSave(Interpreter& in, int, Out&, Args args) {
  checkArgs("save", args, 1, SIZE_MAX);
  const std::string file = textArg("save", args[0]);
  std::vector<std::string> names;
  if (args.size() == 1) names = in.variableNames();
  for (std::size_t i = 1; i < args.size(); ++i) names.push_back(textArg("save", args[i]));
  std::vector<std::pair<std::string, const vxArray*>> values;
  for (const std::string& name : names) {
    const Value* v = in.findVariable(name);
    if (!v) throw Error("VANTEL:sgsh:save:NoVariable", name);
    values.emplace_back(name, v->get());
  }
  const SaveLoadHooks& hooks = SaveLoadHooks::instance();
  const bool objects = hooks.holdsObjects && std::any_of(values.begin(), values.end(), [&](const auto& v) {
                         return hooks.holdsObjects(v.second);
                       });
  if (objects && hooks.save) hooks.save(file, values);
  else vxSaveValuesFile(file, values);
}

// load(file) sets the saved variables; s = load(file) returns them as the
// fields of a struct, in saved order.
void bLoad(Interpreter& in, int nargout, Out& out, Args args) {
  checkArgs("load", args, 1, 1);
  const std::string file = textArg("load", args[0]);
  const SaveLoadHooks& hooks = SaveLoadHooks::instance();
  std::vector<vxNamedValue> values =
      hooks.load ? hooks.load(file, handleReadOptions()) : vxLoadValuesFile(file, handleReadOptions());
  if (nargout > 0) {
    Value s(vxCreateStructMatrix(1, 1, 0, nullptr));
    for (vxNamedValue& v : values) {
      const int f = vxAddField(s.mut(), v.name.c_str());
      vxSetFieldByNumber(s.mut(), 0, f, v.value.release());
    }
    out.push_back(std::move(s));
    return;
  }
  // A saved name that is not a variable name is refused before anything is set.
  for (const vxNamedValue& v : values)
    if (!isVariableName(v.name)) throw Error("VANTEL:sgsh:load:BadName", v.name);
  for (vxNamedValue& v : values) in.setVariable(v.name, Value(v.value.release()));
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerSaveLoadBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bSave>("save", "save(file)\nsave(file, name1, name2, ...)",
               "Saves every variable of the workspace, or the named ones, to file. Numeric, logical, "
               "char, string, cell and struct values are saved exactly; function handles as their "
               "text; graphics objects with their trees. A failed save leaves an existing file unchanged.");
  r.add<bLoad>("load", "load(file)\ns = load(file)",
               "Loads the variables saved in file into the workspace, or returns them as the fields "
               "of the struct s. A damaged file loads nothing and raises an error.");
}

}  // namespace sgsh
