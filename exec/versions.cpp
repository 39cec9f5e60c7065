#include "exec/versions.h"

#include <cstdint>
#include <vector>

#include "base/numbers.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant {
namespace {

std::int32_t PartNumber(const Procedure& here, const std::vector<std::string>& parts, std::size_t index,
                        const std::string& version) {
  const auto number = index < parts.size() ? WholeInteger(parts[index]) : std::nullopt;
  if (!number) {
    throw here.failure("Version \"" + version + "\" has no number as its part " + std::to_string(index + 1));
  }
  return *number;
}

}  // namespace

std::vector<std::string> VersionParts(const std::string& version) {
  const bool marked = !version.empty() && (version.front() == 'v' || version.front() == 'V');
  return Split(marked ? version.substr(1) : version, '.');
}

bool IsNewerVersion(clsAppLog& log, const std::string& a, const std::string& b) {
  const Procedure here(log, "modMain.IsNewerVersion");
  return here.guard([&] {
    const std::vector<std::string> partsOfA = VersionParts(a);
    const std::vector<std::string> partsOfB = VersionParts(b);
    for (std::size_t i = 0; i < partsOfA.size(); ++i) {
      const std::int32_t partOfA = PartNumber(here, partsOfA, i, a);
      const std::int32_t partOfB = PartNumber(here, partsOfB, i, b);
      if (partOfA != partOfB) return partOfA > partOfB;
    }
    return false;
  });
}

}  // namespace assistant
