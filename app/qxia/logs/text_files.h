// Files from Windows machines as UTF-8 text.
#pragma once

#include <string>
#include <string_view>

namespace qxia::logs {

/// A whole file of the host. Raises std::runtime_error when it is not there, is none or cannot be read.
std::string ReadWholeFile(const std::string& path);

/// UTF-16 (by its mark or by its zeros) becomes UTF-8; a mark of UTF-8 goes; anything else stays as it is.
std::string DecodedText(std::string bytes);

/// UTF-16, low byte first, as UTF-8; an odd byte at the end and halves of pairs become U+FFFD.
std::string FromUtf16(std::string_view bytes);

}  // namespace qxia::logs
