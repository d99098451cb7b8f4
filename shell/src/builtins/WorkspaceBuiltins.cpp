// Built-ins over the variables of the current workspace: clear removes all
// or some of them, who lists their names and whos their sizes and classes.
// Names given to them may hold '*' for any run of characters.
#include <algorithm>

#include "builtins/BuiltinSupport.h"
#include "sgsh/Output.h"

namespace sgsh::builtins {
namespace {

// A name against a pattern in which '*' matches any run of characters.
bool matches(std::string_view pattern, std::string_view name) {
  std::size_t p = 0, n = 0, star = std::string_view::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() && pattern[p] == name[n]) {
      ++p;
      ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

// The variables, sorted, that any of the patterns names (all without patterns).
std::vector<std::string> selected(const char* fn, const Interpreter& in, Args patterns) {
  std::vector<std::string> wanted;
  for (const Value& v : patterns) wanted.push_back(textArg(fn, v));
  std::vector<std::string> names = in.variableNames();
  if (wanted.empty()) return names;
  std::erase_if(names, [&](const std::string& name) {
    return std::none_of(wanted.begin(), wanted.end(), [&](const std::string& w) { return matches(w, name); });
  });
  return names;
}

// clear, clear all, clear x y*: removes variables; names that are not
// variables are passed over.
void bClear(Interpreter& in, int, Out&, Args args) {
  if (args.empty() || (args.size() == 1 && textArg("clear", args[0]) == "all")) {
    in.clearVariables();
    return;
  }
  for (const std::string& name : selected("clear", in, args)) in.clearVariable(name);
}

// who: the names in rows as wide as 76 characters; c = who gives them as a
// column cell.
void bWho(Interpreter& in, int nargout, Out& out, Args args) {
  const std::vector<std::string> names = selected("who", in, args);
  if (nargout > 0) {
    Value c(vxCreateCellMatrix(names.size(), 1));
    for (std::size_t i = 0; i < names.size(); ++i) vxSetCell(c.mut(), i, Value::text(names[i]).release());
    out.push_back(std::move(c));
    return;
  }
  if (names.empty()) return;
  std::string text = "Variables:\n";
  std::string line;
  for (const std::string& name : names) {
    if (!line.empty() && line.size() + 2 + name.size() > 76) {
      text += line + "\n";
      line.clear();
    }
    line += "  " + name;
  }
  text += line + "\n";
  writeOutput(text);
}

// whos: a table of name, size and class; s = whos gives a struct column
// with the fields name, size and class.
void bWhos(Interpreter& in, int nargout, Out& out, Args args) {
  const std::vector<std::string> names = selected("whos", in, args);
  struct Row {
    std::string name, size, cls;
  };
  std::vector<Row> rows;
  for (const std::string& name : names) {
    const vxArray* v = in.findVariable(name)->get();
    rows.push_back({name, ops::sizeText(v), ops::classNameOf(v)});
  }
  if (nargout > 0) {
    const char* fields[] = {"name", "size", "class"};
    Value s(vxCreateStructMatrix(rows.size(), 1, 3, fields));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const ops::Dims d = ops::dimsOf(in.findVariable(rows[i].name)->get());
      vxSetFieldByNumber(s.mut(), i, 0, Value::text(rows[i].name).release());
      vxSetFieldByNumber(s.mut(), i, 1, ops::doubles({1, d.size()}, std::vector<double>(d.begin(), d.end())).release());
      vxSetFieldByNumber(s.mut(), i, 2, Value::text(rows[i].cls).release());
    }
    out.push_back(std::move(s));
    return;
  }
  if (rows.empty()) return;
  std::size_t wName = 4, wSize = 4;
  for (const Row& r : rows) {
    wName = std::max(wName, r.name.size());
    wSize = std::max(wSize, r.size.size());
  }
  auto line = [&](const std::string& a, const std::string& b, const std::string& c) {
    return "  " + a + std::string(wName - a.size() + 4, ' ') + b + std::string(wSize - b.size() + 4, ' ') + c + "\n";
  };
  std::string text = line("Name", "Size", "Class");
  for (const Row& r : rows) text += line(r.name, r.size, r.cls);
  writeOutput(text);
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerWorkspaceBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bClear>("clear", "clear\nclear all\nclear name ...",
                "Removes variables; * in a name matches any run of characters.");
  r.add<bWho>("who", "who\nc = who",
              "The names of the variables, sorted.");
  r.add<bWhos>("whos", "whos\ns = whos",
               "The variables with their sizes and classes.");
}

}  // namespace sgsh
