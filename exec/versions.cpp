#include "exec/versions.h"

#include <cstdint>
#include <vector>

#include "base/error_handler.h"
#include "base/numbers.h"
#include "base/text.h"

namespace {

std::vector<std::string> Parts(const std::string& version) {
  const bool marked = !version.empty() && (version.front() == 'v' || version.front() == 'V');
  return Split(marked ? version.substr(1) : version, '.');
}

std::int32_t PartNumber(const std::vector<std::string>& parts, std::size_t index, const std::string& version) {
  const auto number = index < parts.size() ? WholeInteger(parts[index]) : std::nullopt;
  if (!number) {
    throw Error(GeneralError, "Version \"" + version + "\" has no number as its part " + std::to_string(index + 1),
                "modMain.IsNewerVersion");
  }
  return *number;
}

}  // namespace

bool IsNewerVersion(Run& run, const std::string& a, const std::string& b) {
  return Guarded(run, "modMain.IsNewerVersion", [&] {
    const std::vector<std::string> partsOfA = Parts(a);
    const std::vector<std::string> partsOfB = Parts(b);
    for (std::size_t i = 0; i < partsOfA.size(); ++i) {
      const std::int32_t partOfA = PartNumber(partsOfA, i, a);
      const std::int32_t partOfB = PartNumber(partsOfB, i, b);
      if (partOfA != partOfB) return partOfA > partOfB;
    }
    return false;
  });
}
