// The evaluator's statements and calls: blocks and control flow, assignment
// into places, multiple outputs, script functions, anonymous functions and
// the dispatch of calls by name.
#include "sgsh/Interpreter.h"

#include <algorithm>
#include <cassert>
#include <optional>

#include <foundation/core/except/Error.h>
#include <vcos/BuiltinClasses.h>
#include <vcos/FunctionDispatcher.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "eval/CallbackRunner.h"
#include "eval/Indexing.h"
#include "eval/ObjectBridge.h"
#include "eval/Operators.h"
#include "eval/StackLimit.h"
#include "sgsh/BuiltinRegistry.h"
#include "sgsh/Display.h"
#include "sgsh/FunctionHandle.h"
#include "sgsh/Output.h"
#include "sgsh/Parser.h"
#include "sgsh/ScriptError.h"

namespace sgsh {

using foundation::core::except::Error;
using foundation::core::except::IMsgIDException;

namespace {
constexpr std::size_t kMaxDepth = 256;
}

// Counts one entry into the evaluator (a function call, or code a callback
// runs in the base workspace) for its lifetime; raises past the limit.
class Interpreter::DepthGuard {
 public:
  explicit DepthGuard(Interpreter& in) : in_(in) {
    if (in_.depth_ + 1 >= kMaxDepth) throw Error("VANTEL:sgsh:RecursionLimit", kMaxDepth);
    ++in_.depth_;
  }
  ~DepthGuard() { --in_.depth_; }
  DepthGuard(const DepthGuard&) = delete;
  DepthGuard& operator=(const DepthGuard&) = delete;

 private:
  Interpreter& in_;
};

// Pushes a fresh workspace for a function call and pops it on every exit.
class Interpreter::FrameGuard {
 public:
  explicit FrameGuard(Interpreter& in) : depth_(in), in_(in) { in_.frames_.push_back(std::make_unique<Workspace>()); }
  ~FrameGuard() { in_.frames_.pop_back(); }
  FrameGuard(const FrameGuard&) = delete;
  FrameGuard& operator=(const FrameGuard&) = delete;

