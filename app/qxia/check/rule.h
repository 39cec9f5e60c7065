// One rule by which media are checked.
#pragma once

namespace qxia::check {

enum class Severity { Error, Warning, Note };

/// "error", "warning", "note".
const char* NameOf(Severity severity);

struct Rule {
  int number;  ///< QXnnn; the hundreds are the topic
  Severity severity;
  const char* title;   ///< what is wrong, in general
  const char* why;     ///< what comes of it
  const char* remedy;  ///< what to do
  const char* wrong;   ///< an example, as lines
  const char* right;
};

}  // namespace qxia::check
