// The syntax tree of the command language. Node kinds form one closed list,
// written once below; each entry documents what the node's children and
// fields hold. Nodes are immutable once parsed and shared, so function
// handles and function definitions can keep their bodies alive.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sgsh {

//   kind, children (kids), fields
#define SGSH_NODE_KINDS(X)                                                                  \
  /* expressions */                                                                         \
  X(Number)      /* number, imaginary */                                                    \
  X(CharLit)     /* text */                                                                 \
  X(StringLit)   /* text */                                                                 \
  X(Name)        /* text: a variable, or a function called without arguments */             \
  X(Colon)       /* a bare ':' inside an index */                                           \
  X(EndValue)    /* 'end' inside an index: the extent of the indexed dimension */           \
  X(Ignore)      /* '~' in the outputs of [a, ~] = f() */                                   \
  X(Binary)      /* op; kids: left, right */                                                \
  X(Unary)       /* op; kids: operand (prefix - + ~, postfix ' .') */                       \
  X(ShortCircuit) /* op AndAnd or OrOr; kids: left, right */                                \
  X(Range)       /* kids: first, last, or first, step, last */                              \
  X(Matrix)      /* kids: Row nodes */                                                      \
  X(CellLit)     /* kids: Row nodes */                                                      \
  X(Row)         /* kids: the elements of one row */                                        \
  X(Paren)       /* kids: base, arguments... (call or indexing with ( )) */                 \
  X(Brace)       /* kids: base, arguments... (cell indexing with { }) */                    \
  X(Field)       /* text: field name; kids: base */                                         \
  X(DynField)    /* kids: base, name expression  (s.(name)) */                              \
  X(FuncHandle)  /* text: function name (@name) */                                          \
  X(Lambda)      /* names: parameters; text: source; kids: body expression */               \
  /* statements */                                                                          \
  X(ExprStmt)    /* show; kids: expression */                                               \
  X(Assign)      /* show; kids: target, value */                                            \
  X(Command)     /* show; text: function; names: char arguments; kids: [same text as an      \
                    expression, when it parses as one] */                                   \
  X(MultiAssign) /* show; kids: targets..., value (a call) */                               \
  X(If)          /* kids: condition, Block, [condition, Block]..., [Block for else] */      \
  X(For)         /* kids: target, range expression, Block */                                \
  X(While)       /* kids: condition, Block */                                               \
  X(Break)                                                                                  \
  X(Continue)                                                                               \
  X(Return)                                                                                 \
  X(TryCatch)    /* text: catch variable or empty; kids: Block, Block */                    \
  X(Block)       /* kids: statements */                                                     \
  X(Function)    /* text: name; names: parameters; outputs: output names; kids: Block */

enum class NodeKind : std::uint8_t {
#define SGSH_X(name) name,
  SGSH_NODE_KINDS(SGSH_X)
#undef SGSH_X
};

// Operators of Binary and Unary nodes, in one closed list.
#define SGSH_OPERATORS(X)                                                                \
  X(Add, "+") X(Sub, "-") X(MatMul, "*") X(MatDiv, "/") X(MatLeftDiv, "\\")              \
  X(MatPow, "^") X(Mul, ".*") X(Div, "./") X(LeftDiv, ".\\") X(Pow, ".^")                \
  X(Eq, "==") X(Ne, "~=") X(Lt, "<") X(Le, "<=") X(Gt, ">") X(Ge, ">=")                  \
  X(And, "&") X(Or, "|") X(AndAnd, "&&") X(OrOr, "||")                                   \
  X(Neg, "-") X(Plus, "+") X(Not, "~") X(CTranspose, "'") X(Transpose, ".'")

enum class Op : std::uint8_t {
#define SGSH_X(name, text) name,
  SGSH_OPERATORS(SGSH_X)
#undef SGSH_X
};

const char* nodeKindName(NodeKind kind) noexcept;
const char* opText(Op op) noexcept;

struct Node;
using NodePtr = std::shared_ptr<const Node>;

struct Node : std::enable_shared_from_this<Node> {
  NodeKind kind;
  Op op = Op::Add;
  bool show = false;        // statement without a closing semicolon
  bool imaginary = false;   // Number written as 3i
  int line = 0;
  double number = 0;
  std::string text;
  std::vector<std::string> names;    // Lambda and Function parameters
  std::vector<std::string> outputs;  // Function outputs
  std::vector<NodePtr> kids;

  explicit Node(NodeKind k, int ln = 0) : kind(k), line(ln) {}
  // Takes apart the subtrees only this node holds with a list instead of
  // recursion, so a chain of 40,000 operators is freed without a deep stack.
  ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
};

// Writes an expression back as source text, fully parenthesised where
// precedence matters; used by tests and to show what a parse produced.
std::string toSource(const Node& node);

}  // namespace sgsh
