// Errors and warnings from scripts: error, warning, lastwarn, assert,
// rethrow. Script errors carry their own identifier and text; warnings go
// through the platform's warning channel.
#include <foundation/core/except/WarningChannel.h>

#include "builtins/BuiltinSupport.h"
#include "sgsh/ScriptError.h"

namespace sgsh::builtins {
namespace {

using foundation::core::except::WarningChannel;

// "component:component", with no blanks: the shape of a message identifier.
bool looksLikeId(const std::string& s) {
  const std::size_t colon = s.find(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 >= s.size()) return false;
  return s.find_first_of(" \t\n") == std::string::npos;
}

// (id, text) from the arguments of error and warning: (text),
// (format, args...) or (id, format, args...). What reads as an identifier
// must be a well-formed one.
std::pair<std::string, std::string> message(const char* fn, Args in) {
  const std::string first = textArg(fn, in[0]);
  if (in.size() == 1) return {"", first};
  if (looksLikeId(first)) {
    if (!isWellFormedIdentifier(first)) throw Error("VANTEL:sgsh:BadIdentifier", first);
    return {first, formatText(textArg(fn, in[1]), in.subspan(2))};
  }
  return {"", formatText(first, in.subspan(1))};
}

void bError(Interpreter&, int, Out&, Args in) {
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "error");
  if (vxIsStruct(in[0].get())) {
    // error(err) raises a caught error again.
    const vxArray* s = in[0].get();
    const vxArray* id = vxGetField(s, 0, "identifier");
    const vxArray* msg = vxGetField(s, 0, "message");
    if (!msg) throw Error("VANTEL:sgsh:BadErrorStruct");
    const std::string idText = id && ops::isText(id) ? ops::textOf(id) : "";
    if (!idText.empty() && !isWellFormedIdentifier(idText)) throw Error("VANTEL:sgsh:BadIdentifier", idText);
    throw ScriptError(idText, ops::textOf(msg));
  }
  auto [id, text] = message("error", in);
  throw ScriptError(id, text);
}

void bRethrow(Interpreter& interp, int nargout, Out& out, Args in) {
  checkArgs("rethrow", in, 1, 1);
  if (!vxIsStruct(in[0].get())) throw Error("VANTEL:sgsh:BadErrorStruct");
  bError(interp, nargout, out, in);
}

void bWarning(Interpreter&, int nargout, Out& out, Args in) {
  WarningChannel& ch = WarningChannel::instance();
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "warning");
  const std::string first = textArg("warning", in[0]);
  if (first == "on" || first == "off") {
    // warning('off', id) and warning('on', 'all')
    const std::string id = in.size() > 1 ? textArg("warning", in[1]) : "all";
    ch.setEnabled(id, first == "on");
    return;
  }
  if (first == "query") {
    const std::string id = in.size() > 1 ? textArg("warning", in[1]) : "all";
    if (nargout > 0) out.push_back(Value::text(ch.isEnabled(id) ? "on" : "off"));
    return;
  }
  auto [id, text] = message("warning", in);
  if (!ch.isEnabled(id.empty() ? "all" : id)) return;
  // The channel prints the text; the script's own identifier is what
  // lastwarn reports.
  ch.issue(i18n::Message("VANTEL:sgsh:ScriptWarning", text));
  ch.setLast(id, text);
}

void bLastwarn(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("lastwarn", in, 0, 2);
  WarningChannel& ch = WarningChannel::instance();
  out.push_back(Value::text(ch.lastText()));
  if (nargout > 1) out.push_back(Value::text(ch.lastId()));
  if (!in.empty()) ch.setLast(in.size() > 1 ? textArg("lastwarn", in[1]) : "", textArg("lastwarn", in[0]));
}

void bAssert(Interpreter&, int, Out&, Args in) {
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "assert");
  const vxArray* c = in[0].get();
  bool ok = ops::isNumberLike(c);
  for (vxSize i = 0; ok && i < vxGetNumberOfElements(c); ++i) ok = ops::realAt(c, i) != 0;
  if (ok) return;
  if (in.size() == 1) throw Error("VANTEL:sgsh:AssertionFailed");
  auto [id, text] = message("assert", in.subspan(1));
  throw ScriptError(id, text);
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerErrorBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bError>("error", "error(message)\nerror(id, format, ...)\nerror(err)",
                "Raises an error with an optional identifier.");
  r.add<bRethrow>("rethrow", "rethrow(err)",
                  "Raises a caught error again.");
  r.add<bWarning>("warning", "warning(message)\nwarning(id, format, ...)\nwarning('off'|'on', id)",
                  "Prints a warning, or switches warnings off and on.");
  r.add<bLastwarn>("lastwarn", "[msg, id] = lastwarn",
                   "The text and identifier of the last warning.");
  r.add<bAssert>("assert", "assert(cond)\nassert(cond, message, ...)",
                 "Raises an error when the condition is false.");
}

}  // namespace sgsh
