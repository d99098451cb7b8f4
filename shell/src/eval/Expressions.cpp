// The evaluator's expressions: literals, operators, ranges, matrix and cell
// literals, indexing and field access (which may give several values),
// calls by name, 'end' inside an index, and function handles.
#include <algorithm>
#include <cmath>
#include <complex>
#include <set>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "eval/Concat.h"
#include "eval/Indexing.h"
#include "eval/ObjectBridge.h"
#include "eval/Operators.h"
#include "eval/StackLimit.h"
#include "sgsh/FunctionHandle.h"
#include "sgsh/Interpreter.h"

namespace sgsh {

using foundation::core::except::Error;

namespace {

// The operands of a left-leaning chain of one node kind, a + b + c ... as
// ((a + b) + c) ...: the nodes from the innermost outwards. Long chains are
// evaluated along this list rather than by recursion.
std::vector<const Node*> leftSpine(const Node& top) {
  std::vector<const Node*> spine;
  for (const Node* n = &top; n->kind == top.kind; n = n->kids[0].get()) spine.push_back(n);
  std::reverse(spine.begin(), spine.end());
  return spine;
}

}  // namespace

Value Interpreter::evalBinary(const Node& e, const vxArray* l, const vxArray* r) {
  if ((e.op == Op::Eq || e.op == Op::Ne) && (vxIsObject(l) || vxIsObject(r))) {
    // Objects compare by identity through their class's eq and ne.
    std::vector<Value> args{Value::copyOf(l), Value::copyOf(r)};
    std::vector<Value> out = call(e.op == Op::Eq ? "eq" : "ne", args, 1);
    if (out.empty()) throw Error("VANTEL:sgsh:NoValue");
    return std::move(out[0]);
  }
  return ops::binary(e.op, l, r);
}

Value Interpreter::eval(const Node& e) {
  checkStackRoom();
  switch (e.kind) {
    case NodeKind::Number:
      if (e.imaginary) {
        const std::vector<std::complex<double>> v{{0.0, e.number}};
        return ops::complexes({1, 1}, v);
      }
      return Value::scalar(e.number);
    case NodeKind::CharLit:
      return Value::text(e.text);
    case NodeKind::StringLit: {
      Value s(vxCreateStringArray(1, 1));
      vxSetStringElement(s.mut(), 0, matrix::get_ustring(Value::text(e.text).get()));
      return s;
    }
    case NodeKind::Name: {
      if (const Value* v = findVariable(e.text)) return *v;
      std::vector<Value> out = call(e.text, {}, 1);
      if (out.empty()) throw Error("VANTEL:sgsh:NoValue");
      return std::move(out[0]);
    }
    case NodeKind::Colon:
      return Value::text(":");
    case NodeKind::EndValue:
      return evalEnd(e);
    case NodeKind::Binary: {
      if (e.kids[0]->kind != NodeKind::Binary) {
        Value lh, rh;
        const vxArray* l = evalBorrowed(*e.kids[0], lh);
        const vxArray* r = evalBorrowed(*e.kids[1], rh);
        return evalBinary(e, l, r);
      }
      const std::vector<const Node*> spine = leftSpine(e);
      Value acc = eval(*spine.front()->kids[0]);
      for (const Node* n : spine) {
        Value rh;
        const vxArray* r = evalBorrowed(*n->kids[1], rh);
        acc = evalBinary(*n, acc.get(), r);
      }
      return acc;
    }
    case NodeKind::Unary: {
      Value holder;
      return ops::unary(e.op, evalBorrowed(*e.kids[0], holder));
    }
    case NodeKind::ShortCircuit: {
      auto scalarTruth = [&](const Node& side) {
        Value v = eval(side);
        if (!ops::isNumberLike(v.get()) || vxGetNumberOfElements(v.get()) != 1)
          throw Error("VANTEL:sgsh:NotLogicalScalar", opText(e.op));
        return truth(v, side);
      };
      const std::vector<const Node*> spine = leftSpine(e);
      bool value = scalarTruth(*spine.front()->kids[0]);
      for (const Node* n : spine) {
        // a && b is decided by a false a, a || b by a true a.
        if (n->op == Op::AndAnd ? value : !value) value = scalarTruth(*n->kids[1]);
      }
      return Value::logical(value);
    }
    case NodeKind::Range:
      return evalRange(e);
    case NodeKind::Matrix:
      return evalMatrix(e);
    case NodeKind::CellLit:
      return evalCellLit(e);
    case NodeKind::FuncHandle:
      return makeHandle(std::make_shared<FunctionHandle>(e.text));
    case NodeKind::Lambda:
      return evalLambda(e);
    case NodeKind::Paren:
    case NodeKind::Brace:
    case NodeKind::Field:
    case NodeKind::DynField: {
      std::vector<Value> out;
      evalMulti(e, out, 1);
      if (out.empty()) throw Error("VANTEL:sgsh:NoValue");
      return std::move(out[0]);
    }
    case NodeKind::Ignore:
    case NodeKind::Row:
    case NodeKind::ExprStmt:
    case NodeKind::Assign:
    case NodeKind::Command:
    case NodeKind::MultiAssign:
    case NodeKind::If:
    case NodeKind::For:
    case NodeKind::While:
    case NodeKind::Break:
    case NodeKind::Continue:
    case NodeKind::Return:
    case NodeKind::TryCatch:
    case NodeKind::Block:
    case NodeKind::Function:
      break;
  }
  throw Error("VANTEL:sgsh:NotAValue", nodeKindName(e.kind));
}

const vxArray* Interpreter::evalBorrowed(const Node& e, Value& holder) {
  if (e.kind == NodeKind::Name)
    if (const Value* v = findVariable(e.text)) return v->get();
  holder = eval(e);
  return holder.get();
}

void Interpreter::evalMulti(const Node& e, std::vector<Value>& out, int nargout) {
  switch (e.kind) {
    case NodeKind::Paren: return evalParen(e, out, nargout);
    case NodeKind::Brace: return evalBrace(e, out);
    case NodeKind::Field:
    case NodeKind::DynField: return evalField(e, out, nargout);
    case NodeKind::Name:
      if (const Value* v = findVariable(e.text)) {
        out.push_back(*v);
      } else {
        for (Value& v : call(e.text, {}, nargout)) out.push_back(std::move(v));
      }
      return;
    default:
      out.push_back(eval(e));
  }
}

namespace {

// Marks the array whose index is being evaluated, for 'end'.
template <class Stack, class Ctx>
class EndGuard {
 public:
  EndGuard(Stack& s, Ctx c) : s_(s) { s_.push_back(c); }
  ~EndGuard() { s_.pop_back(); }
  EndGuard(const EndGuard&) = delete;
  EndGuard& operator=(const EndGuard&) = delete;

