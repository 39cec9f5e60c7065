#include "app/qxia/logs/turn.h"

#include <algorithm>
#include <cstdlib>

#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

/// What is left of the text behind its start; nothing when it starts otherwise.
std::optional<std::string_view> Behind(std::string_view text, std::string_view start) {
  if (!text.starts_with(start)) return std::nullopt;
  return text.substr(start.size());
}

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// A row that says how the component ended. The texts are those of the log, misspellings and blanks included.
struct VerdictRow {
  std::string_view start;
  std::string_view part;  ///< that it holds as well
  Outcome outcome;
};

constexpr VerdictRow InstallVerdicts[] = {
    {" Install was successfull", "", Outcome::Installed},
    {" Install returned no errors", "", Outcome::Installed},
    {"*** Install was successfull ***", "", Outcome::Installed},
    {"*** Install Failed ***", "", Outcome::Failed},
    {"*** Component name and version not matched ***", "", Outcome::Failed},
    {"and its version is the same or higher, so install will not be done.", "", Outcome::AlreadyInstalled},
    {"Version ", " is already installed, or a newer version of this component is already", Outcome::AlreadyInstalled},
    {"Component ", " is not meant for this machine type (", Outcome::HeldBack},
    {"Condition not met, component will not be installed", "", Outcome::HeldBack},
};

constexpr VerdictRow UninstallVerdicts[] = {
    {"Component ", " is not set to run as part of the uninstall sequence - skipping", Outcome::Kept},
    {"Component ", " was left to another product by an earlier uninstall - skipping", Outcome::Kept},
    {"Component ", " was removed by an earlier uninstall - skipping", Outcome::AlreadyGone},
    {"Component ", " is not currently installed, so will not be uninstalled", Outcome::AlreadyGone},
    {"Component ", " is gone since a removal that was cut off - skipping", Outcome::AlreadyGone},
    {"Another product is using this component, so it will not be uninstalled.", "", Outcome::Kept},
    {"No uninstallation command found at ", "", Outcome::Kept},
    {"Folder ", " may hold other components' copies - skipping delete...", Outcome::Kept},
};

template <std::size_t Count>
const VerdictRow* FindVerdict(const VerdictRow (&rows)[Count], std::string_view text) {
  const auto* found = std::find_if(std::begin(rows), std::end(rows), [text](const VerdictRow& row) {
    return text.starts_with(row.start) && Holds(text, row.part);
  });
  return found == std::end(rows) ? nullptr : found;
}

/// How the row about a command that has run ends.
struct Ending {
  std::string_view text;
  bool isFailure;  ///< when the row is an error
};

constexpr Ending Endings[] = {
    {" returned no errors (return code: ", false},
    {" gave a return number of ", false},
    {" returned Error number ", true},
    {" returned ", false},
};

bool AsksForRestart(int code) {
  return code == 1641 || code == 3010 || code == 3011;
}

/// An installed product that does not tell its name: listing them is no part of a component's own work.
bool IsAboutOthers(const Row& row) {
  return row.kind == RowKind::Error && row.text.ends_with(" Error No = 6147");
}

constexpr std::string_view Returned = "Install Message Returned: ";

/// What the component said itself, of the row of a failure; "" when nothing.
std::string ReturnedMessage(const std::string& verdict) {
  const std::size_t at = verdict.find(Returned);
  if (at == std::string::npos) return "";
  const std::size_t start = at + Returned.size();
  return verdict.substr(start, verdict.find("; ", start) - start);
}

constexpr const char* NotRunAgain = "not run, as it is there in the same or a newer version";

}  // namespace

void Turn::take(const Row& row) {
  last_ = row.number;
  if (row.kind == RowKind::Warning) warning_ = {PlainText(row.text), row.number};
  if (IsAboutOthers(row)) return;
  if (row.kind == RowKind::Error) errors_.push_back({PlainText(row.text), row.number});
  if (const auto command = Behind(row.text, "Running ")) {
    command_ = *command;
    wasRun_ = true;
  }
  direction_ == Direction::Install ? takeInstall(row) : takeUninstall(row);
}

void Turn::decide(Outcome outcome, const Row& row, std::string reason) {
  decided_ = true;
  outcome_ = outcome;
  verdict_ = {std::move(reason), row.number};
}

void Turn::takeExecuted(const Row& row) {
  const std::string_view executed = row.text.substr(std::string_view("Executing ").size());
  for (const Ending& ending : Endings) {
    const std::size_t at = executed.rfind(ending.text);
    if (at == std::string_view::npos) continue;
    wasRun_ = true;
    command_ = executed.substr(0, at);
    exitCode_ = std::atoi(std::string(executed.substr(at + ending.text.size())).c_str());
    codeIsFailure_ = ending.isFailure;
    return;
  }
}

void Turn::takeInstall(const Row& row) {
  const std::string_view text = row.text;
  if (const VerdictRow* verdict = FindVerdict(InstallVerdicts, text)) {
    const bool byCondition = text.starts_with("Condition not met");
    const std::string condition = condition_.empty() ? "" : " (" + condition_ + ")";
    decide(verdict->outcome, row, byCondition ? warning_.text + condition : PlainText(text));
    if (byCondition) verdict_.row = std::max(warning_.row, first_);
  } else if (const auto condition = Behind(text, "Checking condition ")) {
    condition_ = *condition;
  } else if (const auto extension = Behind(text, "Type of file is ")) {
    extension_ = *extension;
  } else if (const auto target = Behind(text, "Executing CopyOp to path ")) {
    copiedTo_ = *target;
  } else if (text == "Finished CopyOp") {
    decide(errors_.empty() ? Outcome::Copied : Outcome::Failed, row);
  } else if (text.starts_with("Executing ")) {
    takeExecuted(row);
  } else if (const auto returned = Behind(text, "Process return = ")) {
    processReturn_ = *returned;
    if (processReturn_ == "Abort") decide(Outcome::Failed, row);
  } else if (text == "System check text file exists") {
    // Only what an exit code decides stands beside such a file.
    decide(codeIsFailure_ && decidesByCode() ? Outcome::Failed : Outcome::Installed, row);
  } else if (const auto before = Behind(text, "A Component with this code is already installed")) {
    const std::string told = PlainText(*before);
    constexpr std::string_view version = "Version : ";
    if (const std::size_t at = told.rfind(version); at != std::string::npos)
      installedBefore_ = told.substr(at + version.size());
  } else if (text == "Writing last sequence to register" || text == "Aborting Installation") {
    closed_ = true;
  }
}

