#include "app/qxia/check/script_facts.h"

#include <algorithm>
#include <vector>

#include "base/record_keys.h"
#include "base/text.h"

namespace qxia::check {
namespace {

constexpr std::size_t LargestScript = 1U << 20;
constexpr std::size_t ProgramHead = 512U << 10;  ///< what tells the tool stands near the start

struct InstallerTool {
  const char* mark;  ///< in the program's bytes
  const char* name;
  const char* switches;  ///< any of them, separated by blanks
};

constexpr InstallerTool Tools[] = {
    {"Nullsoft.NSIS", "NSIS", "/S"},
    {"NullsoftInst", "NSIS", "/S"},
    {"JR.Inno.Setup", "Inno Setup", "/VERYSILENT /SILENT"},
    {"Inno Setup", "Inno Setup", "/VERYSILENT /SILENT"},
    {"InstallShield", "InstallShield", "/s -s"},
    {"WiseMain", "Wise", "/s"},
    {".wixburn", "WiX", "/quiet /q -quiet -q"},
    {"wextract", "IExpress", "/q"},
};

/// The line without blanks in front, and without the sign that hides a command; "" for a comment.
std::string Statement(const std::string& line) {
  std::size_t at = line.find_first_not_of(" \t@");
  if (at == std::string::npos) return "";
  std::string statement = line.substr(at);
  const bool isComment = statement.front() == '\'' || statement.rfind("::", 0) == 0 ||
                         assistant::StartsWithIgnoringCase(statement, "rem ");
  return isComment ? "" : statement;
}

bool IsWord(const std::string& text, const std::string& word) {
  if (!assistant::StartsWithIgnoringCase(text, word)) return false;
  return text.size() == word.size() || std::string(" \t\r&>|(").find(text[word.size()]) != std::string::npos;
}

std::string QuestionOf(const std::string& statement, bool isBatch) {
  if (isBatch) {
    for (const char* word : {"pause", "choice"})
      if (IsWord(statement, word)) return word;
    return assistant::ContainsIgnoringCase(statement, "set /p") ? "set /p" : "";
  }
  for (const char* word : {"MsgBox", "InputBox", "WScript.Echo"})
    if (assistant::ContainsIgnoringCase(statement, word)) return word;
  return assistant::ContainsIgnoringCase(statement, ".Popup") ? "Popup" : "";
}

bool WritesReboot(const std::string& statement) {
  const bool writes = assistant::ContainsIgnoringCase(statement, "RegWrite") ||
                      assistant::ContainsIgnoringCase(statement, "reg add") ||
                      assistant::ContainsIgnoringCase(statement, "reg.exe add");
  return writes && assistant::ContainsIgnoringCase(statement, "reboot");
}

ScriptFacts LookIntoText(const std::string& text, bool isBatch) {
  ScriptFacts facts;
  bool namesKey = false;
  for (const std::string& line : assistant::Split(text, '\n')) {
    const std::string statement = Statement(line);
    if (facts.question.empty()) facts.question = QuestionOf(statement, isBatch);
    facts.asksForRestart = facts.asksForRestart || WritesReboot(statement);
    namesKey = namesKey || assistant::ContainsIgnoringCase(statement, assistant::InstallationKey);
  }
  facts.asksForRestart = facts.asksForRestart && namesKey;
  return facts;
}

ScriptFacts LookIntoProgram(const std::string& bytes, const std::string& arguments) {
  ScriptFacts facts;
  for (const InstallerTool& tool : Tools) {
    if (bytes.find(tool.mark) == std::string::npos) continue;
    facts.madeBy = tool.name;
    facts.silentSwitches = tool.switches;
    const std::vector<std::string> words = assistant::Split(arguments, ' ');
    for (const std::string& given : assistant::Split(facts.silentSwitches, ' '))
      facts.isSilent = facts.isSilent || std::any_of(words.begin(), words.end(), [&](const std::string& word) {
                         return given == "/S" ? word == given : assistant::StartsWithIgnoringCase(word, given);
                       });
    break;
  }
  return facts;
}

}  // namespace

ScriptFacts LookInto(const Found& found, const std::string& name, const std::string& arguments) {
  const assistant::FileKind* kind = assistant::KindOf(name);
  if (!found.isFile() || kind == nullptr || assistant::IsPackage(kind)) return {};
  const std::string extension = kind->extension;
  const bool isProgram = extension == "exe";
  const auto bytes = ReadText(found.host, isProgram ? ProgramHead : LargestScript);
  if (!bytes) return {};
  return isProgram ? LookIntoProgram(*bytes, arguments) : LookIntoText(*bytes, extension == "bat");
}

}  // namespace qxia::check
