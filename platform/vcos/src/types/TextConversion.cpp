#include "vcos/src/types/TextConversion.h"

#include <charconv>
#include <cmath>
#include <exception>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/src/core/Messages.h"
#include "vx/vx.h"

namespace vcos::internal {

namespace {

bool isSeparator(char c) { return c == ' ' || c == ',' || c == '\t'; }

std::optional<double> word(std::string_view w) {
  if (w == "true") return 1.0;
  if (w == "false") return 0.0;
  if (w == "Inf" || w == "inf") return std::numeric_limits<double>::infinity();
  if (w == "-Inf" || w == "-inf") return -std::numeric_limits<double>::infinity();
  if (w == "NaN" || w == "nan") return std::numeric_limits<double>::quiet_NaN();
  if (!w.empty() && w.front() == '+') w.remove_prefix(1);
  double d = 0;
  auto [end, ec] = std::from_chars(w.data(), w.data() + w.size(), d);
  if (ec != std::errc() || end != w.data() + w.size()) return std::nullopt;
  return d;
}

// The numbers of a text such as "2.5", "[1 0 0]" or "1, 2"; none when any
// word is not a number.
std::optional<std::vector<double>> numbersOf(std::string_view text) {
  while (!text.empty() && isSeparator(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSeparator(text.back())) text.remove_suffix(1);
  if (text.size() >= 2 && text.front() == '[' && text.back() == ']') text = text.substr(1, text.size() - 2);
  std::vector<double> numbers;
  std::size_t k = 0;
  while (k < text.size()) {
    if (isSeparator(text[k])) {
      ++k;
      continue;
    }
    std::size_t end = k;
    while (end < text.size() && !isSeparator(text[end])) ++end;
    std::optional<double> d = word(text.substr(k, end - k));
    if (!d) return std::nullopt;
    numbers.push_back(*d);
    k = end;
  }
  if (numbers.empty()) return std::nullopt;
  return numbers;
}

// Whether the type's own text form of a value is its numbers: true for all
// but text types and types with a closed list of names, which take the
// characters as written (so "5" is the number 5, not the character '5').
bool readsNumbersFirst(COSID target) {
  static const COSID ascii("asciiString"), unicode("unicodeString");
  if (target == ascii || target == unicode) return false;
  COSDataTypePtr type = COSTypeRepository::getType(target);
  return !type || type->getPossibleValues().empty();
}

}  // namespace

COSValue TextConversion::convert(COSValue from) const {
  static const COSID any("any");
  const auto* text = from.asPointer<const std::string>();
  const std::string empty;
  const std::string& s = text ? *text : empty;
  if (target_ == any) return COSValue(vxCreateString(s.c_str()));
  COSTypeConversion* fromArray = COSTypeRepository::getConversion(any, target_);
  if (!fromArray) throw foundation::core::except::Error(vcos::msg::ConversionFailed, "asciiString", target_.str());

  std::optional<std::vector<double>> numbers = numbersOf(s);
  auto asNumbers = [&] {
    matrix::unique_vxArray row(vxCreateDoubleMatrix(1, numbers->size(), vxREAL));
    std::copy(numbers->begin(), numbers->end(), vxGetPr(row.get()));
    return fromArray->convert(COSValue(row.get()));
  };
  auto asChars = [&] {
    matrix::unique_vxArray chars(vxCreateString(s.c_str()));
    return fromArray->convert(COSValue(chars.get()));
  };
  const bool numbersFirst = numbers && readsNumbersFirst(target_);
  // The first form tried that the type refuses is the refusal reported.
  std::exception_ptr refused;
  try {
    return numbersFirst ? asNumbers() : asChars();
  } catch (const std::exception&) {
    refused = std::current_exception();
  }
  if (!numbers) std::rethrow_exception(refused);
  try {
    return numbersFirst ? asChars() : asNumbers();
  } catch (const std::exception&) {
    std::rethrow_exception(refused);
  }
}

}  // namespace vcos::internal
