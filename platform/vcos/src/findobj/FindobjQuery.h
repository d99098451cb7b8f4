// Not installed; internal to the findobj of class "handle".
//
// A findobj argument list compiled once into a postfix program of terms and
// operators, then evaluated per object with no allocation: each term keeps
// the interned name it tests and a one-entry cache of the property resolved
// for the last class it met.
#pragma once

#include <cmath>
#include <limits>
#include <memory>
#include <re2/re2.h>
#include <string>
#include <vector>

#include "vcos/COSInternedBase.h"
#include "vcos/src/findobj/PropertyResolver.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxTypes.h"

class COSInterface;

namespace vcos::search {

// What one term of the search tests. Written once here and expanded for the
// enum and the names used in error messages.
#define VCOS_FINDOBJ_TERM_KINDS(X) \
  X(PropertyValue)                 \
  X(HasProperty)                   \
  X(Regexp)                        \
  X(Class)                         \
  X(Isa)                           \
  X(Function)                      \
  X(FunctionOfProperty)

enum class TermKind : unsigned char {
#define VCOS_FINDOBJ_ENUM(Name) Name,
  VCOS_FINDOBJ_TERM_KINDS(VCOS_FINDOBJ_ENUM)
#undef VCOS_FINDOBJ_ENUM
};

struct Term {
  TermKind kind;
  std::unique_ptr<PropertyResolver> property;  // property terms only
  const vxArray* value = nullptr;              // PropertyValue: borrowed from the arguments
  bool valueIsText = false;
  std::u16string foldedText;                   // PropertyValue with text: lower-cased
  std::string asciiFoldedText;                 // the same in 8 bits when pure ASCII
  bool asciiText = false;
  std::unique_ptr<const re2::RE2> pattern;     // Regexp
  COSID classId;                               // Class, Isa
  std::shared_ptr<const vxFunctionHandleData> function;  // Function terms

  explicit Term(TermKind k);
  ~Term();
  Term(Term&&) noexcept;
  Term& operator=(Term&&) noexcept;
};

// One step of the postfix program: a term to test, or an operator.
struct Step {
  enum Op : unsigned char { Test, Not, And, Or } op;
  unsigned term;  // index into terms for Test
};

class Query {
 public:
  // Compiles the arguments after the handles. The arguments stay borrowed and
  // must outlive the query. Raises "VANTEL:vcos:findobj:*" errors for a bad
  // list.
  Query(int nargs, const vxArray* const args[]);
  ~Query();

  // -depth: how many levels below the starting objects are searched.
  double depth() const noexcept { return depth_; }
  // Whether a condition calls functions (which may change the tree).
  bool callsFunctions() const noexcept;
  // Whether a condition reads property values.
  bool readsProperties() const noexcept;
  // A hint for an object a walk will test soon: starts fetching the memory
  // the values read by the conditions live in. Reads no value, runs no code.
  void prefetch(const COSInterface* object) const noexcept {
    for (const PropertyResolver* p : readers_) p->prefetch(object);
  }
  // Whether a condition may run code when it tests an object (it reads a
  // property value, whose get may have listeners or code of its class, or
  // calls a function).
  bool mayRunCode() const noexcept { return mayRunCode_; }
  // The same for the test of one live object: false where every property
  // the conditions read takes the plain course on it.
  // The class's part of the answer is kept until code runs, so a run of
  // objects of one class asks only whether each has property listeners.
  bool mayRunCodeFor(COSInterface* object) {
    if (!mayRunCode_) return false;
    if (object->getClass() == codeFreeClass_ && codeFreeClass_) {
      const internal::InstanceExtras* x = internal::ObjectOps::extrasIfAny(object);
      return x && x->propertyListenerCount > 0;
    }
    return mayRunCodeForOther(object);
  }
  // The answer for a live object where it is known without running any
  // code (a single condition by text answered by the key of the object's
  // value); NotApplicable otherwise, and then evaluate answers.
  PropertyResolver::Typed knownAnswer(COSInterface* object) noexcept {
    return keyed_ ? keyed_->knownByKey(object) : PropertyResolver::Typed::NotApplicable;
  }
  // Whether a live object passes the whole expression. `codeMayRun`: as
  // mayRunCodeFor answered for it (true where not asked); what is kept per
  // class is then made again after.
  bool evaluate(COSInterface* object, bool codeMayRun = true);
  bool matches(COSInterface* object) {
    const PropertyResolver::Typed t = knownAnswer(object);
    if (t != PropertyResolver::Typed::NotApplicable) return t == PropertyResolver::Typed::Equal;
    return evaluate(object);
  }

 private:
  bool mayRunCodeForOther(COSInterface* object);
  bool run(COSInterface* object);
  bool test(Term& term, COSInterface* object);

  std::vector<Term> terms_;
  std::vector<Step> program_;
  std::vector<const PropertyResolver*> readers_;  // of the terms that read values
  std::vector<unsigned char> stack_;  // evaluation scratch, sized once
  PropertyResolver* keyed_ = nullptr;  // the one term's property, when it is compared with a text
  bool mayRunCode_ = false;
  const COSClass* codeFreeClass_ = nullptr;  // whose reads take the plain course, until code runs
  double depth_ = std::numeric_limits<double>::infinity();
};

}  // namespace vcos::search
