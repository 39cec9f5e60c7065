#include "base/text.h"

#include <algorithm>

#include "base/code_page.h"

namespace assistant {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
bool SameLetter(char a, char b) {
  return Lower(a) == Lower(b);
}

bool IsTrail(const std::vector<bool>& isTrail, std::size_t at) {
  return at < isTrail.size() && isTrail[at];
}

template <class Fold>
std::string Folded(std::string_view text, Fold fold) {
  const std::vector<bool> isTrail = TrailBytes(text);
  std::string result(text);
  for (std::size_t at = 0; at < result.size(); ++at)
    if (!IsTrail(isTrail, at)) result[at] = fold(result[at]);
  return result;
}

}  // namespace

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string()
                                         : std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string TrimLeft(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string TrimRight(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string LowerCase(std::string_view text) {
  return Folded(text, Lower);
}

std::string UpperCase(std::string_view text) {
  return Folded(text, Upper);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size() || !std::equal(a.begin(), a.end(), b.begin(), SameLetter)) return false;
  return a == b || LowerCase(a) == LowerCase(b);
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualIgnoringCase(text.substr(0, start.size()), start);
}

bool EndsWithIgnoringCase(std::string_view text, std::string_view end) {
  if (text.size() < end.size()) return false;
  const std::size_t at = text.size() - end.size();
  return !IsTrail(TrailBytes(text), at) && EqualIgnoringCase(text.substr(at), end);
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
  return FindIgnoringCase(text, part) != std::string::npos;
}

std::size_t FindIgnoringCase(std::string_view text, std::string_view part, std::size_t from) {
  const std::string folded = LowerCase(text);
  const std::string wanted = LowerCase(part);
  const std::vector<bool> isTrail = TrailBytes(text);
  std::size_t at = folded.find(wanted, from);
  while (at != std::string::npos && IsTrail(isTrail, at)) at = folded.find(wanted, at + 1);
  return at;
}

std::vector<std::string> Split(std::string_view text, char separator) {
  const std::string plain = WithoutTrailBytes(text);
  std::vector<std::string> fields;
  std::size_t start = 0;
  for (std::size_t at = plain.find(separator); at != std::string::npos; at = plain.find(separator, start)) {
    fields.emplace_back(text.substr(start, at - start));
    start = at + 1;
  }
  fields.emplace_back(text.substr(start));
  return fields;
}

std::string Replace(std::string text, std::string_view part, std::string_view by) {
  if (part.empty()) return text;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size())) {
    text.replace(at, part.size(), by);
  }
  return text;
}

std::string WithoutQuotes(std::string_view text) {
  return Replace(std::string(text), "\"", "");
}

std::string Unquoted(std::string_view text) {
  std::string path = TrimRight(text);
  if (path.size() >= 2 && path.front() == '"' && path.back() == '"') path = path.substr(1, path.size() - 2);
  return path;
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

const char* TrueOrFalse(bool value) {
  return value ? "True" : "False";
}

bool IsTrue(std::string_view text) {
  return EqualIgnoringCase(text, "true");
}

}  // namespace assistant
