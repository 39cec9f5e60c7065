#include "tests/support/story.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "tests/support/media.h"
#include "tests/support/procedures.h"
#include "tests/support/told.h"

namespace {

/// Effects that are told otherwise: by the registry's differences, the boxes, the rows of the log.
constexpr const char* ToldOtherwise[] = {"registry ", "box ", "file append ", "scroll bar "};

}  // namespace

void Story::follow(Rig& rig) {
  rig_ = &rig;
  effects_ = 0;
  rows_.assign(3, 0);
  shown_.assign(std::size(ToldControls), 0);
  registry_.clear();
  rig.tolerateUnused();
  rig.machine().screen().setPerson([this](const platform::MessageBoxRequest& request) {
    boxes_.push_back("box \"" + request.title + "\", icon " + std::to_string(static_cast<int>(request.icon)) +
                     ", buttons " + std::to_string(static_cast<int>(request.buttons)) + ", default " +
                     std::to_string(static_cast<int>(request.defaultAnswer)) + ": " + OnOneLine(request.text));
    return request.buttons == platform::BoxButtons::YesNo ? platform::BoxAnswer::Yes : request.defaultAnswer;
  });
}

Story::~Story() {
  const std::string meant = std::string(STORIES) + "/" + name_ + ".txt";
  const Names expected = FileLines(meant);
  if (lines_ == expected) return;
  const std::string told = LeaveToRead(name_ + ".txt", lines_);
  const auto [is, was] = std::mismatch(lines_.begin(), lines_.end(), expected.begin(), expected.end());
  ADD_FAILURE() << meant << ", line " << was - expected.begin() + 1 << "\n was: " << (was == expected.end() ? "" : *was)
                << "\n  is: " << (is == lines_.end() ? "" : *is) << "\nthe whole: " << told;
}

void Story::part(const std::string& title, int exitCode) {
  lines_.push_back("== " + title + ": exit code " + std::to_string(exitCode));
  for (std::string& line : whatCame()) lines_.push_back(std::move(line));
}

void Story::ending(const std::string& title, int exitCode) {
  lines_.push_back("== " + title + ": exit code " + std::to_string(exitCode));
  for (std::string& line : whatCame())
    if (endings_.insert(line).second) lines_.push_back(std::move(line));
}

/// All that came since it was told last.
Names Story::whatCame() {
  Names all = std::exchange(boxes_, {});
  for (const std::string& row : newRows()) all.push_back("log: " + row);
  for (std::string& text : newTexts()) all.push_back(std::move(text));
  for (const std::string& effect : newEffects()) all.push_back("machine: " + effect);
  for (std::string& value : newValues()) all.push_back(std::move(value));
  return all;
}

/// The rows of the logs that are new, each as "mark | text".
Names Story::newRows() {
  Names told;
  const std::string logs[] = {rig_->log("Office Suite"), rig_->uninstallLog("Office Suite"), rig_->defaultLog()};
  for (std::size_t i = 0; i < std::size(logs); ++i) {
    const std::vector<LogRow> rows = LogRows(logs[i]);
    // A log that is shorter than before is another one.
    for (std::size_t row = rows.size() < rows_[i] ? 0 : rows_[i]; row < rows.size(); ++row)
      told.push_back(ToldRow(rows[row]));
    rows_[i] = rows.size();
  }
  return told;
}

Names Story::newTexts() {
  Names told;
  for (std::size_t i = 0; i < std::size(ToldControls); ++i) {
    const Names& shown = rig_->machine().screen().shown(ToldControls[i].first);
    for (; shown_[i] < shown.size(); ++shown_[i])
      told.push_back(std::string(ToldControls[i].second) + ": " + LastLine(shown[shown_[i]]));
  }
  return told;
}

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

Names Story::newValues() {
  Names told;
  std::set<std::string> now;
  for (const std::string& value : rig_->registryLines("Software"))
    now.insert(Replaced(Replaced(OnOneLine(value), ProductRecord, "<product>"), InstallationRecord, "<installation>"));
  for (const std::string& value : registry_)
    if (now.count(value) == 0) told.push_back("registry -" + value);
  for (const std::string& value : now)
    if (registry_.count(value) == 0) told.push_back("registry +" + value);
  registry_ = std::move(now);
  return told;
}
