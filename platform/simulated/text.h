// Text helpers of the simulated workstation. Letter case is that of ASCII, as the machine's names use it. In names of a
// Japanese machine the second byte of a character has none.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace simulated {

std::string Lower(std::string text, bool japanese = false);
/// A letter of a drive as drives are named.
char UpperLetter(char letter);
/// Below, equal or above zero; letter case does not count.
int CompareText(std::string_view a, std::string_view b, bool japanese = false);
bool SameText(std::string_view a, std::string_view b, bool japanese = false);
bool StartsWithText(std::string_view text, std::string_view start);
bool EndsWithText(std::string_view text, std::string_view end);
bool ContainsText(const std::string& text, const std::string& part);
/// Without blanks, tabs and line ends at both ends.
std::string Trim(const std::string& text);
/// What the system sees of a text that is handed to it: what stands before the first zero byte.
std::string_view UpToZero(std::string_view text);
/// The parts between the separators, empty ones included.
std::vector<std::string> Split(const std::string& text, char separator);
/// The same in a text of the machine's code page, where the second byte of a character is no separator.
std::vector<std::string> Split(const std::string& text, char separator, bool japanese);
/// The same, one part after another: the part that begins at `at`, which moves to the next one, or to npos.
std::string_view NextPart(std::string_view text, std::size_t& at, char separator, bool japanese);

/// True for a byte that begins a character of two in the Japanese code page (932).
bool IsJapaneseLeadByte(unsigned char byte);
/// The text with a letter in place of the second bytes of such characters; as it is where the machine is not Japanese.
std::string WithoutTrailBytes(std::string text, bool japanese);

/// Raises std::runtime_error with this text: a set-up that cannot be carried out.
[[noreturn]] void Refuse(const std::string& text);

}  // namespace simulated
