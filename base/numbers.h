// Numbers that were written as text by people and programs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace assistant {

/// The number that the text begins with (blanks in front allowed, decimal point "."), or 0 when it begins with none.
double NumericValue(const std::string& text);

/// The number, when the whole text is one (blanks at the ends allowed).
std::optional<double> WholeNumericValue(const std::string& text);

/// The whole text as a 32-bit integer, rounded to the nearest (halves to even); nothing when it is no number or does
/// not fit.
std::optional<std::int32_t> WholeInteger(const std::string& text);

/// Rounded to the nearest integer, halves to even, as the program's numbers have always been rounded.
double RoundedToEven(double value);

/// At least `digits` digits, zeros in front.
std::string Padded(int value, int digits);

/// The number without decimals when it is whole, as short as it can be told otherwise.
std::string NumberText(double value);

/// Pattern "#,###": rounded (halves up), thousands separated by commas, nothing at all for zero.
std::string Thousands(double value);

}  // namespace assistant
