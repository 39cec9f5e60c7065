// The one exception type of the program's own failures.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace assistant {

/// Number of errors that name none of their own.
inline constexpr int GeneralError = 2000;

/// A failure with the three things that the log tells of it. Numbers are those of the error-text table (error_texts.h).
class Error : public std::exception {
 public:
  Error(int number, std::string text, std::string source)
      : number_(number), text_(std::move(text)), source_(std::move(source)) {}

  int number() const { return number_; }
  const std::string& text() const { return text_; }
  const std::string& source() const { return source_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  int number_;
  std::string text_;
  std::string source_;
};

}  // namespace assistant
