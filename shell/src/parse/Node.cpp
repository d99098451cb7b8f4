// Names of node kinds and operators, and the writer that turns an expression
// back into source text.
#include "sgsh/Node.h"

namespace sgsh {

const char* nodeKindName(NodeKind kind) noexcept {
  switch (kind) {
#define SGSH_X(name) \
  case NodeKind::name: \
    return #name;
    SGSH_NODE_KINDS(SGSH_X)
#undef SGSH_X
  }
  return "?";
}

const char* opText(Op op) noexcept {
  switch (op) {
#define SGSH_X(name, text) \
  case Op::name:           \
    return text;
    SGSH_OPERATORS(SGSH_X)
#undef SGSH_X
  }
  return "?";
}

namespace {

std::string joinKids(const Node& n, std::size_t from, const char* sep) {
  std::string s;
  for (std::size_t i = from; i < n.kids.size(); ++i) {
    if (i > from) s += sep;
    s += toSource(*n.kids[i]);
  }
  return s;
}

std::string quoted(const std::string& text, char q) {
  std::string s(1, q);
  for (char c : text) {
    s.push_back(c);
    if (c == q) s.push_back(q);
  }
  s.push_back(q);
  return s;
}

std::string rows(const Node& n, char open, char close) {
  std::string s(1, open);
  for (std::size_t i = 0; i < n.kids.size(); ++i) {
    if (i > 0) s += "; ";
    s += joinKids(*n.kids[i], 0, ", ");
  }
  s.push_back(close);
  return s;
}

}  // namespace

Node::~Node() {
  std::vector<NodePtr> pending;
  auto takeKids = [&pending](std::vector<NodePtr>& kids) {
    for (NodePtr& k : kids)
      if (k.use_count() == 1) pending.push_back(std::move(k));
    kids.clear();
  };
  takeKids(kids);
  while (!pending.empty()) {
    NodePtr n = std::move(pending.back());
    pending.pop_back();
    // The last owner: its kids move to the list before it goes, so its
    // destructor finds none. Trees are built mutable and frozen as const.
    takeKids(const_cast<Node&>(*n).kids);
  }
}

namespace {
// Text of deeper parts is elided: error messages never need more, and the
// walk stays shallow for any tree.
thread_local int sourceDepth = 0;
}  // namespace

std::string toSource(const Node& n) {
  if (sourceDepth >= 64) return "...";
  struct Deeper {
    Deeper() { ++sourceDepth; }
    ~Deeper() { --sourceDepth; }
  } deeper;
  switch (n.kind) {
    case NodeKind::Number:
      return n.text + (n.imaginary ? "i" : "");
    case NodeKind::CharLit:
      return quoted(n.text, '\'');
    case NodeKind::StringLit:
      return quoted(n.text, '"');
    case NodeKind::Name:
      return n.text;
    case NodeKind::Colon:
      return ":";
    case NodeKind::EndValue:
      return "end";
    case NodeKind::Ignore:
      return "~";
    case NodeKind::Binary:
    case NodeKind::ShortCircuit:
      return "(" + toSource(*n.kids[0]) + " " + opText(n.op) + " " + toSource(*n.kids[1]) + ")";
    case NodeKind::Unary:
      if (n.op == Op::CTranspose || n.op == Op::Transpose) return "(" + toSource(*n.kids[0]) + opText(n.op) + ")";
      return std::string("(") + opText(n.op) + toSource(*n.kids[0]) + ")";
    case NodeKind::Range:
      return "(" + joinKids(n, 0, ":") + ")";
    case NodeKind::Matrix:
      return rows(n, '[', ']');
    case NodeKind::CellLit:
      return rows(n, '{', '}');
    case NodeKind::Row:
      return joinKids(n, 0, ", ");
    case NodeKind::Paren:
      return toSource(*n.kids[0]) + "(" + joinKids(n, 1, ", ") + ")";
    case NodeKind::Brace:
      return toSource(*n.kids[0]) + "{" + joinKids(n, 1, ", ") + "}";
    case NodeKind::Field:
      return toSource(*n.kids[0]) + "." + n.text;
    case NodeKind::DynField:
      return toSource(*n.kids[0]) + ".(" + toSource(*n.kids[1]) + ")";
    case NodeKind::FuncHandle:
      return "@" + n.text;
    case NodeKind::Lambda: {
      std::string s = "@(";
      for (std::size_t i = 0; i < n.names.size(); ++i) s += (i ? ", " : "") + n.names[i];
      return s + ") " + toSource(*n.kids[0]);
    }
    case NodeKind::ExprStmt:
      return toSource(*n.kids[0]);
    case NodeKind::Assign:
      return toSource(*n.kids[0]) + " = " + toSource(*n.kids[1]);
    case NodeKind::Command: {
      std::string s = n.text;
      for (const std::string& w : n.names) s += " " + quoted(w, '\'');
      return s;
    }
    case NodeKind::MultiAssign:
      return "[" + joinKids(n, 0, ", ").substr(0, std::string::npos) + "] = ...";
    case NodeKind::If:
    case NodeKind::For:
    case NodeKind::While:
    case NodeKind::Break:
    case NodeKind::Continue:
    case NodeKind::Return:
    case NodeKind::TryCatch:
    case NodeKind::Block:
    case NodeKind::Function:
      return nodeKindName(n.kind);
  }
  return {};
}

}  // namespace sgsh
