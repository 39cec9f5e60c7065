// The shape of the Linux command: verbs, each with operands and options, read from one table that also prints the help.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace qxia {

/// Exit code of a command that could not be understood or set up.
inline constexpr int Unusable = 64;

/// What cannot be used, as one line that says what to write instead; the command ends with `Unusable`.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Option {
  const char* name;   ///< with its dashes: "--on"
  const char* value;  ///< what stands behind it: "SYSTEM"; null for a switch
  const char* help;   ///< one or more lines
};

/// The words behind a verb, sorted into options and operands. Behind `--` all words are operands.
class Arguments {
 public:
  /// Raises UsageError for an unknown option or one without its value.
  Arguments(const std::vector<std::string>& words, std::span<const Option> options);

  bool has(const std::string& option) const { return !all(option).empty(); }
  /// The last value of an option; `otherwise` where it was not given.
  std::string text(const std::string& option, const std::string& otherwise = "") const;
  /// Every value of an option, in order; "" for each time a switch was given.
  std::vector<std::string> all(const std::string& option) const;
  const std::vector<std::string>& operands() const { return operands_; }

 private:
  struct Given {
    std::string option;
    std::string value;
  };
  std::vector<Given> given_;
  std::vector<std::string> operands_;
};

struct Verb {
  const char* name;
  const char* operands;  ///< as the usage line shows them: "MEDIA..."
  const char* summary;   ///< one line
  std::span<const Option> options;
  const char* exitCodes;  ///< what they mean, as lines
  /// Does the work and returns the exit code. Raises UsageError, or std::runtime_error for what it could not read.
  int (*run)(const Arguments& arguments);
};

/// Carries out a command line: the words behind the program's name.
int RunCommand(std::span<const Verb> verbs, const std::vector<std::string>& words);

}  // namespace qxia
