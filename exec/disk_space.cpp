#include "exec/disk_space.h"

#include "base/not_built.h"
#include "base/records.h"

bool CheckDiskSpace(Run& run) {
  run.window.StatusLine("Checking Disk space available");
  if (GivenComponentValue(run, "Cost").empty()) return true;
  LogNothingDone(run, "CheckDiskSpace", "Disk space check of " + run.component.name);
  return true;
}
