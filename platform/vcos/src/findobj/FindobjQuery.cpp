// Compiling a findobj argument list into a postfix program, and running that
// program on one object.
//
// Grammar: terms are property-value pairs, "-property P", "-regexp P R",
// "-class C", "-isa C", "-function F" and "-function P F". "-not" applies to
// the term after it; "-and" binds tighter than "-or"; two terms side by side
// are joined by "-and". "-depth D" may stand anywhere between terms.
#include "vcos/src/findobj/FindobjQuery.h"

#include <algorithm>
#include <cassert>

#include "foundation/core/except/Error.h"
#include "vcos/src/findobj/PropertyResolver.h"
#include "vcos/src/findobj/TextCompare.h"
#include "vx/matrix.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace vcos::search {

using foundation::core::except::Error;

Term::Term(TermKind k) : kind(k) {}
Term::~Term() = default;
Term::Term(Term&&) noexcept = default;
Term& Term::operator=(Term&&) noexcept = default;

namespace {

std::string utf8(const vxArray* a) { return vxArrayToStdString(a); }

// The option word of an argument ("-depth"), lower-cased, or empty.
std::string optionWord(const vxArray* a) {
  if (!isText(a)) return {};
  std::string s = utf8(a);
  if (s.size() < 2 || s[0] != '-') return {};
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(c >= 'A' && c <= 'Z' ? c + 32 : c); });
  return s;
}

class Parser {
 public:
  Parser(int nargs, const vxArray* const args[]) : n_(nargs), args_(args) {}

  const vxArray* take(const char* what) {
    if (i_ >= n_) throw Error("VANTEL:vcos:findobj:MissingValue", what);
    return args_[i_++];
  }
  std::string takeText(const char* what) {
    const vxArray* a = take(what);
    if (!isText(a)) throw Error("VANTEL:vcos:findobj:ExpectedText", what);
    return utf8(a);
  }
  bool more() const { return i_ < n_; }
  const vxArray* peek() const { return i_ < n_ ? args_[i_] : nullptr; }
  int position() const { return i_; }

 private:
  int n_;
  const vxArray* const* args_;
  int i_ = 0;
};

std::shared_ptr<const vxFunctionHandleData> takeFunction(Parser& p) {
  const vxArray* f = p.take("-function");
  if (!vxIsFunctionHandle(f) || !vxIsScalar(f)) throw Error("VANTEL:vcos:findobj:ExpectedFunction");
  return vxGetFunctionHandle(f);
}

}  // namespace

