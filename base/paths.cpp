#include "base/paths.h"

#include <algorithm>
#include <vector>

#include "base/text.h"

namespace assistant {
namespace {

constexpr std::string_view NotInNames = "\\/:*?\"<>|";

}  // namespace

bool IsFullPath(std::string_view path) {
  const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return (path.size() >= 2 && isLetter(path[0]) && path[1] == ':') || path.substr(0, 2) == "\\\\";
}

bool IsBelowRoot(std::string_view path) {
  if (!IsFullPath(path)) return false;
  const std::vector<std::string> names = Split(Normalised(std::string(path)), '\\');
  // A network path begins with two empty names, its server and its share.
  const std::size_t rootNames = names.front().empty() ? 4 : 1;
  return (names.front().empty() || names.front().size() == 2) && names.size() > rootNames &&
         std::none_of(names.begin(), names.end(), [](const std::string& name) { return name == "." || name == ".."; });
}

std::string Joined(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  return folder.back() == '\\' ? folder + name : folder + "\\" + name;
}

std::string FolderPart(const std::string& path) {
  const std::size_t at = path.rfind('\\');
  return at == std::string::npos ? std::string() : path.substr(0, at);
}

std::string LastElement(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);
}

std::string Extension(const std::string& path) {
  const std::string name = LastElement(path);
  const std::size_t at = name.rfind('.');
  return at == std::string::npos ? std::string() : name.substr(at + 1);
}

std::string WithoutExtension(const std::string& path) {
  const std::string extension = Extension(path);
  return extension.empty() ? path : path.substr(0, path.size() - extension.size() - 1);
}

std::string Normalised(const std::string& path) {
  std::string result;
  for (char c : path) {
    const bool doubled = c == '\\' && result.size() > 1 && result.back() == '\\';
    if (!doubled) result += c;
  }
  while (result.size() > 1 && result.back() == '\\') result.pop_back();
  return result;
}

bool IsUsableName(const std::string& name) {
  return name.find_first_of(NotInNames) == std::string::npos && name.find_first_not_of('.') != std::string::npos;
}

std::string AsFileName(std::string text) {
  for (char& c : text)
    if (NotInNames.find(c) != std::string_view::npos) c = '_';
  return text;
}

std::string CommandLineFile(const std::string& path) {
  return Contains(path, " ") ? Quoted(path) : path;
}

}  // namespace assistant
