// The texts of the program's own errors.
#pragma once

#include <string>
#include <vector>

#include "base/error.h"
#include "platform/status.h"

namespace assistant::modErrorBase {

/// The text of an error number with its "%" marks filled in order; "" for a number without a text. A "%" inside an
/// inserted value is itself filled by a later value, since each step searches the whole text again.
std::string GetErrorText(int number, const std::vector<std::string>& values = {});

/// `text` with its first "%" replaced by `value`.
std::string ReplaceFirst(const std::string& text, const std::string& value);

/// The failure of that number with its text filled.
Error MakeError(int number, const std::vector<std::string>& values, const std::string& source);

/// What a system status number means, in words.
std::string SystemErrorText(platform::Status status);

}  // namespace assistant::modErrorBase
