// Products that span several discs.
#pragma once

#include <optional>
#include <string>

#include "base/run.h"

namespace assistant::modCDFunctions {

/// True when the running program lies on a disc in a CD-ROM drive.
bool StartedFromDisc(platform::FileReader& files, const ProgramFile& program);

/// What a program that was started from a disc is to do.
enum class LocalCopy {
  NotNeeded,  ///< its product is on one disc
  Started,    ///< a copy goes on with the same ini files; this one ends, so that the drive is free
  Failed,     ///< there is none, which is told; or an earlier one left its mark, which is told and removed
};

/// When the product of these ini files has more discs, starts a local copy of the program with them.
LocalCopy IsMultiCD(const Run& run, const IniPaths& inis);

/// Starts the local copy; false when it could not be started, which is told.
bool LaunchLocalInstance(const Run& run, const IniPaths& inis);

/// The disc that [Product] names as the one before or behind this (Value::PreviousVolumeName, Value::NextVolumeName):
/// in the product ini, or in the application ini where that names none; "" when neither does.
std::string VolumeName(const Services& services, const RecordValue& value, const IniPaths& inis);

/// The disc that the product's record names there; "" for none.
std::string RecordedVolume(const ProductRecord& record, const RecordValue& value);

/// Asks for the disc and waits until a drive has it, which is recorded: the drive's letter, or nothing when that was
/// cancelled.
std::optional<char> PromptForDisk(const Run& run);

/// The drive that a later disc of the product was found in before the machine restarted; nothing when there was none.
std::optional<char> RecordedDrive(const ProductRecord& record);

/// The product's files on another drive: each ini moves there when there is such a file.
void UseDrive(clsFso& fso, Product& product, char letter);

}  // namespace assistant::modCDFunctions