 private:
  DepthGuard depth_;
  Interpreter& in_;
};

namespace {

// Interpreters alive, oldest first, and those running code on this thread.
std::vector<Interpreter*>& liveInterpreters() {
  static std::vector<Interpreter*> live;
  return live;
}
thread_local std::vector<Interpreter*> runningInterpreters;

}  // namespace

class Interpreter::RunningGuard {
 public:
  explicit RunningGuard(Interpreter* in) { runningInterpreters.push_back(in); }
  ~RunningGuard() { runningInterpreters.pop_back(); }
  RunningGuard(const RunningGuard&) = delete;
  RunningGuard& operator=(const RunningGuard&) = delete;
};

Interpreter::Interpreter() : timer_(std::chrono::steady_clock::now()) {
  frames_.push_back(std::make_unique<Workspace>());
  liveInterpreters().push_back(this);
  vcos::registerBuiltinClasses();  // handle, dynamicprops, listeners, display mixins
  BuiltinRegistry::instance();     // registers the built-ins with the dispatcher
  callbacks_ = std::make_unique<CallbackRunner>();
}

Interpreter::~Interpreter() {
  callbacks_.reset();
  std::erase(liveInterpreters(), this);
}

Interpreter& Interpreter::current() {
  if (!runningInterpreters.empty()) return *runningInterpreters.back();
  if (!liveInterpreters().empty()) return *liveInterpreters().back();
  throw Error("VANTEL:sgsh:NoInterpreter");
}

// The parsed code lives while it runs; function handles made from it keep
// their own parts alive, so nothing of a finished run is held.
void Interpreter::run(std::string_view source) {
  RunningGuard running(this);
  Program prog = Parser::parse(source);
  for (const NodePtr& fn : prog.functions) functions_[fn->text] = fn;
  execBlock(*prog.body);
}

void Interpreter::runInBase(std::string_view source) {
  RunningGuard running(this);
  DepthGuard depth(*this);
  Program prog = Parser::parse(source);
  for (const NodePtr& fn : prog.functions) functions_[fn->text] = fn;
  // The workspaces of the functions running now step aside, so that the code
  // sees the base workspace; they come back however the code ends. The
  // functions it calls push and pop their own above the base.
  struct SetAside {
    Interpreter& in;
    std::vector<std::unique_ptr<Workspace>> frames;
    explicit SetAside(Interpreter& i) : in(i) {
      frames.assign(std::make_move_iterator(in.frames_.begin() + 1), std::make_move_iterator(in.frames_.end()));
      in.frames_.resize(1);
    }
    ~SetAside() {
      assert(in.frames_.size() == 1 && "callback code left a workspace behind");
      for (auto& f : frames) in.frames_.push_back(std::move(f));
    }
    SetAside(const SetAside&) = delete;
    SetAside& operator=(const SetAside&) = delete;
  } aside(*this);
  execBlock(*prog.body);
}

const Value* Interpreter::findVariable(const std::string& name) const {
  auto it = ws().find(name);
  return it == ws().end() ? nullptr : &it->second;
}

void Interpreter::setVariable(const std::string& name, Value value) { ws()[name] = std::move(value); }

std::vector<std::string> Interpreter::variableNames() const {
  std::vector<std::string> names;
  names.reserve(ws().size());
  for (const auto& [name, value] : ws()) names.push_back(name);
  std::sort(names.begin(), names.end());
  return names;
}

bool Interpreter::clearVariable(const std::string& name) { return ws().erase(name) != 0; }

void Interpreter::clearVariables() { ws().clear(); }

bool Interpreter::isFunction(const std::string& name) const {
  return functions_.count(name) != 0 || BuiltinRegistry::instance().find(name) != nullptr;
}

Value Interpreter::makeHandle(std::shared_ptr<const FunctionHandle> data) const {
  return Value(vxCreateFunctionHandle(std::move(data)));
}

void Interpreter::throwStepLimit() const { throw Error("VANTEL:sgsh:StepLimit", stepLimit_); }

std::atomic<bool> Interpreter::interrupt_{false};

void Interpreter::throwInterrupted() {
  clearInterrupt();  // taken up: the code that catches it, or the next command, runs on
  throw Error("VANTEL:sgsh:Interrupted");
}

// ---- statements ----------------------------------------------------------

Interpreter::Flow Interpreter::execBlock(const Node& block) {
  for (const NodePtr& s : block.kids) {
    const Flow f = exec(*s);
    if (f != Flow::Normal) return f;
  }
  return Flow::Normal;
}

Interpreter::Flow Interpreter::exec(const Node& s) {
  checkStackRoom();
  countStep();
  switch (s.kind) {
    case NodeKind::ExprStmt: execExprStmt(s); return Flow::Normal;
    case NodeKind::Assign: execAssign(s); return Flow::Normal;
    case NodeKind::Command: execCommand(s); return Flow::Normal;
    case NodeKind::MultiAssign: execMultiAssign(s); return Flow::Normal;
    case NodeKind::If: return execIf(s);
    case NodeKind::For: return execFor(s);
    case NodeKind::While: return execWhile(s);
    case NodeKind::TryCatch: return execTry(s);
    case NodeKind::Break: return Flow::Break;
    case NodeKind::Continue: return Flow::Continue;
    case NodeKind::Return: return Flow::Return;
    case NodeKind::Block: return execBlock(s);
    case NodeKind::Function:  // collected by the parser, never inside a block
    case NodeKind::Number:
    case NodeKind::CharLit:
    case NodeKind::StringLit:
    case NodeKind::Name:
    case NodeKind::Colon:
    case NodeKind::EndValue:
    case NodeKind::Ignore:
    case NodeKind::Binary:
    case NodeKind::Unary:
    case NodeKind::ShortCircuit:
    case NodeKind::Range:
    case NodeKind::Matrix:
    case NodeKind::CellLit:
    case NodeKind::Row:
    case NodeKind::Paren:
    case NodeKind::Brace:
    case NodeKind::Field:
    case NodeKind::DynField:
    case NodeKind::FuncHandle:
    case NodeKind::Lambda:
      break;
  }
  assert(false && "not a statement node");
  return Flow::Normal;
}

void Interpreter::show(const std::string& name, const Value& value) {
  // Showing an array is work in proportion to its elements: it counts
  // against the step limit like that many statements.
  if (stepLimit_ != 0 && value.has()) {
    steps_ += vxGetNumberOfElements(value.get());
    if (steps_ > stepLimit_) throwStepLimit();
  }
  writeOutput(displayText(name, value.get()));
}

void Interpreter::execExprStmt(const Node& s) {
  const Node& e = *s.kids[0];
  if (e.kind == NodeKind::Name) {
    if (const Value* v = findVariable(e.text)) {
      if (s.show) show(e.text, *v);
      return;
    }
  }
  std::vector<Value> out;
  evalMulti(e, out, 0);
  if (out.empty()) return;
  ws()["ans"] = std::move(out[0]);
  if (s.show) show("ans", ws()["ans"]);
}

// A variable's name is never a command: the statement then runs as the
// expression its text also reads as.
void Interpreter::execCommand(const Node& s) {
  if (findVariable(s.text)) {
    if (s.kids.empty()) throw Error("VANTEL:sgsh:CommandOnVariable", s.text);
    execExprStmt(s);
    return;
  }
  std::vector<Value> args;
  args.reserve(s.names.size());
  for (const std::string& word : s.names) args.push_back(Value::text(word));
  std::vector<Value> out = call(s.text, args, 0);
  if (out.empty()) return;
  Value& ans = ws()["ans"];
  ans = std::move(out[0]);
  if (s.show) show("ans", ans);
}

void Interpreter::execAssign(const Node& s) {
  Value v = eval(*s.kids[1]);
  assignTo(*s.kids[0], std::move(v), s.show);
}

void Interpreter::execMultiAssign(const Node& s) {
  const std::size_t n = s.kids.size() - 1;
  const Node& rhs = *s.kids[n];
  std::vector<Value> out;
  evalMulti(rhs, out, static_cast<int>(n));
  if (out.size() < n) {
    // Outputs past the ones produced may only be ignored ones.
    for (std::size_t i = out.size(); i < n; ++i)
      if (s.kids[i]->kind != NodeKind::Ignore) throw Error("VANTEL:sgsh:TooManyOutputs", toSource(rhs));
  }
  // All targets or none: the variables they write are kept as they were
  // (shared copies, nothing is copied) and put back when one assignment
  // fails; what is shown is shown once all succeeded.
  struct Saved {
    std::string name;
    std::optional<Value> value;
  };
  std::vector<Saved> saved;
  std::vector<std::string> shown;
  for (std::size_t i = 0; i < n && i < out.size(); ++i) {
    const Node* root = s.kids[i].get();
    if (root->kind == NodeKind::Ignore) continue;
    while (root->kind != NodeKind::Name) root = root->kids[0].get();
    const Value* now = findVariable(root->text);
    saved.push_back({root->text, now ? std::optional<Value>(*now) : std::nullopt});
    shown.push_back(root->text);
  }
  try {
    for (std::size_t i = 0; i < n && i < out.size(); ++i) assignTo(*s.kids[i], std::move(out[i]), false);
  } catch (...) {
    for (auto r = saved.rbegin(); r != saved.rend(); ++r) {
      if (r->value)
        ws()[r->name] = std::move(*r->value);
      else
        ws().erase(r->name);
    }
    throw;
  }
  saved.clear();  // the shared copies end before anything more is written
  if (s.show)
    for (const std::string& name : shown) show(name, ws()[name]);
}

void Interpreter::assignTo(const Node& target, Value value, bool showIt) {
  if (target.kind == NodeKind::Ignore) return;
  if (!value.has()) throw Error("VANTEL:sgsh:NoValue");
  if (target.kind == NodeKind::Name) {
    Value& slot = ws()[target.text];
    slot = std::move(value);
    if (showIt) show(target.text, slot);
    return;
  }
  std::vector<const Node*> chain;
  const Node* n = &target;
  while (n->kind != NodeKind::Name) {
    chain.push_back(n);
    n = n->kids[0].get();
  }
  std::reverse(chain.begin(), chain.end());
  const std::string& root = n->text;
  auto it = ws().find(root);
  if (chain.size() == 1 && (chain[0]->kind == NodeKind::Paren || chain[0]->kind == NodeKind::Brace)) {
    // x(i) = v and c{i} = v write into the variable's own storage (copied
    // first only when another value shares it); the in-place assignment
    // checks everything before it writes, so a failure leaves x intact.
    std::vector<Value> args;
    evalArgs(*chain[0], it == ws().end() ? nullptr : it->second.get(), args);
    it = ws().find(root);  // the arguments may have run code that changed the workspace
    Value fresh;
    Value& slot = it == ws().end() ? fresh : it->second;
    if (chain[0]->kind == NodeKind::Paren)
      ops::indexAssignInPlace(slot, args, value.get());
    else
      ops::braceAssignInPlace(slot, args, std::move(value));
    Value& stored = it == ws().end() ? (ws()[root] = std::move(fresh)) : slot;
    if (showIt) show(root, stored);
    return;
  }
  // A shared copy: the variable stays intact when a nested assignment fails.
  Value base = it == ws().end() ? Value() : it->second;
  Value result = assignPath(std::move(base), chain, 0, std::move(value), &root);
  Value& slot = ws()[root];
  slot = std::move(result);
  if (showIt) show(root, slot);
}

Value Interpreter::assignPath(Value base, const std::vector<const Node*>& chain, std::size_t k, Value rhs,
                              const std::string* root) {
  const Node& acc = *chain[k];
  const bool last = k + 1 == chain.size();
  const bool isObj = base.has() && vxIsObject(base.get());
  // The one write into base, after everything else succeeded. At the
  // outermost level the variable's own reference is dropped just before, so
  // the write finds the array unshared and works in place (s(end+1).a = k
  // grows in amortised linear time); the writes change nothing when they
  // fail, and the variable then gets its value back.
  auto finalWrite = [&](auto&& write) -> Value {
    auto it = root ? ws().find(*root) : ws().end();
    if (it == ws().end()) {
      write();
      return std::move(base);
    }
    it->second = Value();  // the workspace's reference ends here
    try {
      write();
    } catch (...) {
      if (auto again = ws().find(*root); again != ws().end()) again->second = base;
      throw;
    }
    return std::move(base);
  };
  switch (acc.kind) {
    case NodeKind::Paren: {
      std::vector<Value> args;
      evalArgs(acc, base.get(), args);
      if (last) return finalWrite([&] { ops::indexAssignInPlace(base, args, rhs.get()); });
      Value sub;
      if (base.has() && !vxIsEmpty(base.get())) {
        try {
          sub = ops::indexGet(base.get(), args);
        } catch (const IMsgIDException&) {
          sub = Value();  // past the end: the nested assignment makes it
        }
      }
      if (sub.has() && vxIsDouble(sub.get()) && vxIsEmpty(sub.get())) sub = Value();
      Value inner = assignPath(std::move(sub), chain, k + 1, std::move(rhs));
      return finalWrite([&] { ops::indexAssignInPlace(base, args, inner.get()); });
    }
    case NodeKind::Brace: {
      std::vector<Value> args;
      evalArgs(acc, base.get(), args);
      if (last) return finalWrite([&] { ops::braceAssignInPlace(base, args, std::move(rhs)); });
      if (base.has() && !vxIsCell(base.get()) && !(vxIsDouble(base.get()) && vxIsEmpty(base.get())))
        throw Error("VANTEL:sgsh:BraceOnNonCell", vxGetClassName(base.get()));
      // The element as it is now (none past the end); base changes only
      // once the nested assignment succeeded.
      Value sub;
      if (base.has() && vxIsCell(base.get())) {
        try {
          const ops::Selection at = ops::select(base.get(), args);
          if (at.positions.size() != 1) throw Error("VANTEL:sgsh:NotOneElement", at.positions.size());
          const vxArray* el = vxGetCell(base.get(), at.positions[0]);
          if (el && !(vxIsDouble(el) && vxIsEmpty(el))) sub = Value::copyOf(el);
        } catch (const IMsgIDException& e) {
          if (e.identifier() != "VANTEL:sgsh:IndexOutOfBounds") throw;  // past the end: made below
        }
      }
      Value inner = assignPath(std::move(sub), chain, k + 1, std::move(rhs));
      return finalWrite([&] { ops::braceAssignInPlace(base, args, std::move(inner)); });
    }
    case NodeKind::Field:
    case NodeKind::DynField: {
      const std::string name = fieldName(acc);
      if (isObj) {
        ObjectBridge& bridge = ObjectBridge::current();
        if (last) {
          bridge.setProperty(base.mut(), name, rhs.get());
        } else {
          Value inner = assignPath(bridge.getProperty(base.get(), name), chain, k + 1, std::move(rhs));
          bridge.setProperty(base.mut(), name, inner.get());
        }
        return base;
      }
      if (!base.has() || (vxIsDouble(base.get()) && vxIsEmpty(base.get())))
        base = Value(vxCreateStructMatrix(1, 1, 0, nullptr));
      if (!vxIsStruct(base.get())) throw Error("VANTEL:sgsh:FieldOfNonStruct", vxGetClassName(base.get()));
      if (vxGetNumberOfElements(base.get()) != 1)
        throw Error("VANTEL:sgsh:NotOneElement", vxGetNumberOfElements(base.get()));
      Value inner;
      if (last) {
        inner = std::move(rhs);
      } else {
        const int f = vxGetFieldNumber(base.get(), name.c_str());
        const vxArray* el = f >= 0 ? vxGetFieldByNumber(base.get(), 0, f) : nullptr;
        Value sub = el && !(vxIsDouble(el) && vxIsEmpty(el)) ? Value::copyOf(el) : Value();
        inner = assignPath(std::move(sub), chain, k + 1, std::move(rhs));
      }
      return finalWrite([&] {
        if (vxAddFieldToStruct(base.mut(), name.c_str()) < 0) throw Error("VANTEL:sgsh:BadFieldName", name);
        vxSetField(base.mut(), 0, name.c_str(), inner.release());
      });
    }
    default:
      break;
  }
  throw Error("VANTEL:sgsh:NotAssignable");
}

Interpreter::Flow Interpreter::execIf(const Node& s) {
  const std::size_t n = s.kids.size();
  std::size_t i = 0;
  for (; i + 1 < n; i += 2) {
    if (truth(eval(*s.kids[i]), *s.kids[i])) return execBlock(*s.kids[i + 1]);
  }
  if (i < n) return execBlock(*s.kids[i]);  // else
  return Flow::Normal;
}

Interpreter::Flow Interpreter::execFor(const Node& s) {
  const std::string& var = s.kids[0]->text;
  const Node& range = *s.kids[1];
  const Node& body = *s.kids[2];
  // Runs the body once; Break or Return end the loop.
  auto step = [&](Value v) -> Flow {
    ws()[var] = std::move(v);
    const Flow f = execBlock(body);
    return f == Flow::Continue ? Flow::Normal : f;
  };
  {
    if (range.kind == NodeKind::Range) {
      // Numeric ranges are walked without building the array.
      Value first = eval(*range.kids[0]);
      Value stepv = range.kids.size() == 3 ? eval(*range.kids[1]) : Value();
      Value lastv = eval(*range.kids.back());
      if (!vxIsChar(first.get())) {
        for (const Value* x : {&first, &stepv, &lastv})
          if (x->has() && (!ops::isNumberLike(x->get()) || vxIsEmpty(x->get())))
            throw Error("VANTEL:sgsh:BadRangeOperand");
        const double f = ops::realAt(first.get(), 0), st = stepv.has() ? ops::realAt(stepv.get(), 0) : 1.0,
                     l = ops::realAt(lastv.get(), 0);
        const std::size_t count = ops::rangeCount(f, st, l);
        for (std::size_t i = 0; i < count; ++i) {
          countStep();
          const Flow fl = step(Value::scalar(f + st * static_cast<double>(i)));
          if (fl != Flow::Normal) return fl == Flow::Return ? fl : Flow::Normal;
        }
        return Flow::Normal;
      }
    }
    Value all = eval(range);
    const vxArray* a = all.get();
    if (vxIsEmpty(a)) return Flow::Normal;
    const vxSize m = vxGetM(a), n = vxGetN(a);
    for (vxSize j = 0; j < n; ++j) {
      countStep();
      std::vector<vxIndex> pos(m);
      for (vxSize i = 0; i < m; ++i) pos[i] = i + j * m;
      const Flow fl = step(ops::gather(a, pos, {m, 1}));
      if (fl != Flow::Normal) return fl == Flow::Return ? fl : Flow::Normal;
    }
  }
  return Flow::Normal;
}

Interpreter::Flow Interpreter::execWhile(const Node& s) {
  while (truth(eval(*s.kids[0]), *s.kids[0])) {
    countStep();
    const Flow f = execBlock(*s.kids[1]);
    if (f == Flow::Break) break;
    if (f == Flow::Return) return f;
  }
  return Flow::Normal;
}

namespace {

// The struct a catch clause receives: identifier and message.
Value errorStruct(const std::string& id, const std::string& text) {
  const char* names[] = {"identifier", "message"};
  Value s(vxCreateStructMatrix(1, 1, 2, names));
  vxSetFieldByNumber(s.mut(), 0, 0, Value::text(id).release());
  vxSetFieldByNumber(s.mut(), 0, 1, Value::text(text).release());
  return s;
}

}  // namespace

// Workspaces and 'end' contexts of the failed part unwind with their guards.
Interpreter::Flow Interpreter::execTry(const Node& s) {
  try {
    return execBlock(*s.kids[0]);
  } catch (const std::exception& e) {
    if (!s.text.empty()) {
      ErrorIdentity id = identify(e);
      ws()[s.text] = errorStruct(id.identifier, id.message);
    }
  }
  return execBlock(*s.kids[1]);
}

// ---- calls ---------------------------------------------------------------

std::vector<Value> Interpreter::call(const std::string& name, std::span<const Value> args, int nargout) {
  ObjectBridge& objects = ObjectBridge::current();
  // method(obj, args): the object's class is asked first.
  if (!args.empty() && vxIsObject(args[0].get())) {
    std::vector<Value> out;
    if (objects.callMethod(args[0].get(), name, args.subspan(1), nargout, out)) return out;
  } else {
    // eq(1, h): the first object among the inputs decides.
    for (const Value& a : args) {
      if (!vxIsObject(a.get())) continue;
      std::vector<Value> out;
      if (objects.callMethodOf(a.get(), name, args, nargout, out)) return out;
      break;
    }
  }
  if (auto fn = functions_.find(name); fn != functions_.end() && fn->second) {
    // The call holds the definition: code it runs may register a function
    // of the same name, and the running body must outlive that.
    const NodePtr definition = fn->second;
    return callUser(*definition, args, nargout);
  }
  if (BuiltinFn b = BuiltinRegistry::instance().find(name)) {
    std::vector<Value> out;
    b(*this, nargout, out, args);
    if (nargout > 1 && out.size() < static_cast<std::size_t>(nargout))
      throw Error("VANTEL:sgsh:TooManyOutputs", name);
    return out;
  }
  // Functions that libraries registered or export.
  if (vcos::FunctionDispatcher::BuiltinFcn f = vcos::FunctionDispatcher::instance().find(name)) {
    std::vector<const vxArray*> in;
    for (const Value& v : args) in.push_back(v.get());
    std::vector<vxArray*> raw(static_cast<std::size_t>(std::max(nargout, 1)), nullptr);
    f(nargout, raw.data(), static_cast<int>(in.size()), in.data());
    std::vector<Value> out;
    for (vxArray* r : raw) {
      if (!r) continue;
      // A function that hands an input back as output did not make a new
      // array: the caller gets a shared copy, not the input itself.
      const bool isInput = std::find(in.begin(), in.end(), r) != in.end();
      out.push_back(isInput ? Value::copyOf(r) : Value(r));
    }
    return out;
  }
  // A class name calls its constructor.
  if (objects.isClass(name)) {
    std::vector<Value> out;
    out.push_back(objects.construct(name, args));
    return out;
  }
  throw Error("VANTEL:sgsh:Undefined", name);
}

std::vector<Value> Interpreter::callHandle(const vxArray* handle, std::span<const Value> args, int nargout) {
  std::shared_ptr<const vxFunctionHandleData> data = vxGetFunctionHandle(handle);
  const auto* h = dynamic_cast<const FunctionHandle*>(data.get());
  if (!h) throw Error("VANTEL:sgsh:ForeignHandle");
  return callHandleData(*h, args, nargout);
}

std::vector<Value> Interpreter::callHandleData(const FunctionHandle& h, std::span<const Value> args, int nargout) {
  RunningGuard running(this);
  if (h.isAnonymous()) return callLambda(h, args, nargout);
  return call(h.name(), args, nargout);
}

std::string Interpreter::dottedName(const Node& n) const {
  if (n.kind == NodeKind::Name) return findVariable(n.text) || isFunction(n.text) ? std::string() : n.text;
  if (n.kind != NodeKind::Field) return {};
  std::string base = dottedName(*n.kids[0]);
  return base.empty() ? base : base + "." + n.text;
}

std::vector<Value> Interpreter::callUser(const Node& fn, std::span<const Value> args, int nargout) {
  const std::vector<std::string>& params = fn.names;
  const bool varargin = !params.empty() && params.back() == "varargin";
  const std::size_t fixedIn = varargin ? params.size() - 1 : params.size();
  if (args.size() > fixedIn && !varargin) throw Error("VANTEL:sgsh:TooManyInputs", fn.text);
  const std::vector<std::string>& outs = fn.outputs;
  const bool varargout = !outs.empty() && outs.back() == "varargout";
  const std::size_t fixedOut = varargout ? outs.size() - 1 : outs.size();
  if (static_cast<std::size_t>(nargout) > fixedOut && !varargout) throw Error("VANTEL:sgsh:TooManyOutputs", fn.text);

  FrameGuard frame(*this);
  Workspace& w = ws();
  for (std::size_t i = 0; i < fixedIn && i < args.size(); ++i)
    if (params[i] != "~") w[params[i]] = args[i];
  if (varargin) {
    std::vector<Value> rest;
    for (std::size_t i = fixedIn; i < args.size(); ++i) rest.push_back(args[i]);
    w["varargin"] = ops::cellRow(std::move(rest));
  }
  w["nargin"] = Value::scalar(static_cast<double>(args.size()));
  w["nargout"] = Value::scalar(nargout);
  execBlock(*fn.kids[0]);

  std::vector<Value> out;
  const std::size_t want = std::max<std::size_t>(static_cast<std::size_t>(nargout), 1);
  for (std::size_t i = 0; i < fixedOut && out.size() < want; ++i) {
    auto it = ws().find(outs[i]);
    if (it == ws().end()) {
      if (i < static_cast<std::size_t>(nargout)) throw Error("VANTEL:sgsh:OutputNotSet", outs[i], fn.text);
      break;
    }
    out.push_back(std::move(it->second));
  }
  if (varargout && out.size() < want) {
    auto it = ws().find("varargout");
    if (it != ws().end() && vxIsCell(it->second.get())) {
      const vxArray* c = it->second.get();
      for (vxSize i = 0; i < vxGetNumberOfElements(c) && out.size() < want; ++i) {
        const vxArray* el = vxGetCell(c, i);
        out.push_back(el ? Value::copyOf(el) : Value::emptyDouble());
      }
    }
    if (out.size() < static_cast<std::size_t>(nargout)) throw Error("VANTEL:sgsh:OutputNotSet", "varargout", fn.text);
  }
  return out;
}

std::vector<Value> Interpreter::callLambda(const FunctionHandle& h, std::span<const Value> args, int nargout) {
  const Node& lambda = h.lambda();
  if (args.size() > lambda.names.size() && !(lambda.names.size() && lambda.names.back() == "varargin"))
    throw Error("VANTEL:sgsh:TooManyInputs", lambda.text);
  FrameGuard frame(*this);
  Workspace& w = ws();
  for (const auto& [name, value] : h.captured()) w[name] = value;
  for (std::size_t i = 0; i < lambda.names.size() && i < args.size(); ++i)
    if (lambda.names[i] != "~") w[lambda.names[i]] = args[i];
  if (!lambda.names.empty() && lambda.names.back() == "varargin") {
    std::vector<Value> rest;
    for (std::size_t i = lambda.names.size() - 1; i < args.size(); ++i) rest.push_back(args[i]);
    w["varargin"] = ops::cellRow(std::move(rest));
  }
  std::vector<Value> out;
  evalMulti(*lambda.kids[0], out, nargout);
  return out;
}

}  // namespace sgsh
