#include "app/qxia/logs/reader.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <utility>

#include "base/record_keys.h"
#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

constexpr std::string_view SequenceStart = "Sequence is:";
constexpr std::string_view NextStart = "Next component is ";
constexpr std::string_view ProcessingStart = "Processing component ";
constexpr std::string_view Complete = "QX Installer Run complete";
constexpr std::string_view Rebooting = "Re-booting now";
constexpr std::string_view Resumed = "System has been re-booted by the application.";
constexpr std::string_view CommandLineStart = "Command line is ";
constexpr std::string_view FreshStart = "Package Root path returned as ";
constexpr std::string_view Closing = "Resetting system registry";

std::string Between(std::string_view text, std::string_view start, std::string_view end) {
  if (!text.starts_with(start)) return "";
  text.remove_prefix(start.size());
  const std::size_t at = text.rfind(end);
  return std::string(text.substr(0, at));
}

/// Reads one run row by row.
class RunReader {
 public:
  /// False for a row with which another run begins.
  bool take(const Row& row);
  LoggedRun finish();
  /// Whose rows the last one belongs to.
  const std::string& component() const { return component_; }
  bool isEmpty() const { return run_.firstRow == 0; }

 private:
  struct Known {
    LoggedComponent component;
    bool inSequence = false;
  };

  void takeOfRun(const Row& row);
  void takeSequence(std::string_view text);
  void takeProcessing(std::string_view text);
  void takeProduct(std::string_view text);
  void openTurn(const Row& row);
  void closeTurn(bool runEnded);
  void takeError(const Row& row);
  Known& find(const std::string& name);
  std::vector<std::string> reasons() const;

  LoggedRun run_;
  std::vector<Known> known_;
  std::map<std::string, std::size_t, std::less<>> places_;
  std::optional<Turn> turn_;
  std::string turnOf_;
  std::string component_;
  std::string nextKind_;             ///< of the file that an uninstall names before its component
  std::string sequence_;             ///< the last row of that kind
  std::vector<std::string> errors_;  ///< outside of the components' turns, since the last one
  std::vector<std::string> fatal_;   ///< that make the product fail wherever they stand
  bool startsAnew_ = false;          ///< the program was started again, and has not told that it goes on
  bool isOver_ = false;              ///< the last row that a run writes of itself has come
  bool closesDown_ = false;
};

/// What ends a run that is not told by an error row of its end.
bool EndsRun(std::string_view text) {
  return text == "Run ended at user request" || text == "Process halted after Pre-Install Actions failed." ||
         text == "Cannot Determine the Current Sequence" || text.starts_with("Uninstall of product ");
}

bool RunReader::take(const Row& row) {
  const bool isRest = row.text == "*********" || row.text == Rebooting;
  if (isOver_ && !isRest) return false;
  // The one before was broken off, and its log could not be archived.
  if (startsAnew_ && row.text.starts_with(FreshStart)) return false;
  if (row.text.starts_with(CommandLineStart)) startsAnew_ = run_.firstRow != 0;
  if (row.text == Resumed) startsAnew_ = false;
  if (run_.firstRow == 0) {
    run_.firstRow = row.number;
    run_.firstTime = IsoTime(row.stamp);
  }
  run_.lastTime = IsoTime(row.stamp);
  takeOfRun(row);
  return true;
}

void RunReader::takeOfRun(const Row& row) {
  const std::string_view text = row.text;
  if (text.starts_with(NextStart)) return openTurn(row);
  if (turn_) {
    turn_->take(row);
    if (turn_->isClosed()) closeTurn(true);
  }
  if (text == Rebooting) {
    ++run_.restarts;
    if (run_.end != RunEnd::Complete) run_.end = RunEnd::Waiting;
  } else if (text == Complete) {
    closeTurn(true);
    run_.end = RunEnd::Complete;
    isOver_ = true;
  } else if (text == Closing || text == "Removing Product registry entries") {
    closeTurn(true);
    component_.clear();
    closesDown_ = true;
  } else if (run_.end == RunEnd::Waiting) {
    run_.end = RunEnd::BrokenOff;  // the machine has come back, and the run goes on
  }
  if (text == Resumed) component_.clear();
  if (run_.direction == Direction::Uninstall && text.starts_with("Next in sequence is "))
    nextKind_ = simulated::Lower(std::string(text.substr(std::min(text.rfind('.') + 1, text.size()))));
  takeSequence(text);
  takeProcessing(text);
  takeProduct(text);
  takeError(row);
}

RunReader::Known& RunReader::find(const std::string& name) {
  const auto [place, isNew] = places_.emplace(name, known_.size());
  if (isNew) {
    known_.emplace_back();
    known_.back().component.name = name;
  }
  return known_[place->second];
}

