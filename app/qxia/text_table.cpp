#include "app/qxia/text_table.h"

#include <algorithm>

namespace qxia {
namespace {

std::size_t Width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

}  // namespace

std::string TextTable(const std::vector<std::vector<std::string>>& rows, const std::string& indent) {
  std::vector<std::size_t> widths;
  for (const std::vector<std::string>& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string table;
  for (const std::vector<std::string>& row : rows) {
    std::string line = indent;
    for (std::size_t i = 0; i < row.size(); ++i)
      line += row[i] + std::string(i + 1 < row.size() ? widths[i] - Width(row[i]) + 2 : 0, ' ');
    while (line.ends_with(' ')) line.pop_back();
    table += line + "\n";
  }
  return table;
}

}  // namespace qxia
