#include "core/program.h"

#include "base/error.h"
#include "base/run.h"
#include "core/display.h"
#include "core/start.h"

int RunProgram(platform::Platform& machine) {
  Run run(machine);
  try {
    Main(run);
    ServeWindow(run);
  } catch (const ProgramEnd& end) {
    machine.mainWindow().destroy();
    return end.exitCode;
  }
}