/// "Sequence is:<br>Core = 100<br>Tools = 200<br>", before every component, and mostly the same.
void RunReader::takeSequence(std::string_view text) {
  if (!text.starts_with(SequenceStart)) return;
  component_.clear();
  if (text == sequence_) return;
  sequence_ = text;
  text.remove_prefix(SequenceStart.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find("<br>"), text.size());
    const std::string_view entry = text.substr(0, end);
    text.remove_prefix(std::min(end + 4, text.size()));
    const std::size_t number = entry.rfind(" = ");
    if (number == std::string_view::npos) continue;
    Known& known = find(std::string(entry.substr(0, number)));
    known.component.sequence = std::atoi(std::string(entry.substr(number + 3)).c_str());
    known.inSequence = true;
  }
}

void RunReader::takeProcessing(std::string_view text) {
  constexpr std::string_view index = ", index number ";
  if (text.starts_with(ProcessingStart)) {
    component_ = Between(text, ProcessingStart, index);
    const std::string number(text.substr(text.rfind(index) + index.size()));
    find(component_).component.sequence = std::atoi(number.c_str()) * assistant::SequenceStep;
  } else if (text.starts_with("Reading ") && text.ends_with(".msi") && !component_.empty() && !turn_) {
    find(component_).component.kind = "msi";
  } else if (text == "Component registry entries written") {
    component_.clear();
  }
}

void RunReader::takeProduct(std::string_view text) {
  constexpr std::string_view installing = "Installing ";
  constexpr std::string_view version = " Version ";
  constexpr std::string_view requested = "Uninstall requested for product ";
  if (text.starts_with(installing) && !turn_ && run_.product.name.empty()) {
    const std::size_t at = text.rfind(version);
    if (at == std::string_view::npos || at < installing.size()) return;
    run_.product.name = text.substr(installing.size(), at - installing.size());
    run_.product.version = text.substr(at + version.size());
  } else if (text.starts_with(requested) && run_.product.name.empty()) {
    run_.direction = Direction::Uninstall;
    run_.product.name = Between(text, requested, " and confirmed by ");
  } else if (text.starts_with("Uninstall of product ")) {
    run_.direction = Direction::Uninstall;
    run_.product.name = Between(text, "Uninstall of product ", " cancelled at user request");
  }
}

/// Only the errors behind the last component count for the run: those before one did not keep it from going on.
void RunReader::takeError(const Row& row) {
  const bool isFatal = row.text.ends_with(" Error No = 6087") || EndsRun(row.text);
  const bool counts = row.kind == RowKind::Error && !turn_ && !closesDown_ && !row.text.ends_with(" Error No = 6147");
  if (!counts && !isFatal) return;
  const std::string text = PlainText(row.text);
  (isFatal ? fatal_ : errors_).push_back(text.substr(0, text.find("; Source: ")));
}

void RunReader::openTurn(const Row& row) {
  closeTurn(true);
  turnOf_ = Between(row.text, NextStart, " v.");
  component_ = turnOf_;
  if (run_.direction == Direction::Uninstall) find(turnOf_).component.kind = nextKind_;
  turn_.emplace(run_.direction, row);
  errors_.clear();
}

void RunReader::closeTurn(bool runEnded) {
  if (!turn_) return;
  LoggedComponent& known = find(turnOf_).component;
  LoggedComponent judged;
  judged.name = known.name;
  judged.sequence = known.sequence;
  judged.kind = known.kind;
  turn_->judge(judged, runEnded);
  known = std::move(judged);
  turn_.reset();
}

std::vector<std::string> RunReader::reasons() const {
  std::vector<std::string> all;
  for (const LoggedComponent& component : run_.components)
    if (component.outcome == Outcome::Failed) all.push_back(component.name + ": " + component.reason);
  for (const std::vector<std::string>* errors : {&fatal_, &errors_})
    for (const std::string& error : *errors)
      if (std::find(all.begin(), all.end(), error) == all.end()) all.push_back(error);
  return all;
}

LoggedRun RunReader::finish() {
  closeTurn(false);
  for (Known& known : known_)
    if (known.inSequence || sequence_.empty()) run_.components.push_back(std::move(known.component));
  std::stable_sort(run_.components.begin(), run_.components.end(),
                   [](const LoggedComponent& a, const LoggedComponent& b) { return a.sequence < b.sequence; });
  run_.product.reasons = reasons();
  run_.product.succeeded = run_.end == RunEnd::Complete && run_.product.reasons.empty();
  return std::move(run_);
}

}  // namespace

ReadLog ReadLogText(std::string_view log, Keep keep) {
  ReadLog result;
  Rows rows(log);
  RunReader run;
  while (const std::optional<Row> row = rows.next()) {
    if (!run.take(*row)) {
      result.runs.push_back(run.finish());
      run = RunReader();
      run.take(*row);
    }
    if (keep == Keep::Rows) {
      result.rows.push_back({row->number, IsoTime(row->stamp), row->kind, run.component(), std::string(row->text)});
    }
  }
  if (!run.isEmpty()) result.runs.push_back(run.finish());
  result.brokenLine = rows.firstBrokenLine();
  return result;
}

}  // namespace qxia::logs
