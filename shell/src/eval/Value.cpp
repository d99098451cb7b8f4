// The owning value holder, and the small pieces of the language's runtime
// types: script errors, function handles, the output channel.
#include "sgsh/Value.h"


#include <algorithm>
#include <array>

#include <foundation/io/OutputSink.h>
#include <foundation/text/Utf.h>
#include <vx/vx.h>

#include "sgsh/FunctionHandle.h"
#include "sgsh/Output.h"
#include "sgsh/ScriptError.h"

namespace sgsh {

Value::Value(const Value& other) : array_(other.array_ ? vxCreateSharedDataCopy(other.array_.get()) : nullptr) {}

Value& Value::operator=(const Value& other) {
  if (this != &other) array_.reset(other.array_ ? vxCreateSharedDataCopy(other.array_.get()) : nullptr);
  return *this;
}

Value Value::copyOf(const vxArray* borrowed) { return Value(vxCreateSharedDataCopy(borrowed)); }
Value Value::scalar(double v) { return Value(vxCreateDoubleScalar(v)); }
Value Value::logical(bool v) { return Value(vxCreateLogicalScalar(v)); }
Value Value::emptyDouble() { return Value(vxCreateDoubleMatrix(0, 0, vxREAL)); }

Value Value::text(std::string_view utf8) {
  if (utf8.empty()) {
    const vxSize dims[2] = {0, 0};
    return Value(vxCreateCharArray(2, dims));
  }
  // Converted whole: text may hold NUL characters, which a C string would end at.
  const std::u16string units = foundation::text::utf8ToUtf16(utf8);
  Value v(vxCreateCharArray(2, std::array<vxSize, 2>{1, units.size()}.data()));
  std::copy(units.begin(), units.end(), vxGetChars(v.mut()));
  return v;
}

ScriptError::~ScriptError() = default;

std::unique_ptr<foundation::core::except::IMsgIDException> ScriptError::clone() const {
  return std::make_unique<ScriptError>(*this);
}

void ScriptError::rethrow() const { throw *this; }

FunctionHandle::~FunctionHandle() = default;

std::string FunctionHandle::text() const { return lambda_ ? lambda_->text : "@" + name_; }

std::vector<std::pair<std::string, const vxArray*>> FunctionHandle::capturedValues() const {
  std::vector<std::pair<std::string, const vxArray*>> out;
  out.reserve(captured_.size());
  for (const auto& [name, value] : captured_)
    if (value.get()) out.emplace_back(name, value.get());
  return out;
}

// Output goes through the platform's printing sink, shared with utPrintf
// and everything else that prints.
void writeOutput(std::string_view text) { services::io::writeOutput(text); }

OutputSink setOutputSink(OutputSink sink) { return services::io::setOutputSink(std::move(sink)); }

}  // namespace sgsh
