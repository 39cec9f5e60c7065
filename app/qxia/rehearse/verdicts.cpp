#include "app/qxia/rehearse/verdicts.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string_view>

#include "app/qxia/rehearse/failures.h"
#include "app/qxia/rehearse/held_back.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

using Rows = std::vector<LogRow>;

std::string KindOf(const ComponentRecord& component) {
  const std::string copyOp = component.value("CopyOp");
  if (!copyOp.empty() && copyOp.back() == '1') return "copy";
  const std::string install = component.value("Install");
  const std::size_t dot = install.rfind('.');
  return dot == std::string::npos ? "" : simulated::Lower(install.substr(dot + 1));
}

/// The last command that the component's turn ran, whatever it came to. A silent run's log names it only behind its
/// end.
std::string CommandOf(const Rows& turn) {
  for (auto row = turn.rbegin(); row != turn.rend(); ++row) {
    for (const char* beginning : {"Running ", "Uninstall Command = "})
      if (row->text.rfind(beginning, 0) == 0) return row->text.substr(std::string(beginning).size());
    if (row->text.rfind("Executing ", 0) != 0 || row->text.rfind("Executing CopyOp", 0) == 0) continue;
    for (const char* ending : {" returned ", " gave a return number of "})
      if (const std::size_t at = row->text.rfind(ending); at != std::string::npos) return row->text.substr(10, at - 10);
  }
  return "";
}

/// The exit code with which each command ended last.
using ExitCodes = std::map<std::string, int>;

ExitCodes ReadExitCodes(const std::vector<std::string>& effects) {
  constexpr std::string_view ended = "ended ";
  constexpr std::string_view with = " -> ";
  ExitCodes codes;
  for (const std::string& effect : effects) {
    const std::size_t code = effect.rfind(with);
    if (!effect.starts_with(ended) || code == std::string::npos) continue;
    codes[effect.substr(ended.size(), code - ended.size())] = std::atoi(effect.c_str() + code + with.size());
  }
  return codes;
}

std::string VersionThere(const Rows& turn) {
  const std::string there = ReasonIn(TextBehind(turn, "A Component with this code is already installed: "));
  const std::size_t version = there.rfind("Version : ");
  return version == std::string::npos ? "" : "version " + there.substr(version + 10) + " is there";
}

struct Told {
  Outcome outcome;
  std::string reason;
};

/// What is worth a word about a component that is there now.
std::string TellInstalled(const Rows& turn, const ComponentResult& result, const ComponentRecord& component) {
  const std::string replaced = TextBehind(turn, "This is a newer version (");
  if (const std::size_t at = replaced.find("previous version ("); at != std::string::npos)
    return "version " + replaced.substr(at + 18, replaced.find(')', at) - at - 18) + " was removed first";
  if (component.value("Process Return") == "Pass") return "reported \"Pass\" itself";
  if (HasText(turn, "The system's reason: ")) return "could not be started, which is no failure of a ." + result.kind;
  const int code = result.exitCode.value_or(0);
  if (code == 0) return "";
  const std::string ended = "ended with " + std::to_string(code);
  const bool restarts = code == 3010 || code == 3011 || code == 1641;
  return restarts ? ended + ", which asks for a restart" : ended + ", which is no failure of a ." + result.kind;
}

bool Failed(const Evidence& evidence, const ComponentRecord& component) {
  const std::string beginning = "Installation of " + component.name + " failed";
  const std::string said = component.value("Process Return");
  return said == "Fail" || said == "Abort" ||
         std::any_of(evidence.reasons.begin(), evidence.reasons.end(),
                     [&](const std::string& reason) { return reason.rfind(beginning, 0) == 0; });
}

Told JudgeInstall(const Evidence& evidence, const ComponentRecord& component, const Rows& turn,
                  const ComponentResult& result) {
  if (turn.empty())
    return {Outcome::NotReached, evidence.reasons.empty() ? "the run ended before it" : evidence.reasons.back()};
  if (HasText(turn, "component will not be installed"))
    return {Outcome::HeldBack, WhyHeldBack(turn, evidence.system, evidence.site)};
  if (Failed(evidence, component)) return {Outcome::Failed, WhyFailed(turn, component, result, evidence.reasons)};
  if (HasText(turn, "its version is the same or higher")) return {Outcome::AlreadyInstalled, VersionThere(turn)};
  if (HasText(turn, "is already installed, or a newer version"))
    return {Outcome::AlreadyInstalled, "the same or a newer version is there"};
  if (result.command.empty() && HasText(turn, "Finished CopyOp"))
    return {Outcome::Copied, "to " + TextBehind(turn, "Executing CopyOp to path ")};
  return {Outcome::Installed, TellInstalled(turn, result, component)};
}

struct Removal {
  const char* text;
  Outcome outcome;
  const char* reason;  ///< null: the row's own text
};

// The first that the turn holds counts.
constexpr Removal Removals[] = {
    {"is not set to run as part of the uninstall", Outcome::Kept, "runonuninstall=false"},
    {"Another product is using this component", Outcome::Kept, "another product uses it"},
    {"was left to another product by an earlier", Outcome::Kept, "an earlier uninstall left it to another product"},
    {"is not currently installed", Outcome::AlreadyGone, "it is not installed"},
    {"was removed by an earlier uninstall", Outcome::AlreadyGone, "an earlier uninstall removed it"},
    {"is gone since a removal that was cut off", Outcome::AlreadyGone, "a removal that was cut off removed it"},
    {"No uninstallation command found", Outcome::Kept, "it has no uninstall command"},
    {"may hold other components' copies", Outcome::Kept, nullptr},
};

Told JudgeRemoval(const Evidence& evidence, const ComponentRecord& component, const Rows& turn,
                  const ComponentResult& result) {
  if (turn.empty()) return {Outcome::NotReached, "the uninstall ended before it"};
  for (const Removal& removal : Removals)
    for (const LogRow& row : turn)
      if (row.text.find(removal.text) != std::string::npos)
        return {removal.outcome, removal.reason == nullptr ? ReasonIn(row.text) : removal.reason};
  const std::string failed = "Uninstallation of " + component.name + " failed";
  if (std::find(evidence.reasons.begin(), evidence.reasons.end(), failed) != evidence.reasons.end())
    return {Outcome::Failed, WhyFailed(turn, component, result, evidence.reasons)};
  const std::string deleted = TextBehind(turn, "Deleting... ");
  return {Outcome::Removed, deleted.empty() ? "" : "deleted " + deleted};
}

ComponentResult Judge(const Evidence& evidence, const ExitCodes& exitCodes, const ComponentRecord& component) {
  static const Rows none;
  const auto found = evidence.turns.find(component.name);
  const Rows& turn = found == evidence.turns.end() ? none : found->second;
  ComponentResult result;
  result.name = component.name;
  result.kind = KindOf(component);
  result.sequence = component.sequence;
  result.command = CommandOf(turn);
  const auto ended = exitCodes.find(result.command);
  if (ended != exitCodes.end()) result.exitCode = ended->second;
  const Told told = evidence.uninstall ? JudgeRemoval(evidence, component, turn, result)
                                       : JudgeInstall(evidence, component, turn, result);
  result.outcome = told.outcome;
  result.reason = told.reason;
  return result;
}

}  // namespace

std::vector<ComponentResult> JudgeComponents(const Evidence& evidence) {
  const ExitCodes exitCodes = ReadExitCodes(evidence.effects);
  std::vector<ComponentResult> results;
  for (const ComponentRecord& component : evidence.components) results.push_back(Judge(evidence, exitCodes, component));
  return results;
}

}  // namespace qxia
