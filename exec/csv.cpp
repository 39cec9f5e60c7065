#include "exec/csv.h"

namespace {

/// Cuts one field off the front of the text; false when none is left.
bool TakeField(std::string_view& rest, bool& more, std::string& field) {
  if (!more) return false;
  const bool quoted = !rest.empty() && rest.front() == '"';
  const std::size_t close = quoted ? rest.find('"', 1) : std::string_view::npos;
  const std::size_t comma = rest.find(',', close == std::string_view::npos ? 0 : close);
  // An open quote is taken as an ordinary character.
  field = close == std::string_view::npos ? rest.substr(0, comma) : rest.substr(1, close - 1);
  more = comma != std::string_view::npos;
  rest.remove_prefix(more ? comma + 1 : rest.size());
  return true;
}

}  // namespace

std::string ParseCsv(std::string_view text, int field) {
  bool more = true;
  std::string value;
  for (int i = 0; i < field; ++i) {
    if (!TakeField(text, more, value)) return std::string();
  }
  return value;
}

std::vector<std::string> CsvFields(std::string_view text) {
  std::vector<std::string> fields;
  bool more = true;
  std::string value;
  while (TakeField(text, more, value)) fields.push_back(value);
  return fields;
}
