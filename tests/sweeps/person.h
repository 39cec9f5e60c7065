// Somebody who uses the simulated workstation: starts programs, changes discs, answers, and after a restart or a power
// cut lets the logon do what it does. Every start has its limits, so that a run without end is found.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/faults/platform.h"
#include "tests/support/rig.h"

namespace sweeps {

/// What goes wrong once in all that a person does: at this operation, counted over all runs.
struct Trouble {
  int operation = 0;  ///< none
  bool isCut = false;
  bool isRead = false;  ///< counted among those that only read
  platform::Status status = platform::Status::AccessDenied;
};

/// A program, and its arguments as they stand behind it.
struct Start {
  std::string program;
  std::string arguments;
};

/// What a person saw of a start, and of the runs that followed by themselves.
struct End {
  bool known = false;  ///< a program ended and nothing follows; else the power went, or a restart started nothing
  int exitCode = -1;
  bool toldSuccess = false;  ///< the exit code is 0, or the end message was the last word
};

class Person {
 public:
  explicit Person(Rig& rig);

  void expect(const Trouble& trouble) {
    trouble_ = trouble;
    hit_.clear();
  }
  /// The message by which an interactive run tells its success.
  void knowEndMessage(const std::string& message) { endMessage_ = message; }
  /// The disc that is put in when the program asks for one.
  void holdDisc(const std::string& label) { nextDisc_ = label; }

  /// Starts a program and waits until nothing more comes of it.
  End use(const Start& start);

  Rig& rig() { return rig_; }
  /// All operations that change something, in order.
  const std::vector<std::string>& history() const { return history_; }
  /// All that only read, in order.
  const std::vector<std::string>& readHistory() const { return readHistory_; }
  /// The operation that went wrong; "" before that.
  const std::string& hit() const { return hit_; }
  /// The program's path in the run that it happened in.
  const std::string& hitProgram() const { return hitProgram_; }
  /// What was told: error rows and warnings of all logs, boxes, records of the event log, lines of the start-up log.
  const std::set<std::string>& told() const { return told_; }
  /// What no run may do: it crashed, or did not end.
  const std::vector<std::string>& broken() const { return broken_; }

 private:
  End runOnce(const Start& start);
  std::optional<Start> follows(const End& end);
  std::optional<Start> startedCopy();
  std::optional<Start> logon();
  void beReady();
  void limit(faults::Faults& faults);
  void arrange(faults::Faults& faults);
  void takeNote(const faults::Faults& faults, bool cut);
  void carryOutSchedule();
  bool readTold();

  Rig& rig_;
  Trouble trouble_;
  std::string endMessage_;
  std::string nextDisc_;
  std::vector<std::string> history_;
  std::vector<std::string> readHistory_;
  std::string hit_;
  std::string hitProgram_;
  std::set<std::string> told_;
  std::vector<std::string> broken_;
  bool restarted_ = false;
  std::size_t ranBefore_ = 0;
  std::size_t scheduleSeen_ = 0;
  std::size_t effectsSeen_ = 0;
};

/// Whether nothing tells of a product any more: no record, no entry in the system's list, no removal to be finished.
bool IsGone(Rig& rig, const std::string& product);

/// Where the program puts its copy.
inline constexpr const char* LocalProgram =
    "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe";

}  // namespace sweeps
