#include "env/multi_disk.h"

#include <algorithm>

#include "base/not_built.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

namespace modCDFunctions {
namespace {

bool StartedFromDisc(Run& run) {
  const std::string letter = UpperCase(run.programFolder.substr(0, 1));
  const auto drives = run.machine.files().drives();
  return std::any_of(drives.begin(), drives.end(), [&](const platform::Drive& drive) {
    return letter == std::string(1, drive.letter) && drive.type == platform::DriveType::CdRom;
  });
}

}  // namespace

void isMultiCD(Run& run) {
  if (StartedFromDisc(run))
    LogNothingDone(run, "isMultiCD", "Local copy of the program for a product on several discs");
}

std::string RecordedNextVolume(Run& run) {
  const std::string volume = modRegistry::ReadOrEmpty(run, ProductKey(run), Value::NextVolumeName);
  return IsNotGiven(volume) || volume == "Failed" ? std::string() : volume;
}

void PromptForDisk(Run& run) {
  LogNothingDone(run, "PromptForDisk", "Change to the disc " + run.nextVolumeName);
}

}  // namespace modCDFunctions
