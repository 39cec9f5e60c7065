// Entries of the product ini's lists of components and of pre-install actions.
#pragma once

#include <string>

namespace assistant {

/// What an entry names (a component ini, an action), and the version behind its mark "RFI Version=" if it bears one. A
/// semicolon stands between the two.
struct ActionEntry {
  std::string name;
  std::string version;
};

ActionEntry ParseActionEntry(const std::string& entry);

}  // namespace assistant
