// What a log tells of the runs that wrote it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/qxia/logs/rows.h"
#include "app/qxia/logs/turn.h"
#include "app/qxia/result.h"

namespace qxia::logs {

/// How a run stands by its log.
enum class RunEnd { Complete, Waiting, BrokenOff };

/// One run with its restarts. A log holds several where an older one could not be archived.
struct LoggedRun {
  ProductResult product;
  Direction direction = Direction::Install;
  std::vector<LoggedComponent> components;
  RunEnd end = RunEnd::BrokenOff;
  int restarts = 0;
  std::string firstTime;  ///< "2006-03-05T14:03:27.481", of the first row
  std::string lastTime;   ///< and of the last
  int firstRow = 0;
};

/// A row as a page shows it.
struct ShownRow {
  int number;
  std::string time;
  RowKind kind;
  std::string component;  ///< whose rows it stands among; "" for the run's own
  std::string text;
};

struct ReadLog {
  std::vector<LoggedRun> runs;  ///< in order; none when nothing in it is a row
  std::vector<ShownRow> rows;   ///< only when asked for
  int brokenLine = 0;           ///< first line that is no row, as where a log was cut; 0 for none
};

enum class Keep { Nothing, Rows };

ReadLog ReadLogText(std::string_view log, Keep keep = Keep::Nothing);

}  // namespace qxia::logs
