// Text helpers of the simulated workstation. Letter case is that of ASCII, as the machine's names use it.
#pragma once

#include <string>
#include <vector>

namespace simulated {

std::string Lower(std::string text);
/// Below, equal or above zero; letter case does not count.
int CompareText(const std::string& a, const std::string& b);
bool SameText(const std::string& a, const std::string& b);
bool StartsWithText(const std::string& text, const std::string& start);
bool EndsWithText(const std::string& text, const std::string& end);
bool ContainsText(const std::string& text, const std::string& part);
/// Without blanks, tabs and line ends at both ends.
std::string Trim(const std::string& text);
/// The parts between the separators, empty ones included.
std::vector<std::string> Split(const std::string& text, char separator);

/// Raises std::runtime_error with this text: a set-up that cannot be carried out.
[[noreturn]] void Refuse(const std::string& text);

}  // namespace simulated
