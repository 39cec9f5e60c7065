#include "base/procedure.h"

#include "base/error_texts.h"

namespace assistant {

void Procedure::detail(const std::string& text) const {
  if (log_.isVerbose()) log_.log(name(), 0, text);
}

void Procedure::error(int number, const std::vector<std::string>& values, Shown shown) const {
  log_.log(std::string(handler_), number, modErrorBase::GetErrorText(number, values), shown, EntryType::Error);
}

void Procedure::warn(int number, const std::vector<std::string>& values) const {
  log_.log(std::string(handler_), number, modErrorBase::GetErrorText(number, values), Shown::No, EntryType::Warning);
}

void Procedure::warnNumbered(const std::string& text, Shown shown) const {
  log_.log(std::string(handler_), GeneralError, text, shown, EntryType::Warning);
}

void Procedure::tell(const std::exception& failure, Shown shown) const {
  const auto* error = dynamic_cast<const Error*>(&failure);
  log_.log(std::string(handler_), error != nullptr ? error->number() : GeneralError, failure.what(), shown,
           EntryType::Error);
}

Error Procedure::failure(int number, const std::vector<std::string>& values) const {
  return modErrorBase::MakeError(number, values, std::string(handler_));
}

Error Procedure::failure(platform::Status status, const std::string& text) const {
  return Error(platform::Number(status), text, std::string(handler_));
}

}  // namespace assistant
