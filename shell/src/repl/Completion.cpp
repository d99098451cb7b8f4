// The words that complete the one before the cursor.
#include "sgsh/Completion.h"

#include <algorithm>
#include <cctype>

#include <vcos/COSClass.h>
#include <vcos/COSPropInfo.h>
#include <vcos/ObjectArray.h>
#include <vx/vx.h>

#include "sgsh/BuiltinRegistry.h"
#include "sgsh/Interpreter.h"

namespace sgsh {

namespace {

bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  if (prefix.size() > text.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
      return false;
  return true;
}

// The names after "base." : properties of the object in the variable, or
// fields of the struct.
std::vector<std::string> memberNames(const vxArray* value) {
  std::vector<std::string> names;
  if (omIsVCOS(value)) {
    const COSClass* cls = vcos::array::classOf(value);
    for (std::size_t i = 0, n = cls ? cls->getPropertyCount() : 0; i < n; ++i) {
      const COSPropInfo* p = cls->getPropertyAt(i);
      if (p->getMemberGetAccess() == PublicAccess && p->isVisible()) names.emplace_back(p->getName());
    }
  } else if (vxIsStruct(value)) {
    for (int f = 0, n = vxGetNumberOfFields(value); f < n; ++f) names.emplace_back(vxGetFieldNameByNumber(value, f));
  }
  return names;
}

}  // namespace

std::size_t completionWordStart(std::string_view line, std::size_t cursor) {
  std::size_t start = std::min(cursor, line.size());
  while (start > 0 && (isNameChar(line[start - 1]) || line[start - 1] == '.')) --start;
  return start;
}

std::vector<std::string> completions(const Interpreter& interp, std::string_view line, std::size_t cursor) {
  cursor = std::min(cursor, line.size());
  const std::string_view word = line.substr(completionWordStart(line, cursor), cursor - completionWordStart(line, cursor));
  std::vector<std::string> out;
  const std::size_t dot = word.rfind('.');
  if (dot != std::string_view::npos) {
    // Only a variable's own members: nothing is evaluated to complete.
    const std::string base(word.substr(0, dot));
    const std::string_view prefix = word.substr(dot + 1);
    const Value* v = interp.findVariable(base);
    if (!v) return out;
    for (const std::string& name : memberNames(v->get()))
      if (startsWithIgnoringCase(name, prefix)) out.push_back(base + "." + name);
  } else {
    if (word.empty() || !std::isalpha(static_cast<unsigned char>(word[0]))) return out;
    for (const std::string& name : interp.variableNames())
      if (startsWithIgnoringCase(name, word)) out.push_back(name);
    for (const std::string& name : BuiltinRegistry::instance().names())
      if (startsWithIgnoringCase(name, word)) out.push_back(name);
  }
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
  return out;
}

}  // namespace sgsh
