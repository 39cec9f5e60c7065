// The tree of keys, and its .reg file.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/simulated/host.h"
#include "platform/simulated/registry.h"
#include "platform/simulated/text.h"

namespace simulated {
namespace {

/// The names of a key's full path one after another, the root's long name first.
class Names {
 public:
  /// Raises std::runtime_error when the path begins with no root, or has more levels than there are.
  Names(const std::string& fullPath, bool japanese) : path_(fullPath), japanese_(japanese) {
    first_ = rootName(NextPart(path_, at_, '\\', japanese_));
    if (first_.empty())
      Refuse("registry key '" + fullPath + "': begin the path with HKEY_LOCAL_MACHINE\\ or HKEY_CURRENT_USER\\");
    if (std::count(path_.begin(), path_.end(), '\\') <= static_cast<std::ptrdiff_t>(MostKeyLevels)) return;
    if (const std::size_t levels = Split(path_, '\\', japanese_).size() - 1; levels > MostKeyLevels)
      Refuse("registry key with " + std::to_string(levels) + " levels: there are at most " +
             std::to_string(MostKeyLevels));
  }

  /// False behind the last.
  bool next(std::string_view& name) {
    name = std::exchange(first_, {});
    if (!name.empty()) return true;
    if (at_ == std::string::npos) return false;
    name = NextPart(path_, at_, '\\', japanese_);
    return true;
  }

 private:
  static std::string_view rootName(std::string_view name) {
    constexpr std::string_view localMachine = "HKEY_LOCAL_MACHINE";
    constexpr std::string_view currentUser = "HKEY_CURRENT_USER";
    if (SameText(name, "HKLM") || SameText(name, localMachine)) return localMachine;
    return SameText(name, "HKCU") || SameText(name, currentUser) ? currentUser : std::string_view();
  }

