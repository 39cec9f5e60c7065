// Text in the machine's ANSI code page. Letters are folded for A to Z only, so that results never depend on a locale.
// The second byte of a character of two is no letter, and nothing that is looked for begins at it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace assistant {

inline constexpr const char* LineBreak = "\r\n";

/// Cuts blanks (spaces, nothing else) off both ends.
std::string Trim(std::string_view text);
std::string TrimLeft(std::string_view text);
std::string TrimRight(std::string_view text);

std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool StartsWithIgnoringCase(std::string_view text, std::string_view start);
bool EndsWithIgnoringCase(std::string_view text, std::string_view end);
bool Contains(std::string_view text, std::string_view part);
bool ContainsIgnoringCase(std::string_view text, std::string_view part);

/// Position of the first occurrence at or behind `from`, or npos.
std::size_t FindIgnoringCase(std::string_view text, std::string_view part, std::size_t from = 0);

/// The fields between separators; one empty field for an empty text. No character of two bytes is cut.
std::vector<std::string> Split(std::string_view text, char separator);

std::string Replace(std::string text, std::string_view part, std::string_view by);

/// The text without any double quote.
std::string WithoutQuotes(std::string_view text);
/// The text without the double quotes that enclose it whole, and without the blanks at its end.
std::string Unquoted(std::string_view text);
std::string Quoted(std::string_view text);

/// A stored truth value: "True" and "False" as the registry holds them.
const char* TrueOrFalse(bool value);
bool IsTrue(std::string_view text);

}  // namespace assistant
