// The error and warning channel of the array API, and the errors that misuse
// of arrays raises.
#include "vx/vxError.h"

#include <cstdlib>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/WarningChannel.h"
#include "vx/matrix.h"
#include "vx/vxQuery.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

using foundation::core::except::Error;

void vxWarningMsgId(const i18n::Message& message) { foundation::core::except::WarningChannel::instance().issue(message); }

namespace matrix::detail {

void do_legacy_vx_error(const foundation::core::except::IMsgIDException& error) {
  error.rethrow();  // as its most derived type
  std::abort();     // rethrow() never returns
}

void error_minrhs() { throw Error("VANTEL:minrhs"); }
void error_maxrhs() { throw Error("VANTEL:maxrhs"); }
void error_maxlhs() { throw Error("VANTEL:maxlhs"); }

}  // namespace matrix::detail

namespace vx::impl {

void raiseWrongClass(const vxArray& a, const char* expected) {
  throw Error("VANTEL:vx:WrongClass", expected, vxGetClassName(&a));
}

void raiseIndexOutOfRange(vxSize index, vxSize numel) {
  // Reported one-based, as a person counts elements.
  throw Error("VANTEL:vx:IndexOutOfRange", index + 1, numel);
}

void raiseFieldNumberOutOfRange(int number, int count) {
  throw Error("VANTEL:vx:FieldNumberOutOfRange", number + 1, count);
}

void raiseInvalidFieldName(const char* name) { throw Error("VANTEL:vx:InvalidFieldName", name ? name : ""); }

void raiseEmptyScalar() { throw Error("VANTEL:vx:EmptyScalar"); }

void raiseNotText(const vxArray& a) { throw Error("VANTEL:vx:NotText", vxGetClassName(&a)); }

void raiseIntegerOutOfRange(double value) { throw Error("VANTEL:vx:IntegerOutOfRange", value); }

void raiseReshapeChangesCount(const vxArray& a, vxSize to) {
  throw Error("VANTEL:vx:ReshapeChangesCount", vxGetClassName(&a), numelOf(a), to);
}

void raiseSizeTooLarge() { throw Error("VANTEL:vx:SizeTooLarge"); }

void raiseNotNumericClass(vxClassID id) { throw Error("VANTEL:vx:NotNumericClass", classFacts(id).name); }

}  // namespace vx::impl
