// What is on a machine, and what of it the program may leave behind when a product is gone.
#pragma once

#include <string>
#include <vector>

#include "tests/support/rig.h"

namespace sweeps {

/// Every key, value, folder and file, one line each, sorted: "value HKLM\Key\Name=data", "file C:\a.txt=content".
using Snapshot = std::vector<std::string>;

Snapshot Look(Rig& rig);

/// What is there now and was not before, with a "+", and what was before and is not there now, with a "-".
std::vector<std::string> Difference(const Snapshot& before, const Snapshot& now);

/// A kind of line of a difference, "*" for any text and "?" for a character, and why it may be there.
struct Allowed {
  const char* pattern;
  const char* reason;
};

/// What docs/uninstalling.md and docs/registry-reference.md say stays behind a product that is gone.
extern const std::vector<Allowed> Stays;
/// What differs between two installations that both came to their end.
extern const std::vector<Allowed> Differs;

/// What stays where the system's scheduler could not be asked.
extern const std::vector<Allowed> StaysWithoutScheduler;

/// The lines that no row allows.
std::vector<std::string> Without(const std::vector<std::string>& lines, const std::vector<Allowed>& allowed);

bool Fits(const std::string& text, const std::string& pattern);

}  // namespace sweeps
