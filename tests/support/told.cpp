#include "tests/support/told.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

std::string MarkOf(const std::string& cell) {
  if (cell == ErrorMark) return "ERROR";
  return cell == WarningMark ? "Warning" : cell;
}

}  // namespace

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

std::string OnOneLine(const std::string& text) {
  return Replaced(Replaced(text, "\r\n", " | "), "\n", " | ");
}

std::string ToldRow(const LogRow& row) {
  return MarkOf(row.type) + " | " + row.description;
}

std::string LastLine(const std::string& text) {
  const std::size_t end = text.find_last_not_of("\r\n");
  if (end == std::string::npos) return "";
  const std::size_t start = text.find_last_of("\r\n", end);
  return text.substr(start == std::string::npos ? 0 : start + 1, end - start);
}

Names FileLines(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Names lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::string LeaveToRead(const std::string& name, const Names& lines) {
  const std::string path = ::testing::TempDir() + name;
  std::ofstream file(path, std::ios::binary);
  for (const std::string& line : lines) file << line << "\n";
  return path;
}
