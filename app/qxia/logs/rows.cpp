#include "app/qxia/logs/rows.h"

#include <algorithm>

#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

constexpr std::string_view RowStart = R"(<TABLE cellpadding="0" border="0"><TR valign="top"><TD width="150">)";
constexpr std::string_view KindStart = R"(</TD><TD width="120">)";
constexpr std::string_view TextStart = R"(</TD><TD width="550">)";
constexpr std::string_view RowEnd = "</TD></TR></TABLE>";
constexpr std::size_t StampLength = 21;
constexpr std::string_view StampForm = "00/00/00 00:00:00.000";

struct KindMark {
  std::string_view markup;
  RowKind kind;
};

constexpr KindMark KindMarks[] = {
    {"Action", RowKind::Action},
    {"", RowKind::None},
    {"<FONT color=green><b>Warning</FONT>", RowKind::Warning},
    {"<FONT color=red><b>*** ERROR ***</FONT>", RowKind::Error},
};

bool Take(std::string_view& text, std::string_view start) {
  if (!text.starts_with(start)) return false;
  text.remove_prefix(start.size());
  return true;
}

bool IsStamp(std::string_view text) {
  return std::equal(text.begin(), text.end(), StampForm.begin(), StampForm.end(), [](char character, char form) {
    return form == '0' ? character >= '0' && character <= '9' : character == form;
  });
}

std::optional<RowKind> TakeKind(std::string_view& line) {
  const std::size_t end = line.find(TextStart);
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view markup = line.substr(0, end);
  line.remove_prefix(end + TextStart.size());
  for (const KindMark& mark : KindMarks)
    if (mark.markup == markup) return mark.kind;
  return RowKind::None;
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// The program leaves lines of a blank.
bool IsBlank(std::string_view line) {
  return line.find_first_not_of(' ') == std::string_view::npos;
}

struct Tag {
  std::string_view markup;
  std::string_view shown;
};

/// The markup that the program's texts hold. Anything else in angle brackets is text, such as <ERROR>.
constexpr Tag Tags[] = {{"<br>", "; "}, {"<b>", ""}, {"</b>", ""}};

const Tag* TagAt(std::string_view text) {
  if (text.front() != '<') return nullptr;
  for (const Tag& tag : Tags)
    if (simulated::SameText(std::string(text.substr(0, tag.markup.size())), std::string(tag.markup))) return &tag;
  return nullptr;
}

}  // namespace

const char* NameOf(RowKind kind) {
  constexpr const char* names[] = {"none", "action", "warning", "error"};
  return names[static_cast<std::size_t>(kind)];
}

std::optional<Row> ParseRow(std::string_view line, int number) {
  Row row{number, {}, RowKind::None, {}};
  if (!line.ends_with(RowEnd) || !Take(line, RowStart)) return std::nullopt;
  row.stamp = line.substr(0, StampLength);
  if (!IsStamp(row.stamp)) return std::nullopt;
  line.remove_prefix(StampLength);
  if (!Take(line, KindStart)) return std::nullopt;
  const std::optional<RowKind> kind = TakeKind(line);
  if (!kind) return std::nullopt;
  row.kind = *kind;
  row.text = line.substr(0, line.size() - RowEnd.size());
  // A hole in the file joins the halves of two rows.
  const bool isWhole =
      row.text.find('\0') == std::string_view::npos && row.text.find(RowStart) == std::string_view::npos;
  return isWhole ? std::optional(row) : std::nullopt;
}

std::optional<Row> Rows::next() {
  while (!rest_.empty()) {
    const std::string_view line = TakeLine(rest_);
    ++line_;
    if (std::optional<Row> row = ParseRow(line, line_)) return row;
    if (!IsBlank(line) && firstBroken_ == 0) firstBroken_ = line_;
  }
  return std::nullopt;
}

bool IsLog(std::string_view log) {
  return ParseRow(TakeLine(log), 1).has_value();
}

std::string IsoTime(std::string_view stamp) {
  if (!IsStamp(stamp)) return "";
  const std::string text(stamp);
  const std::string century = text[6] >= '8' ? "19" : "20";
  return century + text.substr(6, 2) + "-" + text.substr(3, 2) + "-" + text.substr(0, 2) + "T" + text.substr(9);
}

std::string PlainText(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    if (const Tag* tag = TagAt(text)) {
      plain += tag->shown;
      text.remove_prefix(tag->markup.size());
    } else {
      plain += text.front();
      text.remove_prefix(1);
    }
  }
  while (plain.ends_with(' ') || plain.ends_with(';')) plain.pop_back();
  return plain.substr(std::min(plain.find_first_not_of(' '), plain.size()));
}

}  // namespace qxia::logs
