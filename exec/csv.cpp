#include "exec/csv.h"

namespace assistant {

std::vector<std::string> CsvFields(std::string_view text) {
  std::vector<std::string> fields;
  for (bool more = true; more;) {
    const bool quoted = !text.empty() && text.front() == '"';
    const std::size_t close = quoted ? text.find('"', 1) : std::string_view::npos;
    // An open quote is taken as an ordinary character.
    const bool enclosed = close != std::string_view::npos;
    const std::size_t comma = text.find(',', enclosed ? close : 0);
    fields.emplace_back(enclosed ? text.substr(1, close - 1) : text.substr(0, comma));
    more = comma != std::string_view::npos;
    if (more) text.remove_prefix(comma + 1);
  }
  return fields;
}

std::string ParseCsv(std::string_view text, int field) {
  const std::vector<std::string> fields = CsvFields(text);
  const auto index = static_cast<std::size_t>(field) - 1;
  return field >= 1 && index < fields.size() ? fields[index] : std::string();
}

}  // namespace assistant
