// Products that span several discs.
#pragma once

#include <string>

#include "base/run.h"

/// The two ini files that a run starts from; "" for one that is not known.
struct IniPaths {
  std::string application;
  std::string product;
};

namespace modCDFunctions {

/// True when the running program lies on a disc in a CD-ROM drive.
bool StartedFromDisc(Run& run);

/// For a program that was started from a disc: when its product has more discs, starts a local copy of it with the same
/// ini files and ends, so that the drive is free (throws ProgramEnd: 0 when the copy was started, else 1). Ends with 1,
/// too, when an earlier local copy left its mark, which is told and removed. Returns for a product on one disc.
void isMultiCD(Run& run, const IniPaths& inis);

/// Starts the local copy; false when it could not be started, which is told.
bool LaunchLocalInstance(Run& run, const std::string& folder, const std::string& programName, const IniPaths& inis);

/// The value of [Product] `key` ("PreviousVolumeName", "NextVolumeName"): of the product ini, or of the application ini
/// where that names none; "" when neither does.
std::string VolumeName(Run& run, const char* key, const IniPaths& inis);

/// The disc that the product's record names in "NextVolumeName" or "PreviousVolumeName"; "" for none.
std::string RecordedVolume(Run& run, const char* value);

/// Asks for the disc that the run goes on with, waits until a drive has it, and goes over to that drive. Raises "User
/// cancelled disk change prompt".
void PromptForDisk(Run& run);

/// Goes on from the drive that a later disc of the product was found in before the machine restarted, if it was one.
void ReturnToDisc(Run& run);

}  // namespace modCDFunctions
