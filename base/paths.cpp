#include "base/paths.h"

#include <algorithm>
#include <vector>

#include "base/code_page.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr std::string_view NotInNames = "\\/:*?\"<>|";

bool BeginsWithDrive(std::string_view path) {
  const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return path.size() >= 2 && isLetter(path[0]) && path[1] == ':';
}

/// Position of the last separator, or npos.
std::size_t LastSeparator(std::string_view path) {
  return WithoutTrailBytes(path).rfind('\\');
}

}  // namespace

bool IsFullPath(std::string_view path) {
  return BeginsWithDrive(path) || path.substr(0, 2) == "\\\\";
}

bool IsDots(std::string_view name) {
  return !name.empty() && name.front() == '.' && name.find_first_not_of(". ") == std::string_view::npos;
}

bool StartsAtDriveFolder(std::string_view path) {
  return BeginsWithDrive(path) && path.size() > 2 && path[2] != '\\' && path[2] != '/';
}

std::string AsAsked(const std::string& path) {
  return path.size() == 2 && BeginsWithDrive(path) ? path + "\\" : path;
}

bool IsBelowRoot(std::string_view path) {
  if (!IsFullPath(path)) return false;
  const std::vector<std::string> names = Split(Normalised(std::string(path)), '\\');
  // A network path begins with two empty names, its server and its share.
  const std::size_t rootNames = names.front().empty() ? 4 : 1;
  return (names.front().empty() || names.front().size() == 2) && names.size() > rootNames &&
         std::none_of(names.begin(), names.end(), IsDots);
}

std::string Joined(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  return LastSeparator(folder) == folder.size() - 1 ? folder + name : folder + "\\" + name;
}

std::string FolderPart(const std::string& path) {
  const std::size_t at = LastSeparator(path);
  return at == std::string::npos ? std::string() : path.substr(0, at);
}

std::string LastElement(const std::string& path) {
  return path.substr(LastSeparator(path) + 1);
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
  const std::string plain = WithoutTrailBytes(path);
  std::string result;
  std::size_t separators = 0;  // at the end of the result
  for (std::size_t at = 0; at < path.size(); ++at) {
    const bool separator = plain[at] == '\\';
    if (separator && separators > 0 && result.size() > 1) continue;
    separators = separator ? separators + 1 : 0;
    result += path[at];
  }
  for (; result.size() > 1 && separators > 0; --separators) result.pop_back();
  return result;
}

bool IsUsableName(const std::string& name) {
  return WithoutTrailBytes(name).find_first_of(NotInNames) == std::string::npos &&
         name.find_first_not_of('.') != std::string::npos;
}

std::string AsFileName(std::string text) {
  const std::string plain = WithoutTrailBytes(text);
  for (std::size_t at = 0; at < text.size(); ++at)
    if (NotInNames.find(plain[at]) != std::string_view::npos) text[at] = '_';
  return text;
}

std::string CommandLineFile(const std::string& path) {
  return Contains(path, " ") ? Quoted(path) : path;
}

}  // namespace assistant
