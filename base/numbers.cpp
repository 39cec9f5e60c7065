#include "base/numbers.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "base/text.h"

namespace assistant {
namespace {

/// The longest start of the text that is a decimal number: no hexadecimal, no "inf", unlike the library's conversion.
std::string LeadingNumber(const std::string& text) {
  std::size_t end = 0;
  auto digits = [&] {
    const std::size_t start = end;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
    return end > start;
  };
  if (end < text.size() && (text[end] == '-' || text[end] == '+')) ++end;
  bool any = digits();
  if (end < text.size() && text[end] == '.') {
    ++end;
    any = digits() || any;
  }
  return any ? text.substr(0, end) : std::string();
}

}  // namespace

double NumericValue(const std::string& text) {
  return std::strtod(LeadingNumber(TrimLeft(text)).c_str(), nullptr);
}

std::optional<double> WholeNumericValue(const std::string& text) {
  const std::string trimmed = Trim(text);
  if (trimmed.empty() || LeadingNumber(trimmed) != trimmed) return std::nullopt;
  return std::strtod(trimmed.c_str(), nullptr);
}

std::optional<std::int32_t> WholeInteger(const std::string& text) {
  const auto value = WholeNumericValue(text);
  if (!value) return std::nullopt;
  const double rounded = RoundedToEven(*value);
  if (rounded < std::numeric_limits<std::int32_t>::min() || rounded > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(rounded);
}

double RoundedToEven(double value) {
  return std::nearbyint(value);
}

std::string Padded(int value, int digits) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%0*d", digits, value);
  return buffer;
}

std::string NumberText(double value) {
  // By far the most are such, the sequence table's among them: the general way takes ten times as long.
  constexpr double large = 1e9;
  if (value > 0 && value < large && value == std::floor(value)) return std::to_string(static_cast<std::int32_t>(value));
  char buffer[400];
  std::snprintf(buffer, sizeof buffer, value == std::floor(value) ? "%.0f" : "%g", value);
  return buffer;
}

std::string Thousands(double value) {
  const double rounded = std::round(value);
  if (rounded == 0) return std::string();
  std::string text = NumberText(rounded);
  const std::size_t first = text.front() == '-' ? 1 : 0;
  for (std::size_t at = text.size(); at > first + 3;) {
    at -= 3;
    text.insert(at, ",");
  }
  return text;
}

}  // namespace assistant