Query::Query(int nargs, const vxArray* const args[]) {
  Parser p(nargs, args);
  // Shunting-yard over the three operators; terms go straight to the output.
  std::vector<Step::Op> ops;
  bool expectOperand = true;  // at the start, after an operator, after -not
  auto precedence = [](Step::Op op) { return op == Step::Not ? 3 : op == Step::And ? 2 : 1; };
  auto pushBinary = [&](Step::Op op) {
    while (!ops.empty() && precedence(ops.back()) >= precedence(op)) {
      program_.push_back({ops.back(), 0});
      ops.pop_back();
    }
    ops.push_back(op);
  };
  auto pushTerm = [&](Term&& t) {
    if (!expectOperand) pushBinary(Step::And);  // terms side by side
    terms_.push_back(std::move(t));
    program_.push_back({Step::Test, unsigned(terms_.size() - 1)});
    // A -not waiting for this term applies now.
    while (!ops.empty() && ops.back() == Step::Not) {
      program_.push_back({Step::Not, 0});
      ops.pop_back();
    }
    expectOperand = false;
  };

  while (p.more()) {
    const vxArray* a = p.take("");
    const std::string opt = optionWord(a);
    if (opt.empty()) {
      if (!isText(a)) throw Error("VANTEL:vcos:findobj:ExpectedPropertyName", p.position());
      Term t(TermKind::PropertyValue);
      const std::string name = utf8(a);
      t.property = std::make_unique<PropertyResolver>(COSID(name));
      t.value = p.take(name.c_str());
      t.valueIsText = isText(t.value);
      if (t.valueIsText) {
        t.foldedText = foldCase(textOf(t.value));
        t.asciiText = std::all_of(t.foldedText.begin(), t.foldedText.end(), [](char16_t c) { return c < 0x80; });
        if (t.asciiText) t.asciiFoldedText.assign(t.foldedText.begin(), t.foldedText.end());
      }
      pushTerm(std::move(t));
    } else if (opt == "-depth") {
      const vxArray* d = p.take("-depth");
      if (!vxIsNumeric(d) || !vxIsScalar(d) || vxIsComplex(d)) throw Error("VANTEL:vcos:findobj:BadDepth");
      const double v = vxGetScalar(d);
      if (!(v >= 0) || (std::isfinite(v) && v != std::floor(v))) throw Error("VANTEL:vcos:findobj:BadDepth");
      depth_ = v;
    } else if (opt == "-property") {
      Term t(TermKind::HasProperty);
      t.property = std::make_unique<PropertyResolver>(COSID(p.takeText("-property")));
      pushTerm(std::move(t));
    } else if (opt == "-regexp") {
      Term t(TermKind::Regexp);
      t.property = std::make_unique<PropertyResolver>(COSID(p.takeText("-regexp")));
      const std::string pattern = p.takeText("-regexp");
      // RE2 matches in time linear in the text and without recursion, so
      // neither long values nor hostile patterns can stall or overflow.
      re2::RE2::Options options;
      options.set_log_errors(false);
      auto compiled = std::make_unique<re2::RE2>(pattern, options);
      if (!compiled->ok()) throw Error("VANTEL:vcos:findobj:BadRegexp", pattern, compiled->error());
      t.pattern = std::move(compiled);
      pushTerm(std::move(t));
    } else if (opt == "-class" || opt == "-isa") {
      Term t(opt == "-class" ? TermKind::Class : TermKind::Isa);
      t.classId = COSID(p.takeText(opt.c_str()));
      pushTerm(std::move(t));
    } else if (opt == "-function") {
      if (isText(p.peek())) {
        Term t(TermKind::FunctionOfProperty);
        t.property = std::make_unique<PropertyResolver>(COSID(p.takeText("-function")));
        t.function = takeFunction(p);
        pushTerm(std::move(t));
      } else {
        Term t(TermKind::Function);
        t.function = takeFunction(p);
        pushTerm(std::move(t));
      }
    } else if (opt == "-not") {
      if (!expectOperand) pushBinary(Step::And);
      ops.push_back(Step::Not);
      expectOperand = true;
    } else if (opt == "-and" || opt == "-or") {
      if (expectOperand) throw Error("VANTEL:vcos:findobj:MisplacedOperator", opt);
      pushBinary(opt == "-and" ? Step::And : Step::Or);
      expectOperand = true;
    } else {
      throw Error("VANTEL:vcos:findobj:UnknownOption", utf8(a));
    }
  }
  if (expectOperand && !ops.empty()) {
    const Step::Op last = ops.back();
    throw Error("VANTEL:vcos:findobj:MisplacedOperator", last == Step::Not ? "-not" : last == Step::And ? "-and" : "-or");
  }
  while (!ops.empty()) {
    program_.push_back({ops.back(), 0});
    ops.pop_back();
  }
  stack_.resize(program_.size());
  if (program_.size() == 1 && terms_[0].kind == TermKind::PropertyValue && terms_[0].valueIsText)
    keyed_ = terms_[0].property.get();
  for (const Term& t : terms_) {
    if (t.property && t.kind != TermKind::HasProperty) readers_.push_back(t.property.get());
    // Class tests and the look-up of a property name run no code.
    if (t.kind != TermKind::HasProperty && t.kind != TermKind::Class && t.kind != TermKind::Isa) mayRunCode_ = true;
  }
}

Query::~Query() = default;

bool Query::callsFunctions() const noexcept {
  return std::any_of(terms_.begin(), terms_.end(), [](const Term& t) {
    return t.kind == TermKind::Function || t.kind == TermKind::FunctionOfProperty;
  });
}

bool Query::readsProperties() const noexcept { return !readers_.empty(); }

bool Query::mayRunCodeForOther(COSInterface* object) {
  codeFreeClass_ = nullptr;
  bool forClass = true;
  for (Term& t : terms_) {
    switch (t.kind) {
      case TermKind::Function:
      case TermKind::FunctionOfProperty:
        return true;
      case TermKind::PropertyValue:
      case TermKind::Regexp:
        switch (t.property->readsWithoutCode(object)) {
          case PropertyResolver::CodeFree::No:
            return true;
          case PropertyResolver::CodeFree::Object:
            forClass = false;
            break;
          case PropertyResolver::CodeFree::Class:
            break;
        }
        break;
      case TermKind::HasProperty:
      case TermKind::Class:
      case TermKind::Isa:
        break;
    }
  }
  if (forClass) codeFreeClass_ = object->getClass();
  return false;
}

bool Query::evaluate(COSInterface* object, bool codeMayRun) {
  const bool result = run(object);
  // What is kept per class is made again after code may have run.
  if (codeMayRun && mayRunCode_) {
    if (keyed_) keyed_->forgetKeyPlan();
    codeFreeClass_ = nullptr;
  }
  return result;
}

bool Query::run(COSInterface* object) {
  if (program_.empty()) return true;
  if (program_.size() == 1) return test(terms_[0], object);  // the common single condition
  size_t top = 0;
  for (const Step& s : program_) {
    switch (s.op) {
      case Step::Test:
        stack_[top++] = test(terms_[s.term], object);
        break;
      case Step::Not:
        assert(top >= 1 && "findobj program underflow");
        stack_[top - 1] = !stack_[top - 1];
        break;
      case Step::And:
        assert(top >= 2 && "findobj program underflow");
        --top;
        stack_[top - 1] = stack_[top - 1] && stack_[top];
        break;
      case Step::Or:
        assert(top >= 2 && "findobj program underflow");
        --top;
        stack_[top - 1] = stack_[top - 1] || stack_[top];
        break;
    }
  }
  assert(top == 1 && "findobj program left more than one result");
  return stack_[0];
}

}  // namespace vcos::search
