// Comma-separated fields.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace assistant {

/// Field number `field` (counted from 1) of the text; "" when there are fewer. A field that starts with a double quote
/// runs to the next one, commas included, and loses both.
std::string ParseCsv(std::string_view text, int field);

/// All fields, by the same rule.
std::vector<std::string> CsvFields(std::string_view text);

}  // namespace assistant
