#include "platform/simulated/command_line.h"

#include "platform/simulated/text.h"

namespace simulated {

std::vector<std::string> Arguments(const std::string& commandLine) {
  std::vector<std::string> all;
  std::string current;
  bool quoted = false;
  bool begun = false;
  for (const char c : commandLine) {
    if (c == '"') {
      quoted = !quoted;
      begun = true;
    } else if (!quoted && (c == ' ' || c == '\t')) {
      if (begun) all.push_back(current);
      current.clear();
      begun = false;
    } else {
      current += c;
      begun = true;
    }
  }
  if (begun) all.push_back(current);
  return all;
}

std::string FileName(const std::string& path) {
  const std::size_t last = path.find_last_of("\\/");
  return last == std::string::npos ? path : path.substr(last + 1);
}

bool IsProgram(const std::string& path, const std::string& name) {
  const std::string file = FileName(path);
  return SameText(file, name) || SameText(file, name + ".exe");
}

}  // namespace simulated