 private:
  Stack& s_;
};

}  // namespace

void Interpreter::evalArgs(const Node& node, const vxArray* indexed, std::vector<Value>& args) {
  const std::size_t count = node.kids.size() - 1;
  for (std::size_t k = 1; k <= count; ++k) {
    EndGuard guard(ends_, EndContext{indexed, k - 1, count});
    evalMulti(*node.kids[k], args, 1);
  }
}

Value Interpreter::evalEnd(const Node&) {
  // A call's arguments have no 'end'; an undefined variable being assigned
  // has extent zero.
  if (ends_.empty() || ends_.back().count == 0) throw Error("VANTEL:sgsh:EndOutsideIndex");
  const EndContext& c = ends_.back();
  if (!c.array) return Value::scalar(0);
  const ops::Dims d = ops::dimsOf(c.array);
  vxSize e = 1;
  if (c.position + 1 < c.count) {
    e = c.position < d.size() ? d[c.position] : 1;
  } else {
    for (std::size_t j = c.position; j < d.size(); ++j) e *= d[j];
  }
  return Value::scalar(static_cast<double>(e));
}

void Interpreter::evalParen(const Node& e, std::vector<Value>& out, int nargout) {
  const Node& base = *e.kids[0];
  // display(x) of a variable, as a statement, shows it as naming it does,
  // name included (unless the script defines its own display).
  if (base.kind == NodeKind::Name && base.text == "display" && nargout == 0 && e.kids.size() == 2 &&
      e.kids[1]->kind == NodeKind::Name && !findVariable(base.text) && !functions_.count(base.text)) {
    if (const Value* v = findVariable(e.kids[1]->text)) {
      show(e.kids[1]->text, *v);
      return;
    }
  }
  // A name that is not a variable is a call.
  if (base.kind == NodeKind::Name && !findVariable(base.text)) {
    std::vector<Value> args;
    for (std::size_t k = 1; k < e.kids.size(); ++k) {
      EndGuard guard(ends_, EndContext{nullptr, 0, 0});
      evalMulti(*e.kids[k], args, 1);
    }
    for (Value& v : call(base.text, args, nargout)) out.push_back(std::move(v));
    return;
  }
  // pkg.Class(args) constructs an object.
  if (base.kind == NodeKind::Field) {
    const std::string cls = dottedName(base);
    if (!cls.empty() && ObjectBridge::current().isClass(cls)) {
      std::vector<Value> args;
      for (std::size_t k = 1; k < e.kids.size(); ++k) {
        EndGuard guard(ends_, EndContext{nullptr, 0, 0});
        evalMulti(*e.kids[k], args, 1);
      }
      out.push_back(ObjectBridge::current().construct(cls, args));
      return;
    }
    // pkg.Class.method(args) and Class.method(args) call a static method.
    const std::string owner = dottedName(*base.kids[0]);
    if (!owner.empty() && ObjectBridge::current().isClass(owner)) {
      std::vector<Value> args;
      for (std::size_t k = 1; k < e.kids.size(); ++k) {
        EndGuard guard(ends_, EndContext{nullptr, 0, 0});
        evalMulti(*e.kids[k], args, 1);
      }
      ObjectBridge::current().callStatic(owner, base.text, args, nargout, out);
      return;
    }
  }
  // obj.method(args)
  if (base.kind == NodeKind::Field) {
    Value owner = eval(*base.kids[0]);
    if (vxIsObject(owner.get())) {
      std::vector<Value> args;
      evalArgs(e, nullptr, args);
      std::vector<Value> res;
      if (ObjectBridge::current().callMethod(owner.get(), base.text, args, nargout, res)) {
        for (Value& v : res) out.push_back(std::move(v));
        return;
      }
    }
    std::vector<Value> fieldVals;
    Value single;
    if (vxIsObject(owner.get())) {
      single = ObjectBridge::current().getProperty(owner.get(), base.text);
    } else {
      if (!vxIsStruct(owner.get())) throw Error("VANTEL:sgsh:FieldOfNonStruct", vxGetClassName(owner.get()));
      const int f = vxGetFieldNumber(owner.get(), base.text.c_str());
      if (f < 0) throw Error("VANTEL:sgsh:NoSuchField", base.text);
      if (vxGetNumberOfElements(owner.get()) != 1) throw Error("VANTEL:sgsh:NotOneElement", vxGetNumberOfElements(owner.get()));
      const vxArray* el = vxGetFieldByNumber(owner.get(), 0, f);
      single = el ? Value::copyOf(el) : Value::emptyDouble();
    }
    std::vector<Value> args;
    evalArgs(e, single.get(), args);
    if (vxIsFunctionHandle(single.get())) {
      for (Value& v : callHandle(single.get(), args, nargout)) out.push_back(std::move(v));
      return;
    }
    out.push_back(ops::indexGet(single.get(), args));
    return;
  }
  Value v = eval(base);
  std::vector<Value> args;
  evalArgs(e, v.get(), args);
  if (vxIsFunctionHandle(v.get())) {
    for (Value& r : callHandle(v.get(), args, nargout)) out.push_back(std::move(r));
    return;
  }
  out.push_back(ops::indexGet(v.get(), args));
}

void Interpreter::evalBrace(const Node& e, std::vector<Value>& out) {
  Value v = eval(*e.kids[0]);
  if (!vxIsCell(v.get())) throw Error("VANTEL:sgsh:BraceOnNonCell", vxGetClassName(v.get()));
  std::vector<Value> args;
  evalArgs(e, v.get(), args);
  const ops::Selection s = ops::select(v.get(), args);
  for (vxIndex p : s.positions) {
    const vxArray* el = vxGetCell(v.get(), p);
    out.push_back(el ? Value::copyOf(el) : Value::emptyDouble());
  }
}

std::string Interpreter::fieldName(const Node& acc) {
  if (acc.kind == NodeKind::Field) return acc.text;
  Value n = eval(*acc.kids[1]);
  return ops::nameOf(n.get(), "dynamic field name");
}

void Interpreter::evalField(const Node& e, std::vector<Value>& out, int nargout) {
  if (e.kind == NodeKind::Field) {
    const std::string cls = dottedName(e);
    if (!cls.empty() && ObjectBridge::current().isClass(cls)) {
      out.push_back(ObjectBridge::current().construct(cls, {}));
      return;
    }
    const std::string owner = dottedName(*e.kids[0]);
    if (!owner.empty() && ObjectBridge::current().isClass(owner)) {
      ObjectBridge::current().callStatic(owner, e.text, {}, nargout, out);
      return;
    }
  }
  Value v = eval(*e.kids[0]);
  const std::string name = fieldName(e);
  if (vxIsObject(v.get())) {
    // h.Prop, or h.method without parentheses.
    ObjectBridge& bridge = ObjectBridge::current();
    if (!bridge.hasProperty(v.get(), name) && bridge.callMethod(v.get(), name, {}, nargout, out)) return;
    const vxSize n = vxGetNumberOfElements(v.get());
    if (n == 1) {
      out.push_back(bridge.getProperty(v.get(), name));
      return;
    }
    // h.Prop of several objects gives one value per object.
    for (vxSize i = 0; i < n; ++i)
      out.push_back(bridge.getProperty(ops::gather(v.get(), std::vector<vxIndex>{i}, {1, 1}).get(), name));
    return;
  }
  if (!vxIsStruct(v.get())) throw Error("VANTEL:sgsh:FieldOfNonStruct", vxGetClassName(v.get()));
  const int f = vxGetFieldNumber(v.get(), name.c_str());
  if (f < 0) throw Error("VANTEL:sgsh:NoSuchField", name);
  const vxSize n = vxGetNumberOfElements(v.get());
  for (vxSize i = 0; i < n; ++i) {
    const vxArray* el = vxGetFieldByNumber(v.get(), i, f);
    out.push_back(el ? Value::copyOf(el) : Value::emptyDouble());
  }
}

Value Interpreter::evalRange(const Node& e) {
  Value first = eval(*e.kids[0]);
  Value step = e.kids.size() == 3 ? eval(*e.kids[1]) : Value();
  Value last = eval(*e.kids.back());
  return ops::range(first.get(), step.get(), last.get());
}

Value Interpreter::evalMatrix(const Node& e) {
  std::vector<Value> rows;
  for (const NodePtr& row : e.kids) {
    std::vector<Value> items;
    for (const NodePtr& item : row->kids) evalMulti(*item, items, 1);
    rows.push_back(ops::concat(items, true));
  }
  if (rows.empty()) return Value::emptyDouble();
  return ops::concat(rows, false);
}

Value Interpreter::evalCellLit(const Node& e) {
  std::vector<Value> rows;
  for (const NodePtr& row : e.kids) {
    std::vector<Value> items;
    for (const NodePtr& item : row->kids) evalMulti(*item, items, 1);
    std::vector<Value> cells;
    for (Value& v : items) {
      Value c(vxCreateCellMatrix(1, 1));
      vxSetCell(c.mut(), 0, v.release());
      cells.push_back(std::move(c));
    }
    if (!cells.empty()) rows.push_back(ops::concat(cells, true));
  }
  if (rows.empty()) return Value(vxCreateCellMatrix(0, 0));
  return ops::concat(rows, false);
}

Value Interpreter::evalLambda(const Node& e) {
  // Captures the current value of every variable the body names, except
  // the parameters.
  std::map<std::string, Value> captured;
  const std::set<std::string> params(e.names.begin(), e.names.end());
  std::vector<const Node*> pending{e.kids[0].get()};  // a list, not recursion: bodies may be long chains
  while (!pending.empty()) {
    const Node& n = *pending.back();
    pending.pop_back();
    if (n.kind == NodeKind::Name && !params.count(n.text) && !captured.count(n.text)) {
      if (const Value* v = findVariable(n.text)) captured.emplace(n.text, *v);
    }
    for (const NodePtr& k : n.kids) pending.push_back(k.get());
  }
  return makeHandle(std::make_shared<FunctionHandle>(e.shared_from_this(), std::move(captured)));
}

bool Interpreter::truth(const Value& v, const Node&) {
  const vxArray* a = v.get();
  if (vxIsEmpty(a)) return false;
  if (!ops::isNumberLike(a)) throw Error("VANTEL:sgsh:NotLogical", vxGetClassName(a));
  const vxSize n = vxGetNumberOfElements(a);
  if (vxIsLogical(a)) {
    const bool* p = vxGetLogicals(a);
    for (vxSize i = 0; i < n; ++i)
      if (!p[i]) return false;
    return true;
  }
  for (vxSize i = 0; i < n; ++i) {
    const double x = ops::realAt(a, i);
    if (std::isnan(x)) throw Error("VANTEL:sgsh:NaNToLogical");
    if (x == 0 && ops::complexAt(a, i).imag() == 0) return false;
  }
  return true;
}

}  // namespace sgsh
