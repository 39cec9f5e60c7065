#include "base/run.h"

#include "base/paths.h"

Run::Run(platform::Platform& platform)
    : machine(platform),
      programFolder(FolderPart(platform.machine().programPath())),
      programName(WithoutExtension(LastElement(platform.machine().programPath()))),
      fso(platform),
      window(platform),
      log(platform, Title, programFolder) {}