  const std::string& path_;
  bool japanese_;
  std::size_t at_ = 0;
  std::string_view first_;
};

struct NumberedLine {
  std::size_t number;
  std::string text;
};

/// A line of the file that ends in a backslash goes on in the next one.
std::vector<NumberedLine> LogicalLines(const std::string& text) {
  std::vector<NumberedLine> lines;
  bool goesOn = false;
  std::size_t number = 0;
  for (const std::string& raw : Split(text, '\n')) {
    ++number;
    std::string line = Trim(raw);
    const bool more = !line.empty() && line.back() == '\\';
    if (more) line.pop_back();
    if (goesOn) {
      lines.back().text += line;
    } else {
      lines.push_back({number, line});
    }
    goesOn = more;
  }
  return lines;
}

}  // namespace

Registry::Registry(std::string file, Journal& journal, bool japanese)
    : file_(std::move(file)), journal_(journal), japanese_(japanese) {
  reload();
}

Registry::~Registry() {
  if (journalFile_ != nullptr) std::fclose(journalFile_);
}

void Registry::reload() {
  if (journalFile_ != nullptr) std::fclose(journalFile_);
  journalFile_ = nullptr;
  handles_.clear();
  located_.clear();
  asked_ = &unasked_;
  unasked_.next = nullptr;
  currentKeyLine_.clear();
  root_ = std::make_shared<Key>();
  bool made = false;
  make("HKEY_LOCAL_MACHINE", made);
  make("HKEY_CURRENT_USER", made);
  load();
  rewrite();
  journalFile_ = std::fopen(file_.c_str(), "ab");
  if (journalFile_ == nullptr) Refuse(file_ + ": cannot be written: " + std::strerror(errno));
}

Registry::Position Registry::place(Key& key, std::string_view name) const {
  return std::lower_bound(key.below.begin(), key.below.end(), name,
                          [this](const std::shared_ptr<Key>& sub, std::string_view wanted) {
                            return CompareText(sub->name, wanted, japanese_) < 0;
                          });
}

RegistryValue* Registry::valueOf(Key& key, std::string_view name) const {
  if (key.asked < key.values.size() && key.values[key.asked].name == name) return &key.values[key.asked];
  for (std::size_t i = 0; i < key.values.size(); ++i) {
    if (!SameText(key.values[i].name, name, japanese_)) continue;
    key.asked = i;
    return &key.values[i];
  }
  return nullptr;
}

std::shared_ptr<Registry::Key> Registry::locate(const std::string& fullPath) const {
  if (const Located* before = known(fullPath)) return before->second.key;
  std::shared_ptr<Key> found = walk(fullPath);
  return found ? remember(fullPath, std::move(found)).second.key : nullptr;
}

/// Where the path led to the last time, unless that key has been deleted since.
const Registry::Located* Registry::known(const std::string& fullPath) const {
  if (asked_->next == nullptr || asked_->next->first != fullPath) {
    const auto before = located_.find(fullPath);
    if (before == located_.end()) return nullptr;
    asked_->next = &*before;
  }
  const Located* located = asked_->next;
  asked_ = &asked_->next->second;
  return asked_->key->deleted ? nullptr : located;
}

const Registry::Located& Registry::remember(const std::string& fullPath, std::shared_ptr<Key> key) const {
  return *located_.insert_or_assign(fullPath, Place{std::move(key)}).first;
}

std::shared_ptr<Registry::Key> Registry::walk(const std::string& fullPath) const {
  const std::shared_ptr<Key>* key = &root_;
  Names names(fullPath, japanese_);
  for (std::string_view name; names.next(name);) {
    const Position position = place(**key, name);
    if (position == (*key)->below.end() || !SameText((*position)->name, name, japanese_)) return nullptr;
    key = &*position;
  }
  return *key;
}

std::shared_ptr<Registry::Key> Registry::make(const std::string& fullPath, bool& made) {
  std::shared_ptr<Key> key = root_;
  made = false;
  Names names(fullPath, japanese_);
  for (std::string_view name; names.next(name);) {
    Position position = place(*key, name);
    if (position == key->below.end() || !SameText((*position)->name, name, japanese_)) {
      made = true;
      auto created = std::make_shared<Key>();
      created->name = name;
      position = key->below.insert(position, std::move(created));
    }
    key = *position;
  }
  return key;
}

void Registry::markDeleted(Key& key) {
  key.deleted = true;
  for (const auto& sub : key.below) markDeleted(*sub);
}

void Registry::detach(const std::string& fullPath) {
  const std::size_t last = WithoutTrailBytes(fullPath, japanese_).rfind('\\');
  if (last == std::string::npos) Refuse("registry root '" + fullPath + "' cannot be deleted");
  const std::shared_ptr<Key> parent = locate(fullPath.substr(0, last));
  const Position position = place(*parent, fullPath.substr(last + 1));
  markDeleted(**position);
  parent->below.erase(position);
}

void Registry::load() {
  std::string currentKey;
  for (const NumberedLine& line : LogicalLines(ReadHostFile(file_))) {
    const RegLine parsed = ParseRegLine(line.text);
    const bool isKey = parsed.kind == RegLine::Kind::Key || parsed.kind == RegLine::Kind::DeletedKey;
    const bool homeless = !isKey && parsed.kind != RegLine::Kind::Nothing && currentKey.empty();
    if (parsed.kind == RegLine::Kind::Malformed || homeless)
      Refuse(file_ + ", line " + std::to_string(line.number) + ": '" + line.text +
             "' is no registry text; write [key] first, then \"name\"=\"text\", \"name\"=dword:0000002a or "
             "\"name\"=hex:01,02");
    try {
      apply(parsed, currentKey);
    } catch (const std::runtime_error& refused) {
      Refuse(file_ + ", line " + std::to_string(line.number) + ": " + refused.what());
    }
  }
}

void Registry::apply(const RegLine& line, std::string& currentKey) {
  bool made = false;
  switch (line.kind) {
    case RegLine::Kind::Key:
      currentKey = line.key;
      make(currentKey, made);
      break;
    case RegLine::Kind::DeletedKey:
      if (locate(line.key)) detach(line.key);
      break;
    case RegLine::Kind::Value: {
      const std::shared_ptr<Key> key = make(currentKey, made);
      RegistryValue* there = valueOf(*key, line.value.name);
      if (there != nullptr) *there = line.value;
      if (there == nullptr) key->values.push_back(line.value);
      break;
    }
    case RegLine::Kind::DeletedValue: {
      const std::shared_ptr<Key> key = make(currentKey, made);
      std::erase_if(key->values, [&](const RegistryValue& v) { return SameText(v.name, line.value.name, japanese_); });
      break;
    }
    default:
      break;
  }
}

void Registry::writeTree(std::FILE* out, const Key& key, const std::string& fullPath) const {
  std::fprintf(out, "\n%s\n", KeyLine(fullPath).c_str());
  for (const RegistryValue& value : key.values) std::fprintf(out, "%s\n", ValueLine(value).c_str());
  for (const auto& sub : key.below) writeTree(out, *sub, fullPath + "\\" + sub->name);
}

void Registry::rewrite() {
  const std::string fresh = file_ + ".new";
  std::FILE* out = std::fopen(fresh.c_str(), "wb");
  if (out == nullptr) Refuse(fresh + ": cannot be written: " + std::strerror(errno));
  std::fprintf(out, "%s\n", RegFileHeader);
  for (const auto& key : root_->below) writeTree(out, *key, key->name);
  const bool written = std::fclose(out) == 0;
  if (!written || std::rename(fresh.c_str(), file_.c_str()) != 0)
    Refuse(file_ + ": cannot be replaced: " + std::strerror(errno));
}

void Registry::append(const std::string& keyLine, const std::string& line) {
  std::string text;
  if (keyLine != currentKeyLine_) text = keyLine + "\n";
  currentKeyLine_ = keyLine;
  if (!line.empty()) text += line + "\n";
  if (std::fwrite(text.data(), 1, text.size(), journalFile_) != text.size() || std::fflush(journalFile_) != 0)
    Refuse(file_ + ": cannot be written: " + std::strerror(errno));
}

}  // namespace simulated