void Turn::takeUninstall(const Row& row) {
  const std::string_view text = row.text;
  if (const VerdictRow* verdict = FindVerdict(UninstallVerdicts, text)) {
    std::string reason = PlainText(text);
    decide(verdict->outcome, row, reason.substr(0, reason.find("; Source: ")));
  } else if (const auto command = Behind(text, "Uninstall Command = ")) {
    command_ = *command;
    wasRun_ = !command_.empty();
    decide(Outcome::Removed, row);
  } else if (text.starts_with("Deleting... ")) {
    decide(Outcome::Removed, row, PlainText(text));
  } else if (text.ends_with(" does not exist - skipping delete...") && verdict_.row + 1 == row.number) {
    decide(Outcome::AlreadyGone, row, PlainText(text));
  } else if (row.kind == RowKind::Error) {
    decide(Outcome::Failed, row);
  }
}

/// The last errors first told what went wrong; their sources are for those who read the log itself.
std::string Turn::errorTexts() const {
  std::string texts;
  for (const Told& error : errors_) {
    const std::string text = error.text.substr(0, error.text.find("; Source: "));
    if (texts.find(text) == std::string::npos) texts += (texts.empty() ? "" : "; ") + text;
  }
  return texts;
}

/// The program looks at the exit code of no other files, nor where an extension has capitals.
bool Turn::decidesByCode() const {
  return extension_ == "exe" || extension_ == "vbs";
}

std::string Turn::failureReason() const {
  if (std::string message = ReturnedMessage(verdict_.text); !message.empty()) return message;
  const bool isPackage = simulated::SameText(extension_, "msi");
  const bool byCode =
      isPackage ? exitCode_ && *exitCode_ != 0 && !AsksForRestart(*exitCode_) : codeIsFailure_ && decidesByCode();
  if (byCode) return "Installation failed returning error " + std::to_string(*exitCode_);
  if (processReturn_ == "Fail" || processReturn_ == "Abort") return "reported \"" + processReturn_ + "\" itself";
  if (isPackage && exitCode_)
    return "not among the installed packages in its version after msiexec ended with " + std::to_string(*exitCode_);
  return errors_.empty() ? warning_.text : errorTexts();
}

void Turn::judgeInstall(LoggedComponent& component, bool runEnded) const {
  const bool isOver = closed_ || runEnded;
  if (decided_) {
    component.reason = verdict_.text;
    component.row = verdict_.row;
    if (outcome_ == Outcome::Installed) component.reason.clear();
    if (outcome_ == Outcome::Installed && exitCode_.value_or(0) != 0 && !AsksForRestart(*exitCode_))
      component.reason = "return number " + std::to_string(*exitCode_);
    if (outcome_ == Outcome::Copied) component.reason = copiedTo_.empty() ? "" : "copied to " + copiedTo_;
    if (outcome_ == Outcome::AlreadyInstalled && !installedBefore_.empty())
      component.reason = "there already in version " + installedBefore_;
    if (outcome_ == Outcome::Failed) component.reason = failureReason();
    component.outcome = outcome_;
  } else if (isOver && simulated::SameText(extension_, "msi") && !wasRun_ && errors_.empty()) {
    component.outcome = Outcome::AlreadyInstalled;  // only a verbose log has a row about it
    component.reason = NotRunAgain;
  } else if (isOver && (closed_ || !errors_.empty())) {
    component.outcome = Outcome::Failed;
    component.reason = failureReason();
    component.row = errors_.empty() ? warning_.row : errors_.back().row;
  } else {
    component.outcome = Outcome::NotReached;
    component.reason = runEnded ? "the run ended while it was in work" : "the log breaks off while it was in work";
  }
}

void Turn::judgeUninstall(LoggedComponent& component, bool runEnded) const {
  // Behind the command's row nothing is told of a removal that went well, but that the run went on.
  const bool isOpen = !runEnded && (!decided_ || outcome_ == Outcome::Removed);
  component.outcome = isOpen ? Outcome::NotReached : outcome_;
  component.row = verdict_.row;
  component.reason = isOpen ? "the log breaks off while it was in work" : verdict_.text;
  if (component.outcome == Outcome::Failed) component.reason = errorTexts();
  if (!isOpen && !decided_) {
    component.outcome = Outcome::Failed;
    component.reason = "the log does not tell what became of it";
  }
}

void Turn::judge(LoggedComponent& component, bool runEnded) const {
  direction_ == Direction::Install ? judgeInstall(component, runEnded) : judgeUninstall(component, runEnded);
  if (component.row == 0) component.row = first_;
  const std::string kind = simulated::Lower(extension_);
  if (!kind.empty()) component.kind = kind;
  if (component.outcome == Outcome::Copied) component.kind = "copy";
  if (!wasRun_) return;
  component.command = command_;
  component.exitCode = exitCode_;
}

}  // namespace qxia::logs
