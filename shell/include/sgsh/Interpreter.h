// The evaluator of the command language: runs parsed programs over vxArray
// values, keeps the workspaces, calls script functions, built-ins and
// function handles, and displays results of statements without a semicolon.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sgsh/Node.h"
#include "sgsh/Value.h"

namespace sgsh {

class CallbackRunner;
class FunctionHandle;

class Interpreter {
 public:
  Interpreter();
  ~Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  // Parses and runs source text in the base workspace. The functions it
  // defines stay known for later runs. An uncaught error propagates.
  void run(std::string_view source);
  // Runs code in the base workspace even while functions run: what a
  // callback given as text does. Functions it defines stay known; the parsed
  // code itself is not kept.
  void runInBase(std::string_view source);

  // Variables of the current workspace.
  const Value* findVariable(const std::string& name) const;
  void setVariable(const std::string& name, Value value);
  // Names of the current workspace's variables, sorted.
  std::vector<std::string> variableNames() const;
  // Removes one variable (false when there is none of that name), or all.
  bool clearVariable(const std::string& name);
  void clearVariables();

  // Calls a function by name (script function, then built-in) or a handle.
  std::vector<Value> call(const std::string& name, std::span<const Value> args, int nargout);
  std::vector<Value> callHandle(const vxArray* handle, std::span<const Value> args, int nargout);
  std::vector<Value> callHandleData(const FunctionHandle& handle, std::span<const Value> args, int nargout);

  // The interpreter that built-ins and callbacks reached through the
  // platform's dispatcher run in: the one running code on this thread, else
  // the newest one alive. Raises VANTEL:sgsh:NoInterpreter when none is.
  static Interpreter& current();
  bool isFunction(const std::string& name) const;

  // A value made from a function handle's data.
  Value makeHandle(std::shared_ptr<const FunctionHandle> data) const;

  // At most this many statements run from now on (0: no limit), each
  // element a statement shows counting as one more; past it the running
  // code raises VANTEL:sgsh:StepLimit. Hosts that run untrusted code in a
  // bounded time set it.
  void setStepLimit(std::uint64_t steps) noexcept {
    stepLimit_ = steps;
    steps_ = 0;
  }

  // Asks the code running now (on any interpreter) to stop at its next
  // statement with VANTEL:sgsh:Interrupted; safe in a signal handler.
  // clearInterrupt() forgets a request no code took up.
  static void requestInterrupt() noexcept { interrupt_.store(true, std::memory_order_relaxed); }
  static void clearInterrupt() noexcept { interrupt_.store(false, std::memory_order_relaxed); }

  // tic/toc state.
  std::chrono::steady_clock::time_point& timer() noexcept { return timer_; }

 private:
  enum class Flow { Normal, Break, Continue, Return };
  using Workspace = std::unordered_map<std::string, Value>;

  // What 'end' means inside the index being evaluated.
  struct EndContext {
    const vxArray* array;
    std::size_t position;
    std::size_t count;
  };

  // statements
  Flow execBlock(const Node& block);
  Flow exec(const Node& stmt);
  void execExprStmt(const Node& stmt);
  void execAssign(const Node& stmt);
  void execCommand(const Node& stmt);
  void execMultiAssign(const Node& stmt);
  Flow execIf(const Node& stmt);
  Flow execFor(const Node& stmt);
  Flow execWhile(const Node& stmt);
  Flow execTry(const Node& stmt);
  void assignTo(const Node& target, Value value, bool show);
  // The value of base after assigning rhs at chain[k...]. root names the
  // variable base was read from, at the outermost level only.
  Value assignPath(Value base, const std::vector<const Node*>& chain, std::size_t k, Value rhs,
                   const std::string* root = nullptr);
  void show(const std::string& name, const Value& value);

  // expressions
  Value eval(const Node& expr);
  // l op r for a Binary node, objects compared through their eq and ne.
  Value evalBinary(const Node& op, const vxArray* l, const vxArray* r);
  // The value of an expression without copying a variable: the variable's
  // own array, or the result kept in holder.
  const vxArray* evalBorrowed(const Node& expr, Value& holder);
  // An expression that may give several values (c{:}, s.f of a struct
  // array, a call asked for nargout outputs).
  void evalMulti(const Node& expr, std::vector<Value>& out, int nargout = 1);
  void evalArgs(const Node& node, const vxArray* indexed, std::vector<Value>& args);
  void evalParen(const Node& expr, std::vector<Value>& out, int nargout);
  void evalBrace(const Node& expr, std::vector<Value>& out);
  void evalField(const Node& expr, std::vector<Value>& out, int nargout);
  Value evalMatrix(const Node& expr);
  Value evalCellLit(const Node& expr);
  Value evalRange(const Node& expr);
  Value evalLambda(const Node& expr);
  Value evalEnd(const Node& expr);
  bool truth(const Value& v, const Node& where);
  std::string fieldName(const Node& accessor);

  // calls
  std::vector<Value> callUser(const Node& fn, std::span<const Value> args, int nargout);
  std::vector<Value> callLambda(const FunctionHandle& h, std::span<const Value> args, int nargout);

  void countStep() {
    if (interrupt_.load(std::memory_order_relaxed)) throwInterrupted();
    if (stepLimit_ != 0 && ++steps_ > stepLimit_) throwStepLimit();
  }
  [[noreturn]] void throwStepLimit() const;
  [[noreturn]] static void throwInterrupted();

  Workspace& ws() noexcept { return *frames_.back(); }
  const Workspace& ws() const noexcept { return *frames_.back(); }

  // RAII for a function's workspace, and for the interpreter running code.
  class DepthGuard;
  class FrameGuard;
  class RunningGuard;
  // A dotted name (pkg.sub.Class) written as fields of a name that is
  // neither a variable nor a function; empty otherwise.
  std::string dottedName(const Node& n) const;

  std::vector<std::unique_ptr<Workspace>> frames_;
  // Entries into the evaluator now running: function calls and callback
  // code run in the base workspace (whose callers' workspaces step aside).
  std::size_t depth_ = 0;
  static std::atomic<bool> interrupt_;
  static_assert(std::atomic<bool>::is_always_lock_free, "set from a signal handler");
  std::uint64_t stepLimit_ = 0;
  std::uint64_t steps_ = 0;
  std::map<std::string, NodePtr, std::less<>> functions_;
  std::vector<EndContext> ends_;
  std::chrono::steady_clock::time_point timer_;
  std::unique_ptr<CallbackRunner> callbacks_;  // the language runs callbacks while this lives
};

}  // namespace sgsh
