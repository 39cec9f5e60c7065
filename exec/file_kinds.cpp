#include "exec/file_kinds.h"

#include <algorithm>
#include <iterator>

#include "base/paths.h"
#include "base/text.h"

namespace assistant {
namespace {

// Required: exit codes of programs and scripts count only where the extension is written in lower case. What runs a
// file, and what judges it, does not depend on letter case.
constexpr FileKind Kinds[] = {
    // msiexec's exit code is judged where it is run.
    {"msi", Runner::Msiexec, "", BadExitCode::NeverCounts, LetterCase::Any, JudgedBy::InstalledProducts,
     RemovedBy::Msiexec},
    {"exe", Runner::Itself, "", BadExitCode::CountsWhenNotStarted, LetterCase::Lower, JudgedBy::Nothing,
     RemovedBy::Command},
    {"bat", Runner::Itself, "", BadExitCode::NeverCounts, LetterCase::Any, JudgedBy::Nothing, RemovedBy::Command},
    {"vbs", Runner::Host, "wscript.exe ", BadExitCode::Counts, LetterCase::Lower, JudgedBy::Nothing,
     RemovedBy::Command},
};

template <class Matches>
const FileKind* FirstThat(Matches matches) {
  const auto* const found = std::find_if(std::begin(Kinds), std::end(Kinds), matches);
  return found == std::end(Kinds) ? nullptr : found;
}

}  // namespace

std::span<const FileKind> FileKinds() {
  return Kinds;
}

const FileKind* KindOf(const std::string& file) {
  const std::string extension = Extension(file);
  return FirstThat([&](const FileKind& kind) { return EqualIgnoringCase(extension, kind.extension); });
}

const FileKind* KindByEnding(const std::string& text) {
  return FirstThat([&](const FileKind& kind) { return EndsWithIgnoringCase(text, kind.extension); });
}

bool IsPackage(const FileKind* kind) {
  return kind != nullptr && kind->runner == Runner::Msiexec;
}

RemovedBy RemovalOf(const std::string& file) {
  const FileKind* kind = KindOf(file);
  return kind == nullptr ? RemovedBy::Command : kind->removedBy;
}

bool ExitCodeCounts(const FileKind& kind, const std::string& extension) {
  if (kind.badExitCode == BadExitCode::NeverCounts) return false;
  return kind.letterCase == LetterCase::Any || extension == kind.extension;
}

}  // namespace assistant
