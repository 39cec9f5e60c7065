#include "tests/support/story.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using platform::Control;

constexpr std::pair<Control, const char*> Controls[] = {
    {Control::Status, "status"},         {Control::Action, "action"},     {Control::Component, "component"},
    {Control::LongMessage, "long text"}, {Control::Progress, "progress"}, {Control::Continue, "button"},
    {Control::Cancel, "cancel button"}};

/// Effects that are told otherwise: by the registry's differences, the boxes, the rows of the log.
constexpr const char* ToldOtherwise[] = {"registry ", "box ", "file append ", "scroll bar "};

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

/// On one line.
std::string Shown(const std::string& text) {
  return Replaced(Replaced(text, "\r\n", " | "), "\n", " | ");
}

std::string MarkOf(const std::string& cell) {
  if (cell == ErrorMark) return "ERROR";
  return cell == WarningMark ? "Warning" : cell;
}

/// A status area shows all that it was told; its last line is the new one.
std::string LastLine(const std::string& text) {
  const std::size_t end = text.find_last_not_of("\r\n");
  if (end == std::string::npos) return "";
  const std::size_t start = text.find_last_of("\r\n", end);
  return text.substr(start == std::string::npos ? 0 : start + 1, end - start);
}

Names LinesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Names lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

}  // namespace

void Story::follow(Rig& rig) {
  rig_ = &rig;
  effects_ = 0;
  rows_.assign(3, 0);
  shown_.assign(std::size(Controls), 0);
  registry_.clear();
  rig.tolerateUnused();
  rig.machine().screen().setPerson([this](const platform::MessageBoxRequest& request) {
    boxes_.push_back("box \"" + request.title + "\", icon " + std::to_string(static_cast<int>(request.icon)) +
                     ", buttons " + std::to_string(static_cast<int>(request.buttons)) + ", default " +
                     std::to_string(static_cast<int>(request.defaultAnswer)) + ": " + Shown(request.text));
    return request.buttons == platform::BoxButtons::YesNo ? platform::BoxAnswer::Yes : request.defaultAnswer;
  });
}

Story::~Story() {
  const std::string meant = std::string(STORIES) + "/" + name_ + ".txt";
  const Names expected = LinesOf(meant);
  if (lines_ == expected) return;
  const std::string told = ::testing::TempDir() + name_ + ".txt";
  std::ofstream file(told, std::ios::binary);
  for (const std::string& line : lines_) file << line << "\n";
  const auto [is, was] = std::mismatch(lines_.begin(), lines_.end(), expected.begin(), expected.end());
  ADD_FAILURE() << meant << ", line " << was - expected.begin() + 1 << "\n was: " << (was == expected.end() ? "" : *was)
                << "\n  is: " << (is == lines_.end() ? "" : *is) << "\nthe whole: " << told;
}

void Story::part(const std::string& title, int exitCode) {
  lines_.push_back("== " + title + ": exit code " + std::to_string(exitCode));
  for (const std::string& box : std::exchange(boxes_, {})) lines_.push_back(box);
  for (const std::string& row : newRows()) lines_.push_back("log: " + row);
  tellWindow();
  for (const std::string& effect : newEffects()) lines_.push_back("machine: " + effect);
  tellRegistry();
}

void Story::ending(const std::string& title, int exitCode) {
  lines_.push_back("== " + title + ": exit code " + std::to_string(exitCode));
  Names all = std::exchange(boxes_, {});
  for (const std::string& row : newRows()) all.push_back("log: " + row);
  for (const std::string& text : rig_->machine().screen().shown(Control::LongMessage))
    all.push_back("end: " + Shown(text));
  for (const std::string& effect : newEffects()) all.push_back("machine: " + effect);
  all.push_back("reason: " + Shown(rig_->value(ProductRecord, "Abort Reason")));
  for (const std::string& one : all)
    if (endings_.insert(one).second) lines_.push_back(one);
}

/// The rows of the logs that are new, each as "mark | text".
Names Story::newRows() {
  Names told;
  const std::string logs[] = {rig_->log("Office Suite"), rig_->uninstallLog("Office Suite"), rig_->defaultLog()};
  for (std::size_t i = 0; i < std::size(logs); ++i) {
    const std::vector<LogRow> rows = LogRows(logs[i]);
    // A log that is shorter than before is another one.
    for (std::size_t row = rows.size() < rows_[i] ? 0 : rows_[i]; row < rows.size(); ++row)
      told.push_back(MarkOf(rows[row].type) + " | " + rows[row].description);
    rows_[i] = rows.size();
  }
  return told;
}

void Story::tellWindow() {
  for (std::size_t i = 0; i < std::size(Controls); ++i) {
    const Names& shown = rig_->machine().screen().shown(Controls[i].first);
    for (; shown_[i] < shown.size(); ++shown_[i])
      lines_.push_back(std::string(Controls[i].second) + ": " + LastLine(shown[shown_[i]]));
  }
}

/// What was done to the machine since it was told last.
Names Story::newEffects() {
  Names told;
  const Names all = rig_->effects();
  for (; effects_ < all.size(); ++effects_) {
    const std::string& effect = all[effects_];
    const bool isTold = std::any_of(std::begin(ToldOtherwise), std::end(ToldOtherwise),
                                    [&](const char* beginning) { return effect.rfind(beginning, 0) == 0; });
    if (!isTold) told.push_back(effect);
  }
  return told;
}

void Story::tellRegistry() {
  std::set<std::string> now;
  for (const std::string& value : rig_->registryLines("Software"))
    now.insert(Replaced(Replaced(Shown(value), ProductRecord, "<product>"), InstallationRecord, "<installation>"));
  for (const std::string& value : registry_)
    if (now.count(value) == 0) lines_.push_back("registry -" + value);
  for (const std::string& value : now)
    if (registry_.count(value) == 0) lines_.push_back("registry +" + value);
  registry_ = std::move(now);
}
