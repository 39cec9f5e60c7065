#include "app/qxia/logs/record.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "app/qxia/logs/text_files.h"
#include "platform/simulated/reg_file.h"
#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

constexpr const char* Root = "HKEY_LOCAL_MACHINE\\Software\\";
constexpr const char* Redirected = "WOW6432Node\\";
constexpr const char* Products = "Tarvel\\Installation\\Products";
constexpr const char* Version5 = "Windows Registry Editor Version 5.00";

/// Whether a quoted text is open behind this part, when it was `open` before it.
bool IsOpenBehind(std::string_view part, bool open) {
  for (std::size_t i = 0; i < part.size(); ++i) {
    if (open && part[i] == '\\') {
      ++i;
    } else if (part[i] == '"') {
      open = !open;
    }
  }
  return open;
}

/// A change may go over several lines: a quoted text with line breaks in it, and bytes behind a backslash at the end.
class Changes {
 public:
  explicit Changes(std::vector<std::string> lines) : lines_(std::move(lines)) {}

  std::optional<std::string> next() {
    if (at_ == lines_.size()) return std::nullopt;
    std::string change = lines_[at_++];
    bool open = change.starts_with('"') && IsOpenBehind(change, false);
    // A text that is never closed does not take the following keys with it.
    for (; open && at_ < lines_.size() && !lines_[at_].starts_with("[HKEY_"); ++at_) {
      open = IsOpenBehind(lines_[at_], open);
      change += "\r\n" + lines_[at_];
    }
    for (; !open && change.ends_with('\\') && at_ < lines_.size(); ++at_) {
      change.pop_back();
      change += simulated::Trim(lines_[at_]);
    }
    return change;
  }

 private:
  std::vector<std::string> lines_;
  std::size_t at_ = 0;
};

struct Values {
  std::string key;  ///< below the products' key, "" for that itself
  std::map<std::string, simulated::RegistryValue> values;
};

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines = simulated::Split(text, '\n');
  for (std::string& line : lines)
    if (line.ends_with('\r')) line.pop_back();
  return lines;
}

/// The part of a key below the products' key; nothing for any other key.
std::optional<std::string> BelowProducts(const std::string& key) {
  if (!simulated::StartsWithText(key, Root)) return std::nullopt;
  std::string rest = key.substr(std::string(Root).size());
  if (simulated::StartsWithText(rest, Redirected)) rest.erase(0, std::string(Redirected).size());
  const std::string products = Products;
  if (simulated::SameText(rest, products)) return "";
  if (!simulated::StartsWithText(rest, products + "\\")) return std::nullopt;
  return rest.substr(products.size() + 1);
}

std::vector<Values> ReadKeys(Changes& changes) {
  std::vector<Values> keys;
  bool isOurs = false;
  while (const std::optional<std::string> change = changes.next()) {
    const simulated::RegLine line = simulated::ParseRegLine(*change);
    if (line.kind == simulated::RegLine::Kind::Key) {
      const std::optional<std::string> below = BelowProducts(line.key);
      isOurs = below.has_value();
      if (below) keys.push_back({*below, {}});
    } else if (line.kind == simulated::RegLine::Kind::Value && isOurs) {
      keys.back().values[simulated::Lower(line.value.name)] = line.value;
    }
  }
  return keys;
}

std::string TextOf(const Values& key, const char* name, bool wide) {
  constexpr std::uint32_t expandable = 2;
  const auto found = key.values.find(simulated::Lower(name));
  if (found == key.values.end()) return "";
  const simulated::RegistryValue& value = found->second;
  // Only what stood as hex(2): or hex(1): is in the file's own wide characters; a quoted text was decoded with the
  // file.
  const bool isWide = wide && (value.type == expandable || value.data.find('\0') + 1 < value.data.size());
  std::string text = isWide ? FromUtf16(value.data) : value.data;
  return text.substr(0, text.find('\0'));
}

std::optional<int> NumberOf(const Values& key, const char* name) {
  const auto found = key.values.find(simulated::Lower(name));
  if (found == key.values.end() || found->second.data.size() != 4 || found->second.type != 4) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(found->second.data[i]);
  return static_cast<int>(number);
}

