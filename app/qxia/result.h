// What became of a product and its components on one machine: told by a rehearsal before, and by a log afterwards.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace qxia {

/// How a component ended. The first six belong to an installation, the next three to an uninstall, `Failed` and
/// `NotReached` to both.
enum class Outcome { Installed, AlreadyInstalled, Copied, HeldBack, Failed, NotReached, Removed, Kept, AlreadyGone };

/// As it is shown and written: "already installed".
const char* NameOf(Outcome outcome);

struct ComponentResult {
  std::string name;
  std::string kind;  ///< the extension of its file, in lower case; "copy" for a folder that is only copied
  int sequence = 0;
  Outcome outcome = Outcome::NotReached;
  std::string reason;           ///< the one fact that decided; "" where nothing needs to be said
  std::string command;          ///< "" when nothing was run
  std::optional<int> exitCode;  ///< nothing when nothing was run
};

struct ProductResult {
  std::string name;
  std::string version;
  bool succeeded = false;
  std::vector<std::string> reasons;
};

/// The members `product` and `components` of the JSON forms. Texts in the machine's code page (1252) become UTF-8.
nlohmann::json ToJson(const ProductResult& product);
nlohmann::json ToJson(const ComponentResult& component);

/// A text of code page 1252 as UTF-8; one that is UTF-8 already stays as it is.
std::string ToUtf8(const std::string& text);

}  // namespace qxia
