// The keys that the program reads by name, as the ini reference tells them.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace qxia::check {

enum class IniKind { Application, Product, Component };

enum class KeyNeed {
  Vital,   ///< without it the run ends, or the component fails
  Logged,  ///< the log tells that it is missing
  Optional,
};

/// Sections that are not called the same in every file.
inline constexpr const char* ComponentSection = "";
inline constexpr const char* ActionSection = "*";

struct KnownKey {
  IniKind ini;
  const char* section;
  const char* key;
  KeyNeed need = KeyNeed::Optional;
  bool isTruth = false;
  bool isNumbered = false;  ///< may bear a number from 1
};

std::span<const KnownKey> KnownKeys();

/// A section whose keys or lines are the reader's own.
struct ListSection {
  IniKind ini;
  const char* section;
  bool holdsKeys;  ///< lines of key=value; else the lines count as they stand
};

std::span<const ListSection> ListSections();

/// The row of a key; null without one. Numbers of numbered keys are looked past.
const KnownKey* FindKnownKey(IniKind ini, const std::string& section, const std::string& key);

/// The number at the end of a numbered key: 3 of "Condition3"; 0 without one.
int NumberOf(const std::string& key, const std::string& name);

}  // namespace qxia::check
