// Which bytes of a text are characters of their own. In the code pages of Japanese, Chinese and Korean systems a
// character may be two bytes, of which the second can look like a backslash, a bracket or a bar.
#pragma once

#include <bitset>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace assistant {

/// Makes the machine's code page the one that text is read in, for as long as it lives. The rules for paths and names
/// are asked everywhere, and the answer is the same for a whole run: this is the one fact that is not handed to them.
class CodePageInUse {
 public:
  explicit CodePageInUse(platform::Machine& machine);
  ~CodePageInUse();
  CodePageInUse(const CodePageInUse&) = delete;
  CodePageInUse& operator=(const CodePageInUse&) = delete;

 private:
  std::bitset<256> leadBytes_;
  const std::bitset<256>* before_;
};

/// True at each byte that is the second of its character. Empty where all bytes are characters.
std::vector<bool> TrailBytes(std::string_view text);

/// The text with a neutral letter in place of every trail byte: what is found in it at some place stands at the same
/// place of the text itself. Without a code page in use, every byte is a character.
std::string WithoutTrailBytes(std::string_view text);

}  // namespace assistant
