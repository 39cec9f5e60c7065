// The one thing that stops a run before its end.
#pragma once

#include <string>

namespace assistant {

/// Raised by the step that cannot go on, caught by the driver alone (core/program). Not an std::exception on purpose:
/// no error handler of a procedure catches it.
struct RunStops {
  enum class How {
    AtOnce,      ///< nothing was begun: the program ends with `exitCode`, and nothing is closed down
    Refused,     ///< the run must not go on: it closes down
    CannotGoOn,  ///< the same, but an interactive run keeps its window until the result has been read
    Declined,    ///< a person answered No: it closes down
    Cancelled,   ///< a person ended the run, which is told: it closes down
    ForRestart,  ///< the machine restarts, and the run goes on then
  };

  How how;
  std::string reason = {};      ///< of the product's failure; "" when it is none
  std::string windowText = {};  ///< what an interactive run's window tells of it; "" for nothing
  int exitCode = 0;             ///< of core/exit_codes.h
};

}  // namespace assistant
