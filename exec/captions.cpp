#include "exec/captions.h"

namespace assistant::modLanguage {
namespace {

struct Entry {
  int number;
  const char* text;
};

// Callers append a name to the texts that end in a blank; "&" marks the access key.
constexpr Entry Entries[] = {
    // buttons
    {100, "&Cancel"},
    {101, "Co&ntinue"},
    {102, "&Install Now"},
    {103, "&Next"},
    {104, "&Finish"},
    {105, "&Back"},
    {106, "&Save"},
    {107, "&OK"},
    {108, "&Close"},
    // options and fields
    {201, "Standard"},
    {202, "Custom"},
    {203, "Advanced"},
    {204, "Add"},
    {205, "Add Drivers"},
    {206, "User Name:"},
    {207, "Domain:"},
    {208, "DNS Domain:"},
    {209, "Server:"},
    {210, "Reserve:"},
    {211, "Gb for backup"},
    // states and messages
    {1005, "Welcome"},
    {1006, "QX Installation Assistant has finished"},
    {1007, "Tasks completed"},
    {1008, "All completed successfully"},
    {1009, "Ready to begin Install"},
    {1010, "Initialising"},
    {1011, "Ready to begin"},
    {1012, "Checking Configuration"},
    {1013, "Checking Pre-install actions"},
    {1014, "The following errors occurred during the installation: "},
    {1015, "End"},
    {1016, "Checking Drive Space"},
    {1017, "Insufficient space to install this component"},
    {1018, "Installing "},
    {1019, "The system will now re-boot"},
    {1020, "Installation failed to complete"},
    {1021, "Storing data in Registry"},
    {1022, "Uninstalling "},
    {1023, "There appears to be a problem with the selected application ini file"},
    {1024, "The application will now close"},
    {1025, "Ini file not valid"},
    {1026, "QX Installation Assistant"},
    {1027, "Welcome to the QX Installation Assistant Installation Harness."},
    {1028, "Click 'Continue' to start Initialising the system."},
    {1029, "Executing "},
    {1030, "One or more components failed to install successfully."},
    {1031, "The installation was aborted because the following errors occurred during the installation: "},
    {1032, "One or more components failed to uninstall successfully."},
    {1033, "The uninstallation was aborted because the following errors occurred during the uninstallation: "},
    {9000, "Error:"},
};

}  // namespace

const Dictionary& CreateEDictionary() {
  static const Dictionary dictionary = [] {
    Dictionary made;
    for (const Entry& entry : Entries) made.emplace(entry.number, entry.text);
    return made;
  }();
  return dictionary;
}

std::string Text(int number) {
  const Dictionary& dictionary = CreateEDictionary();
  const auto found = dictionary.find(number);
  return found == dictionary.end() ? std::string() : found->second;
}

}  // namespace assistant::modLanguage
