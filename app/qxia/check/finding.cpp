#include "app/qxia/check/finding.h"

#include <algorithm>
#include <numeric>

#include "app/qxia/check/rules.h"
#include "base/text.h"

namespace qxia::check {
namespace {

/// How many letters must be changed, taken out or put in to make one word of the other.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t above = row[j];
      row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row.back();
}

/// What an ini holds may be long, or no text at all.
std::string Printable(std::string text) {
  constexpr std::size_t longest = 400;
  if (text.size() > longest) text = text.substr(0, longest) + "...";
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, '?');
  return text;
}

}  // namespace

void Findings::add(int rule, const SourceIni& file, int line, const std::string& text, const std::string& fix) {
  const Rule* row = FindRule(rule);
  all_.push_back({&file, line, rule, Printable(text), Printable(fix.empty() && row != nullptr ? row->remedy : fix)});
}

std::string Told(const std::string& text) {
  return assistant::Quoted(text);
}

std::string NearestWord(const std::string& word, const std::vector<std::string>& words) {
  const std::string lower = assistant::LowerCase(word);
  std::string nearest;
  std::size_t best = std::max<std::size_t>(lower.size() / 3, 1);  // more letters than that make another word
  for (const std::string& candidate : words) {
    const std::size_t distance = Distance(lower, assistant::LowerCase(candidate));
    if (distance > best || (distance == best && !nearest.empty())) continue;
    best = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace qxia::check
