// Callback values: checking what a user gave, reading back, running.
#include "sgdatatypes/VCallback.h"

#include <string>

#include "ArrayValues.h"
#include "foundation/core/except/Error.h"
#include "vx/vxCell.h"
#include "vx/vxCompare.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype {
namespace {

// The function handle that a C++ callback reads back as; converting it back
// recovers the very same function.
class NativeFunctionHandle final : public vxFunctionHandleData {
 public:
  explicit NativeFunctionHandle(std::shared_ptr<const VCallback::Function> fn) : fn_(std::move(fn)) {}
  std::string text() const override { return "@<native callback>"; }
  const std::shared_ptr<const VCallback::Function>& function() const noexcept { return fn_; }

 private:
  std::shared_ptr<const VCallback::Function> fn_;
};

VCallback::Runner& runner() {
  static VCallback::Runner r;
  return r;
}

bool isCallableCellHead(const vxArray* head) noexcept {
  return head && (vxIsFunctionHandle(head) || (detail::isText(head) && !vxIsEmpty(head)));
}

}  // namespace

VCallback::VCallback(Function fn) {
  if (!fn) return;
  kind_ = Kind::Function;
  fn_ = std::make_shared<const Function>(std::move(fn));
}

VCallback::VCallback(const VCallback& o)
    : kind_(o.kind_), value_(o.value_ ? vxCreateSharedDataCopy(o.value_.get()) : nullptr), fn_(o.fn_) {}

VCallback& VCallback::operator=(const VCallback& o) {
  if (this != &o) *this = VCallback(o);
  return *this;
}

VCallback::~VCallback() = default;

VCallback VCallback::fromArray(const vxArray* value) {
  VCallback cb;
  if (!value || vxIsEmpty(value)) return cb;
  if (vxIsFunctionHandle(value)) {
    if (auto native = std::dynamic_pointer_cast<const NativeFunctionHandle>(vxGetFunctionHandle(value))) {
      cb.kind_ = Kind::Function;
      cb.fn_ = native->function();
      return cb;
    }
    cb.kind_ = Kind::FunctionHandle;
  } else if (detail::isText(value)) {
    cb.kind_ = Kind::Text;
  } else if (vxIsCell(value) && vxIsVector(value) && isCallableCellHead(vxGetCell(value, 0))) {
    cb.kind_ = Kind::CellWithArguments;
  } else {
    throw Error("VANTEL:datatypes:InvalidCallback", detail::describe(value));
  }
  cb.value_.reset(vxCreateSharedDataCopy(value));
  return cb;
}

vxArray* VCallback::toArray() const {
  switch (kind_) {
    case Kind::Empty:
      return vxCreateDoubleMatrix(0, 0, vxREAL);
    case Kind::Function:
      return vxCreateFunctionHandle(std::make_shared<NativeFunctionHandle>(fn_));
    case Kind::FunctionHandle:
    case Kind::Text:
    case Kind::CellWithArguments:
      return vxCreateSharedDataCopy(value_.get());
  }
  return nullptr;
}

void VCallback::execute(COSInterface* source, COSEventData* data) const {
  switch (kind_) {
    case Kind::Empty:
      return;
    case Kind::Function:
      (*fn_)(source, data);
      return;
    case Kind::FunctionHandle:
    case Kind::Text:
    case Kind::CellWithArguments: {
      // A copy, so that a callback that replaces the runner cannot pull it
      // from under itself.
      Runner r = runner();
      if (!r) throw Error("VANTEL:datatypes:NoCallbackRunner");
      r(value_.get(), source, data);
      return;
    }
  }
}

VCallback::Runner VCallback::setRunner(Runner r) { return std::exchange(runner(), std::move(r)); }

bool operator==(const VCallback& a, const VCallback& b) noexcept {
  if (a.kind_ != b.kind_) return false;
  switch (a.kind_) {
    case VCallback::Kind::Empty:
      return true;
    case VCallback::Kind::Function:
      return a.fn_ == b.fn_;
    case VCallback::Kind::FunctionHandle:
    case VCallback::Kind::Text:
    case VCallback::Kind::CellWithArguments:
      return vxAreMatricesEqualNanOptional(a.value_.get(), b.value_.get(), false);
  }
  return false;
}

}  // namespace graphics::datatype