std::vector<std::string> NonEmptyLines(const std::string& text) {
  std::vector<std::string> lines;
  for (const std::string& line : simulated::Split(text, '\n'))
    if (std::string trimmed = simulated::Trim(line); !trimmed.empty()) lines.push_back(std::move(trimmed));
  return lines;
}

RecordedProduct ReadProduct(const Values& key, bool wide) {
  RecordedProduct product;
  product.name = key.key;
  product.version = TextOf(key, "Version", wide);
  if (const auto succeeded = NumberOf(key, "Succeeded")) product.succeeded = *succeeded != 0;
  product.reasons = NonEmptyLines(TextOf(key, "Abort Reason", wide));
  return product;
}

void AddComponent(const Values& key, bool wide, RecordedProduct& product) {
  const std::optional<int> sequence = NumberOf(key, "SequenceNumber");
  if (!sequence) return;
  product.components.push_back({key.key.substr(key.key.find('\\') + 1), *sequence, TextOf(key, "Install", wide),
                                TextOf(key, "Process Return", wide), TextOf(key, "Message", wide)});
}

std::string KindOf(const std::string& install) {
  const std::size_t dot = install.rfind('.');
  return dot == std::string::npos ? "" : simulated::Lower(install.substr(dot + 1));
}

}  // namespace

std::vector<RecordedProduct> ReadRecords(const std::string& path) {
  const std::vector<std::string> lines = LinesOf(DecodedText(ReadWholeFile(path)));
  const std::string header = lines.empty() ? "" : simulated::Trim(lines[0]);
  const bool wide = header == Version5;
  if (!wide && header != simulated::RegFileHeader) throw std::runtime_error(path + " is no .reg file");
  Changes changes({lines.begin() + 1, lines.end()});
  std::vector<RecordedProduct> products;
  std::string pending;
  for (const Values& key : ReadKeys(changes)) {
    if (key.key.empty()) {
      if (TextOf(key, "Rebooted", wide) == "True") pending = TextOf(key, "Product", wide);
    } else if (key.key.find('\\') == std::string::npos) {
      products.push_back(ReadProduct(key, wide));
    } else if (!products.empty() && simulated::StartsWithText(key.key, products.back().name + "\\")) {
      AddComponent(key, wide, products.back());
    }
  }
  for (RecordedProduct& product : products)
    product.isPending = !pending.empty() && simulated::SameText(product.name, pending);
  return products;
}

void TakeOver(const RecordedProduct& record, LoggedRun& run) {
  const bool isSame = simulated::SameText(ToUtf8(record.name), ToUtf8(run.product.name));
  if (!isSame || run.direction != Direction::Install || record.version != ToUtf8(run.product.version)) return;
  for (LoggedComponent& component : run.components) {
    const auto found = std::find_if(
        record.components.begin(), record.components.end(),
        [&](const RecordedComponent& known) { return simulated::SameText(known.name, ToUtf8(component.name)); });
    if (found == record.components.end()) continue;
    if (component.outcome == Outcome::Failed && !found->message.empty()) component.reason = found->message;
    if (component.kind.empty()) component.kind = KindOf(found->install);
  }
  if (run.end != RunEnd::Complete || !record.succeeded) return;
  run.product.succeeded = *record.succeeded;
  if (*record.succeeded || !record.reasons.empty()) run.product.reasons = record.reasons;
}

LoggedRun RunOf(const RecordedProduct& record) {
  LoggedRun run;
  run.product = {record.name, record.version, record.succeeded.value_or(false), record.reasons};
  run.end = record.isPending ? RunEnd::Waiting : RunEnd::Complete;
  for (const RecordedComponent& recorded : record.components) {
    // Of the others the record does not tell whether they were installed or held back.
    if (recorded.processReturn != "Fail" && recorded.processReturn != "Pass") continue;
    LoggedComponent component;
    component.name = recorded.name;
    component.kind = KindOf(recorded.install);
    component.sequence = recorded.sequence;
    component.outcome = recorded.processReturn == "Fail" ? Outcome::Failed : Outcome::Installed;
    component.reason = recorded.message;
    run.components.push_back(std::move(component));
  }
  return run;
}

}  // namespace qxia::logs
