// Help at the prompt and the display settings: help, properties, methods,
// and the window width and hyperlink switches the object display follows.
#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include <foundation/io/Printing.h>
#include <vcos/COSClass.h>
#include <vcos/COSClassInfo.h>
#include <vcos/COSIterator.h>
#include <vcos/COSMethodInfo.h>
#include <vcos/COSPropInfo.h>
#include <vcos/ObjectArray.h>
#include <vx/vx.h>

#include "builtins/BuiltinSupport.h"
#include "eval/ArrayOps.h"
#include "sgsh/BuiltinRegistry.h"
#include "sgsh/Completion.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"

namespace sgsh {

namespace builtins {
namespace {

bool lessIgnoringCase(const std::string& a, const std::string& b) {
  const auto lower = [](unsigned char c) { return std::tolower(c); };
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [&](char x, char y) { return lower(x) < lower(y); }) ||
         (!std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(),
                                        [&](char x, char y) { return lower(x) < lower(y); }) &&
          a < b);
}

Value column(const std::vector<std::string>& names) {
  Value c(vxCreateCellMatrix(names.size(), 1));
  for (std::size_t i = 0; i < names.size(); ++i) vxSetCell(c.mut(), i, Value::text(names[i]).release());
  return c;
}

// The help text of a built-in: its usage lines indented, a blank line, the
// description.
std::string helpText(const BuiltinRegistry::Help& help) {
  std::string text;
  std::size_t start = 0;
  while (start <= help.usage.size()) {
    const std::size_t end = std::min(help.usage.find('\n', start), help.usage.size());
    text += "  " + help.usage.substr(start, end - start) + "\n";
    start = end + 1;
  }
  return text + "\n  " + help.description + "\n";
}

// The class an argument names: the class of an object array, or a class
// given by its full name.
COSClass* classArg(const char* fn, const Value& v) {
  if (omIsVCOS(v.get())) return vcos::array::classOf(v.get());
  if (vxIsChar(v.get()) || vxIsString(v.get()))
    if (COSClass* cls = COSClass::getClass(COSID(textArg(fn, v).c_str()))) return cls;
  throw Error("VANTEL:sgsh:NotAClass", fn);
}

// help NAME prints the usage and description of a built-in, or the
// description of a class; help alone lists the built-ins. t = help(NAME)
// gives the text; c = help('-missing') the built-ins registered without help.
void bHelp(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("help", in, 0, 1);
  const BuiltinRegistry& registry = BuiltinRegistry::instance();
  std::string text;
  if (in.empty()) {
    const std::vector<std::string> names = registry.names();
    std::size_t width = 0;
    for (const std::string& n : names) width = std::max(width, n.size());
    for (const std::string& n : names)
      text += "  " + n + std::string(width - n.size() + 2, ' ') + registry.help(n)->description + "\n";
  } else {
    const std::string name = textArg("help", in[0]);
    if (name == "-missing") {
      std::vector<std::string> missing;
      for (const std::string& n : registry.names()) {
        const BuiltinRegistry::Help* h = registry.help(n);
        if (h->usage.empty() || h->description.empty()) missing.push_back(n);
      }
      out.push_back(column(missing));
      return;
    }
    if (const BuiltinRegistry::Help* h = registry.help(name); h && !h->usage.empty()) {
      text = helpText(*h);
    } else if (COSClass* cls = COSClass::getClass(COSID(name.c_str()))) {
      const char* description = cls->getClassInfo() ? cls->getClassInfo()->getDescription() : "";
      text = "  " + name + "\n\n  " + (description && *description ? description : "No description.") + "\n";
    } else {
      throw Error("VANTEL:sgsh:NoHelp", name);
    }
  }
  if (nargout > 0)
    out.push_back(Value::text(text));
  else
    writeOutput(text);
}

// The public, visible properties of a class, sorted as get sorts them.
std::vector<std::string> publicProperties(const COSClass* cls) {
  std::vector<std::string> names;
  for (std::size_t i = 0, n = cls->getPropertyCount(); i < n; ++i) {
    const COSPropInfo* p = cls->getPropertyAt(i);
    if (p->getMemberGetAccess() == PublicAccess && p->isVisible()) names.emplace_back(p->getName());
  }
  std::sort(names.begin(), names.end(), lessIgnoringCase);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::vector<std::string> publicMethods(COSClass* cls) {
  std::vector<std::string> names;
  COSIterator methods;
  cls->getMethods(methods);
  while (methods.hasMoreElements()) {
    COSInterfacePtr m = methods.nextElement();
    const auto* method = static_cast<COSMethodInfo*>(m.get());
    if (method->getMemberAccess() == PublicAccess) names.emplace_back(method->getName());
  }
  std::sort(names.begin(), names.end(), lessIgnoringCase);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

// A list under a title, names laid out in rows that fit the window.
std::string listing(const std::string& title, const std::vector<std::string>& names) {
  const std::size_t width = static_cast<std::size_t>(std::max(ioGetNumWindowColumns(), 20));
  std::string text = title + "\n\n";
  std::string line;
  for (const std::string& name : names) {
    if (!line.empty() && line.size() + 4 + name.size() > width) {
      text += line + "\n";
      line.clear();
    }
    line += (line.empty() ? "    " : "  ") + name;
  }
  if (!line.empty()) text += line + "\n";
  return text + "\n";
}

// properties(h) or properties(className): the public properties; c =
// properties(...) gives them as a column cell.
void bProperties(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("properties", in, 1, 1);
  const COSClass* cls = classArg("properties", in[0]);
  const std::vector<std::string> names = publicProperties(cls);
  if (nargout > 0) {
    out.push_back(column(names));
    return;
  }
  std::string text = "Properties for class " + std::string(cls->getName()) + ":\n\n";
  for (const std::string& n : names) text += "    " + n + "\n";
  writeOutput(text + "\n");
}

// methods(h) or methods(className): the public methods, inherited ones
// included; c = methods(...) gives them as a column cell.
void bMethods(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("methods", in, 1, 1);
  COSClass* cls = classArg("methods", in[0]);
  const std::vector<std::string> names = publicMethods(cls);
  if (nargout > 0)
    out.push_back(column(names));
  else
    writeOutput(listing("Methods for class " + std::string(cls->getName()) + ":", names));
}

// windowwidth(n) sets the width displays fit to (0: from the terminal) and
// gives the width before; windowwidth alone reads it.
void bWindowwidth(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("windowwidth", in, 0, 1);
  const int before = ioGetNumWindowColumns();
  if (in.size() == 1) {
    const double n = scalarArg("windowwidth", in[0]);
    if (!(n >= 0 && n <= 100000) || n != static_cast<int>(n)) throw Error("VANTEL:sgsh:BadSize", "windowwidth");
    services::io::setNumWindowColumns(static_cast<int>(n));
  }
  if (nargout > 0 || in.empty()) out.push_back(Value(vxCreateDoubleScalar(before)));
}

// hyperlinks('on'|'off') switches links in displays and gives the setting
// before as 'on' or 'off'; hyperlinks alone reads it.
void bHyperlinks(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("hyperlinks", in, 0, 1);
  const bool before = utPrintfIsHot();
  if (in.size() == 1) {
    const std::string word = textArg("hyperlinks", in[0]);
    if (word != "on" && word != "off") throw Error("VANTEL:sgsh:BadOnOff", "hyperlinks");
    services::io::setPrintfHot(word == "on");
  }
  if (nargout > 0 || in.empty()) out.push_back(Value::text(before ? "on" : "off"));
}

// completions(text): what a tab after the text offers at the prompt, as a
// column cell of whole words.
void bCompletions(Interpreter& interp, int, Out& out, Args in) {
  checkArgs("completions", in, 1, 1);
  const std::string line = textArg("completions", in[0]);
  out.push_back(column(completions(interp, line, line.size())));
}

}  // namespace
}  // namespace builtins

void registerDisplayBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bHelp>("help", "help name\nhelp\nt = help(name)\nc = help('-missing')",
               "Shows how to call a built-in and what it does; alone, lists the built-ins.");
  r.add<bProperties>("properties", "properties(h)\nproperties(className)\nc = properties(h)",
                     "The public properties of an object's class, sorted.");
  r.add<bMethods>("methods", "methods(h)\nmethods(className)\nc = methods(h)",
                  "The public methods of an object's class, inherited ones included, sorted.");
  r.add<bWindowwidth>("windowwidth", "n = windowwidth\nold = windowwidth(n)",
                      "The width in characters that displays fit to; 0 takes it from the terminal.");
  r.add<bHyperlinks>("hyperlinks", "tf = hyperlinks\nold = hyperlinks('on'|'off')",
                     "Whether displays write hyperlink markup.");
  r.add<bCompletions>("completions", "c = completions(text)",
                      "The words a tab after the text offers at the prompt.");
}

}  // namespace sgsh
