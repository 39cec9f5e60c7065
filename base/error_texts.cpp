#include "base/error_texts.h"

#include <algorithm>
#include <iterator>

namespace assistant::modErrorBase {
namespace {

struct ErrorText {
  int number;
  const char* text;
};

// In blocks of twenty by topic. Misspellings, the blank text end of 6144 and the missing "%" in it are what logs have
// always said; support staff search for them.
constexpr ErrorText ErrorTexts[] = {
    // log file
    {6000, "Error writing to log file %"},
    // file-system helper
    {6020, "Drive % does not exist"},
    {6021, "Cannot create folder %"},
    {6022, "Folder % does not exist"},
    {6023, "Returning the OS information from the system caused GetVersionExA to raise an error"},
    {6024, "Could not find a file or folder named : %"},
    // installation logic
    {6080, "ini string % not found in section % of %"},
    {6081, "File % could not be found"},
    {6082, "Registry key not found : %"},
    {6083, "ini section % not found in %"},
    {6084, "Folder % does not exist"},
    {6085, "Installation tasks could not be sorted"},
    {6086, "Drive % can not be found"},
    {6087, "Could not write to registry key: %, value:%"},
    {6088, "MSI installation of % failed"},
    {6089, "Unable to determine machine type"},
    {6090, "No installation actions found"},
    {6091, "Unrecognised file type %"},
    {6092, "Uninstallation of % failed"},
    {6093, "Not enough disk space on % to complete installation"},
    {6094, "No uninstallation command found at %"},
    {6095, "No uninstallation actions found, check the registry key %"},
    {6096, "Unable to determine the operating system of the local computer"},
    {6098, "% cannot be installed on this server as it is not compatible with an existing installation"},
    // ini access
    {6120, "ini section % not found in %"},
    {6121, "ini string % not found in section % of %"},
    {6122, "ini file % cound not be opened"},
    {6123, "% is not a valid ini section name"},
    {6124, "% is not a valid ini key name"},
    {6125, "ini file % cound not be saved"},
    {6126, "An error occured whilst returning the Windows directory"},
    // Windows Installer queries
    {6140, "File % does not exist"},
    {6141, "Could not open MSI database : %"},
    {6142, "Could not open MSI database view for %"},
    {6143, "Could not execute view for %"},
    {6144, "Could not return Installed Product name for"},
    {6145, "Error closing view for %"},
    {6146, "Error closing database %"},
    {6147, "Error returning product % for %"},
    // registry access
    {6160, "Could not return value for the following key: %"},
    {6161, "Could not open registry key %"},
    {6162, "API call % (%) failed, returning error number %"},
    {6163, "The last DLL call errored, returning error number %"},
    {6164, "Could not enable editing priviledges for the registry key"},
    {6165, "Error creating registry key %"},
    {6166, "Error deleting registry key %"},
    // copy operations
    {8024, "Failed to copy component to %"},
};

struct SystemText {
  platform::Status status;
  const char* text;
};

constexpr SystemText SystemTexts[] = {
    {platform::Status::FileNotFound, "File not found"},
    {platform::Status::PathNotFound, "Path not found"},
    {platform::Status::AccessDenied, "Permission denied"},
    {platform::Status::NotReady, "Disk not ready"},
    {platform::Status::SharingViolation, "The file is in use by another program"},
    {platform::Status::DiskFull, "Disk full"},
    {platform::Status::FolderNotEmpty, "The folder is not empty"},
    {platform::Status::PathTooLong, "The path is too long"},
    {platform::Status::FolderNameInvalid, "The folder name is invalid"},
};

}  // namespace

std::string GetErrorText(int number, const std::vector<std::string>& values) {
  const auto* entry = std::find_if(std::begin(ErrorTexts), std::end(ErrorTexts),
                                   [number](const ErrorText& candidate) { return candidate.number == number; });
  if (entry == std::end(ErrorTexts)) return std::string();
  std::string text = entry->text;
  for (const std::string& value : values) text = ReplaceFirst(text, value);
  return text;
}

std::string ReplaceFirst(const std::string& text, const std::string& value) {
  const std::size_t at = text.find('%');
  return at == std::string::npos ? text : text.substr(0, at) + value + text.substr(at + 1);
}

Error MakeError(int number, const std::vector<std::string>& values, const std::string& source) {
  return Error(number, GetErrorText(number, values), source);
}

std::string SystemErrorText(platform::Status status) {
  for (const SystemText& entry : SystemTexts) {
    if (entry.status == status) return entry.text;
  }
  return "System error " + std::to_string(static_cast<std::uint32_t>(status));
}

}  // namespace assistant::modErrorBase
