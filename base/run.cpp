#include "base/run.h"

#include "base/paths.h"

namespace assistant {
namespace {

ProgramFile OwnFile(platform::Machine& machine) {
  const std::string path = machine.programPath();
  return {path, FolderPart(path), WithoutExtension(LastElement(path))};
}

}  // namespace

Run::Run(platform::Platform& platform)
    : machine(platform),
      codePage_(platform.machine()),
      program(OwnFile(platform.machine())),
      fso_(platform),
      window_(platform),
      log_(platform, Title, program.folder) {}

void BehaveAs(Run& run, const Manner& manner) {
  run.state.silent = manner.silent;
  run.state.verbose = manner.verbose;
  run.services.log.beSilent(manner.silent);
  run.services.log.beVerbose(manner.verbose);
}

}  // namespace assistant
