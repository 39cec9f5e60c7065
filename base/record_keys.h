// Where the records that a run keeps in the registry lie, all under HKEY_LOCAL_MACHINE: run values under the
// installation key, one key per product under the products key, one key per component under the product's.
#pragma once

#include <string>

namespace assistant {

inline constexpr const char* InstallationKey = "Software\\Tarvel\\Installation";
inline constexpr const char* ProductsKey = "Software\\Tarvel\\Installation\\Products";

/// The system's list of programs that can be removed; an entry is a key below it.
inline constexpr const char* RemovableProgramsKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

/// The product's key; the products key itself for an empty name.
std::string ProductKey(const std::string& product);
std::string ComponentKey(const std::string& product, const std::string& component);

/// The three keys that a run keeps its values under.
enum class RecordKey { Installation, Products, Product };
std::string KeyOf(RecordKey key, const std::string& product);

/// Sequence numbers are a component's place in its product times this; a resumed run relies on it.
inline constexpr int SequenceStep = 100;

/// What a value holds when its required ini key was missing.
inline constexpr const char* MissingValue = "<ERROR>";
/// What a value holds that has nothing to say.
inline constexpr const char* NotApplicable = "N/A";

/// "N/A" in any case, empty, or the mark of a key that was missing: the three ways of not giving a value.
bool IsNotGiven(const std::string& text);
/// The text, or "" where it is one of these.
std::string Given(const std::string& text);

/// Raises an error that names the ini key when its text is too long to be read back from a record.
void RequireStorable(const std::string& text, const std::string& key, const std::string& section,
                     const std::string& iniFile);

}  // namespace assistant
