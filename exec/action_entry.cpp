#include "exec/action_entry.h"

#include "base/text.h"

namespace assistant {

ActionEntry ParseActionEntry(const std::string& entry) {
  constexpr const char* mark = "RFI Version=";
  const std::size_t at = FindIgnoringCase(entry, mark);
  if (at == std::string::npos) return {Trim(entry), ""};
  const std::size_t semicolon = entry.rfind(';', at);
  const std::size_t end = semicolon == std::string::npos ? at : semicolon;
  return {Trim(entry.substr(0, end)), Trim(entry.substr(at + std::string(mark).size()))};
}

}  // namespace assistant
