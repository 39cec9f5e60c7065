#include "app/qxia/rehearse/failures.h"

#include <cstdio>
#include <cstdlib>

namespace qxia {
namespace {

using Rows = std::vector<LogRow>;

constexpr const char* DefaultMessage = "Installation failed returning error ";

std::string MissingFile(const Rows& turn) {
  for (const LogRow& row : turn)
    if (row.kind == "ERROR" && row.text.find("Error No = 6081") != std::string::npos) return ReasonIn(row.text);
  return "";
}

/// Bytes as they are logged, in a form that a few rows of a log more or less do not change.
std::string Megabytes(const std::string& bytes) {
  char text[48];
  std::snprintf(text, sizeof text, "%.0f MB", std::strtod(bytes.c_str(), nullptr) / 1e6);
  return text;
}

std::string NoRoom(const Rows& turn) {
  const std::string room = TextBehind(turn, "Available space=");
  const std::size_t comma = room.find(", required space=");
  if (comma == std::string::npos) return "";
  const std::string cost = TextBehind(turn, "Cost check - share=");
  return "needs " + Megabytes(room.substr(comma + 17)) + " for share " + cost.substr(0, cost.find(' ')) +
         "; the drive has " + Megabytes(room.substr(0, comma));
}

std::string UnknownKind(const Rows& turn) {
  for (const LogRow& row : turn)
    if (row.text.find("Error No = 6091") != std::string::npos) return ReasonIn(row.text);
  return "";
}

std::string NotStarted(const Rows& turn) {
  const std::string reason = TextBehind(turn, "The system's reason: ");
  return reason.empty() ? "" : "could not be started: " + ReasonIn(reason);
}

std::string FirstError(const Rows& turn) {
  for (const LogRow& row : turn)
    if (row.kind == "ERROR") return ReasonIn(row.text);
  return "";
}

/// What the component itself said, or the code that its program ended with.
std::string SaidOrEnded(const ComponentRecord& component, const ComponentResult& result) {
  const std::string message = component.value("Message");
  const bool isOwn = !message.empty() && message.rfind(DefaultMessage, 0) != 0;
  const int code = result.exitCode.value_or(0);
  if (isOwn) return "reported \"" + component.value("Process Return") + "\": " + message;
  if (code != 0) return "ended with " + std::to_string(code);
  const std::string said = component.value("Process Return");
  return said == "Fail" || said == "Abort" ? "reported \"" + said + "\"" : "";
}

}  // namespace

std::string WhyFailed(const Rows& turn, const ComponentRecord& component, const ComponentResult& result,
                      const std::vector<std::string>& reasons) {
  for (const std::string& fact : {MissingFile(turn), NoRoom(turn), UnknownKind(turn), NotStarted(turn),
                                  SaidOrEnded(component, result), FirstError(turn)})
    if (!fact.empty()) return fact;
  const std::string beginning = "Installation of " + component.name + " failed";
  for (const std::string& reason : reasons)
    if (reason.rfind(beginning, 0) == 0) return reason;
  return reasons.empty() ? "failed" : reasons.front();
}

}  // namespace qxia
