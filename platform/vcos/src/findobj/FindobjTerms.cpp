// The tests of single findobj terms on one object.
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/findobj/FindobjQuery.h"
#include "vcos/src/findobj/PropertyResolver.h"
#include "vcos/src/findobj/TextCompare.h"
#include "vx/matrix.h"
#include "vx/vxCompare.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace vcos::search {

namespace {

// A function's answer counts as true when it is a non-empty array whose
// elements are all non-zero (as a condition reads it).
bool isTrue(const vxArray* a) {
  if (!a || vxIsEmpty(a)) return false;
  if (vxIsLogical(a)) {
    const bool* b = vxGetLogicals(a);
    for (vxSize i = 0, n = vxGetNumberOfElements(a); i < n; ++i)
      if (!b[i]) return false;
    return true;
  }
  if (vxIsNumeric(a) && vxIsScalar(a)) return vxGetScalar(a) != 0;
  return false;
}

bool callPredicate(const vxFunctionHandleData& f, const vxArray* input) {
  vxArray* out[1] = {nullptr};
  const vxArray* in[1] = {input};
  FunctionDispatcher::instance().callFunctionHandle(f, 1, out, 1, in);
  matrix::unique_vxArray result(out[0]);
  return isTrue(result.get());
}

bool textEquals(const vxArray* value, const Term& term) {
  std::u16string_view chars = charsOf(value);
  if (vxIsChar(value)) return equalsFolded(chars, term.foldedText);
  return equalsFolded(textOf(value), term.foldedText);
}

}  // namespace

bool Query::test(Term& term, COSInterface* object) {
  switch (term.kind) {
    case TermKind::PropertyValue: {
      const auto matches = [](const vxArray* a, const void* context) {
        const Term& tm = *static_cast<const Term*>(context);
        if (tm.valueIsText && isText(a)) return textEquals(a, tm);
        return vxAreMatricesEqualNanOptional(a, tm.value, /*nanEqual=*/false);
      };
      if (term.valueIsText) {
        // A text property compared as text, else the value's array form.
        const PropertyResolver::Typed t = term.property->compareWithText(
            object, term.foldedText, term.asciiText ? &term.asciiFoldedText : nullptr, matches, &term);
        if (t != PropertyResolver::Typed::NotApplicable) return t == PropertyResolver::Typed::Equal;
      } else {
        const PropertyResolver::Typed t = term.property->compareTyped(object, term.value);
        if (t != PropertyResolver::Typed::NotApplicable) return t == PropertyResolver::Typed::Equal;
        const PropertyResolver::Typed known = term.property->compareByValue(object, matches, &term);
        if (known != PropertyResolver::Typed::NotApplicable) return known == PropertyResolver::Typed::Equal;
      }
      PropertyValue v;
      if (!term.property->read(object, v, /*lend=*/true)) return false;
      return matches(v.array(), &term);
    }
    case TermKind::HasProperty:
      return term.property->has(object);
    case TermKind::Regexp: {
      PropertyValue v;
      if (!term.property->read(object, v, /*lend=*/true) || !isText(v.array())) return false;
      const std::string text = vxArrayToStdString(v.array());
      return re2::RE2::PartialMatch(text, *term.pattern);
    }
    case TermKind::Class:
      return object->getClass() && object->getClass()->getID() == term.classId;
    case TermKind::Isa:
      return object->getClass() && object->getClass()->isSubclassOf(term.classId);
    case TermKind::Function: {
      matrix::unique_vxArray self(vcos::array::create(COSInterfacePtr(object)));
      return callPredicate(*term.function, self.get());
    }
    case TermKind::FunctionOfProperty: {
      // Not lent: the function is code that may set the property.
      PropertyValue v;
      if (!term.property->read(object, v, /*lend=*/false)) return false;
      return callPredicate(*term.function, v.array());
    }
  }
  return false;
}

}  // namespace vcos::search
