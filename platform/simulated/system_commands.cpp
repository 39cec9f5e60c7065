#include "platform/simulated/system_commands.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <utility>
#include <vector>

#include "platform/simulated/command_line.h"
#include "platform/simulated/text.h"

namespace simulated {
namespace {

constexpr std::int32_t Failed = 1;
constexpr std::int32_t NetworkPathNotFound = 2;

using Words = std::vector<std::string>;

constexpr const char* ShellVerbs[] = {"del", "erase", "rd", "rmdir", "copy", "echo"};
constexpr const char* RegVerbs[] = {"add", "delete"};

SystemCommand Ends(std::int32_t exitCode) {
  SystemCommand command{true, {}};
  command.outcome.exitCode = exitCode;
  command.outcome.milliseconds = 0;
  return command;
}

bool IsSwitch(const std::string& word) {
  return word.size() > 1 && word[0] == '/';
}

/// The words that are no switches.
Words Operands(const Words& words) {
  Words operands;
  std::copy_if(words.begin(), words.end(), std::back_inserter(operands),
               [](const std::string& word) { return !IsSwitch(word); });
  return operands;
}

/// Without a word list of its own, Windows 95 and its successors share nothing from a command line.
SystemCommand Net(const Words& words, const Machine& machine) {
  const std::string verb = words.empty() ? "" : Lower(words[0]);
  if (verb == "share") return Ends(machine.isNt() ? 0 : Failed);
  const bool removes = std::any_of(words.begin(), words.end(), [](const std::string& word) {
    return SameText(word, "/delete") || SameText(word, "/d");
  });
  return verb == "use" && !removes ? Ends(NetworkPathNotFound) : Ends(0);
}

SystemCommand Delete(const Words& words) {
  SystemCommand command = Ends(0);
  command.outcome.deletedFiles = Operands(words);
  return command;
}

SystemCommand Copy(const Words& words, Files& files) {
  const Words operands = Operands(words);
  if (operands.size() != 2 || !files.exists(operands[0]) || files.isFolder(operands[0])) return Ends(Failed);
  const std::string target = files.isFolder(operands[1]) ? operands[1] + "\\" + FileName(operands[0]) : operands[1];
  SystemCommand command = Ends(0);
  command.outcome.files.push_back({target, files.content(operands[0]).value_or("")});
  return command;
}

/// echo TEXT > FILE, or >> FILE behind what is there.
SystemCommand Echo(const std::string& text, Files& files) {
  SystemCommand command = Ends(0);
  const std::size_t arrow = text.find('>');
  if (arrow == std::string::npos) return command;
  const bool appends = text.compare(arrow, 2, ">>") == 0;
  const Words target = Arguments(text.substr(arrow + (appends ? 2 : 1)));
  if (target.empty()) return Ends(Failed);
  const std::string before = appends ? files.content(target[0]).value_or("") : "";
  command.outcome.files.push_back({target[0], before + text.substr(0, arrow) + "\r\n"});
  return command;
}

/// What stands behind /c; "" for chained commands, which are none of those known here.
std::string ShellLine(const std::string& commandLine) {
  const std::size_t at = Lower(commandLine).find("/c ");
  if (at == std::string::npos || commandLine.find_first_of("&|", at) != std::string::npos) return "";
  return Trim(commandLine.substr(at + 3));
}

bool IsAmong(std::span<const char* const> verbs, const Words& words, std::size_t at) {
  return words.size() > at &&
         std::any_of(verbs.begin(), verbs.end(), [&](const char* verb) { return SameText(words[at], verb); });
}

SystemCommand Shell(const std::string& commandLine, Files& files) {
  const std::string line = ShellLine(commandLine);
  Words words = Arguments(line);
  if (!IsAmong(ShellVerbs, words, 0)) return {};
  const std::string verb = Lower(words[0]);
  words.erase(words.begin());
  if (verb == "del" || verb == "erase" || verb == "rd" || verb == "rmdir") return Delete(words);
  if (verb == "copy") return Copy(words, files);
  return Echo(Trim(line.substr(4)), files);
}

/// The word behind a switch; "" when it is not there.
std::string Behind(const Words& words, const char* name) {
  for (std::size_t i = 0; i + 1 < words.size(); ++i)
    if (SameText(words[i], name)) return words[i + 1];
  return "";
}

SystemCommand AddToRegistry(const Words& words) {
  const std::string data = Behind(words, "/d");
  const bool isNumber = SameText(Behind(words, "/t"), "REG_DWORD");
  char number[20];
  std::snprintf(number, sizeof number, "dword:%08lx", std::strtoul(data.c_str(), nullptr, 0));
  SystemCommand command = Ends(0);
  command.outcome.registry.push_back({words[1], Behind(words, "/v"), isNumber ? number : data});
  return command;
}

SystemCommand DeleteFromRegistry(const Words& words, Registry& registry) {
  const std::string& key = words[1];
  const std::string name = Behind(words, "/v");
  if (name.empty() ? !registry.hasKey(key) : registry.find(key, name) == nullptr) return Ends(Failed);
  SystemCommand command = Ends(0);
  if (name.empty()) command.outcome.deletedKeys.push_back(key);
  if (!name.empty()) command.outcome.also = [&registry, key, name] { registry.remove(key, name); };
  return command;
}

SystemCommand Reg(const Words& words, Registry& registry) {
  if (!IsAmong(RegVerbs, words, 0)) return {};
  if (words.size() < 2 || words[1].find('\\') == std::string::npos) return Ends(Failed);
  if (SameText(words[0], "add")) return AddToRegistry(words);
  return DeleteFromRegistry(words, registry);
}

bool HasReg(const Machine& machine) {
  const platform::SystemVersion& version = machine.system().version;
  return machine.isNt() && (version.major > 5 || (version.major == 5 && version.minor >= 1));
}

SystemCommand Missing() {
  SystemCommand command;
  command.missing = true;
  return command;
}

}  // namespace

bool NeedsNoDeclaration(const std::string& commandLine) {
  const Words words = Arguments(commandLine);
  if (words.empty()) return false;
  if (IsProgram(words[0], "cmd")) return IsAmong(ShellVerbs, Arguments(ShellLine(commandLine)), 0);
  if (IsProgram(words[0], "reg")) return IsAmong(RegVerbs, words, 1);
  return IsProgram(words[0], "net") || IsProgram(words[0], "at") || IsProgram(words[0], "msiexec");
}

SystemCommand KnownCommand(const std::string& commandLine, const std::string& program,
                           const CommandSurroundings& around) {
  Words words = Arguments(commandLine);
  if (!words.empty()) words.erase(words.begin());
  if (IsProgram(program, "net")) return Net(words, around.machine);
  if (IsProgram(program, "reg")) return HasReg(around.machine) ? Reg(words, around.registry) : Missing();
  const bool isShell = IsProgram(program, "cmd");
  if (!isShell && !IsProgram(program, "at")) return {};
  if (!around.machine.isNt()) return Missing();
  return isShell ? Shell(commandLine, around.files) : Ends(0);
}

}  // namespace simulated
