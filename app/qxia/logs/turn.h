// One component's turn in a log: its rows, and the verdict that they tell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/qxia/logs/rows.h"
#include "app/qxia/result.h"

namespace qxia::logs {

enum class Direction { Install, Uninstall };

/// A line of Windows Installer's own log of a package.
struct PackageLog {
  std::string path;  ///< "" where none was found beside the log
  int line = 0;      ///< 0 when the log holds no such line
  std::string text;
};

struct LoggedComponent : ComponentResult {
  int row = 0;  ///< of the row that decided; 0 when it never had its turn
  PackageLog packageLog;
};

/// Gathers the rows from "Next component is X" on, until the component is done.
class Turn {
 public:
  Turn(Direction direction, const Row& first) : direction_(direction), first_(first.number) {}

  void take(const Row& row);
  /// True from the row on that only follows when a component of an installation is done.
  bool isClosed() const { return closed_; }
  /// What the rows tell. `runEnded`: the run itself went on to its end behind them.
  void judge(LoggedComponent& component, bool runEnded) const;

 private:
  struct Told {
    std::string text;
    int row = 0;
  };

  void takeInstall(const Row& row);
  void takeUninstall(const Row& row);
  void takeExecuted(const Row& row);
  void decide(Outcome outcome, const Row& row, std::string reason = "");
  bool decidesByCode() const;
  std::string failureReason() const;
  void judgeInstall(LoggedComponent& component, bool runEnded) const;
  void judgeUninstall(LoggedComponent& component, bool runEnded) const;
  std::string errorTexts() const;

  Direction direction_;
  int first_;
  int last_ = 0;
  bool closed_ = false;
  bool decided_ = false;
  Outcome outcome_ = Outcome::NotReached;
  Told verdict_;
  Told warning_;           ///< the last one
  std::string condition_;  ///< the last one that was looked at
  std::vector<Told> errors_;
  std::string extension_;  ///< of the file, as the log spells it
  std::string command_;
  std::string processReturn_;
  std::string installedBefore_;
  std::optional<int> exitCode_;
  bool codeIsFailure_ = false;
  bool wasRun_ = false;
  std::string copiedTo_;
};

}  // namespace qxia::logs
