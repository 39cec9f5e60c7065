// Logs whose places cannot be had: no folder ends a run, and no archive loses or follows what it must not.

#include <filesystem>

#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

using LogPlaces = Installing;

constexpr const char* Folder = "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite";
constexpr const char* DefaultLog = "C:\\QX\\QX Installation Assistant.html";

/// Command lines of msiexec.
Names MsiexecCommands(Rig& rig) {
  Names commands;
  for (const std::string& command : rig.ran()) {
    if (command.rfind("msiexec", 0) == 0) commands.push_back(command);
  }
  return commands;
}

/// Puts a link to the folder C:\Elsewhere in the place of a folder; its name is on the drive only once.
void PlantLink(Rig& rig, const std::string& path) {
  rig.machine().files().makeFolder("C:\\Elsewhere");
  rig.machine().files().makeFolder(path);
  const std::filesystem::path drive = rig.machine().ownFolder('C');
  const std::string name = path.substr(path.rfind('\\') + 1);
  std::vector<std::filesystem::path> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(drive)) {
    if (entry.is_directory() && entry.path().filename() == name) found.push_back(entry.path());
  }
  ASSERT_EQ(found.size(), 1U);
  std::filesystem::remove(found.front());
  std::filesystem::create_directory_symlink(drive / "Elsewhere", found.front());
}

struct Place {
  const char* what;
  const char* blocked;      ///< file in the place of the package log folder
  const char* blockedTemp;  ///< the same in the Windows folder's Temp; "" for none
  const char* option;       ///< of msiexec
};

constexpr Place Places[] = {
    {"the folder can be made", "", "",
     "/l*v \"c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite\\MSI Log Files\\"},
    {"only one below Temp can", "\\MSI Log Files", "", "/l*v \"C:\\WINDOWS\\Temp\\MSI Log Files\\"},
    {"none can", "\\MSI Log Files", "C:\\WINDOWS\\Temp\\MSI Log Files", ""},
};

TEST_F(LogPlaces, PackageLogFolderThatCannotBeMade_IsAWarningAndAnotherPlace) {
  for (const Place& row : Places) {
    SCOPED_TRACE(row.what);
    fresh();
    if (*row.blocked != '\0') rig.file(std::string(Folder) + row.blocked, "a file in its place");
    if (*row.blockedTemp != '\0') rig.file(row.blockedTemp, "a file in its place");
    EXPECT_EQ(media.package("Core", "1.0").install(), 0);
    ASSERT_EQ(MsiexecCommands(rig).size(), 1U);
    const std::string command = MsiexecCommands(rig).front();
    EXPECT_EQ(command.find("/l*v") == std::string::npos, *row.option == '\0') << command;
    EXPECT_NE(command.find(row.option), std::string::npos) << command;
    EXPECT_EQ(TimesLogged(rig, "for Windows Installer's logs could not be made"), *row.blocked != '\0');
  }
}

TEST_F(LogPlaces, PackageLogFolderOfAnUninstallThatCannotBeMade_DoesNotEndIt) {
  for (const bool temp : {true, false}) {
    fresh();
    rig.tolerateUnused();
    EXPECT_EQ(media.package("Core", "1.0").install(), 0);
    rig.file(std::string(Folder) + "\\Uninstall MSI Log Files", "a file in its place");
    if (!temp) rig.file("C:\\WINDOWS\\Temp\\Uninstall MSI Log Files", "a file in its place");
    EXPECT_EQ(Uninstall(rig, "/s /v /x Office Suite"), 0);
    EXPECT_TRUE(InstalledPackages(rig).empty());
    EXPECT_EQ(
        MsiexecCommands(rig).back().find("/l*v \"C:\\WINDOWS\\Temp\\Uninstall MSI Log Files\\") != std::string::npos,
        temp);
    EXPECT_EQ(MsiexecCommands(rig).back().find("/l*v") != std::string::npos, temp);
  }
}

TEST_F(LogPlaces, ProgramOnADisc_InstallsWithoutAnyLogFolder) {
  rig.file("D:\\QX Installation Assistant.exe", "the program");
  rig.machine().machine().setProgram("D:\\QX Installation Assistant.exe", "");
  media.product["LogFilePath"] = "Q:\\Logs";
  rig.tolerateUnused();
  EXPECT_EQ(media.package("Core", "1.0").install(), 0);
  EXPECT_EQ(InstalledPackages(rig), Names{"Core"});
  EXPECT_NE(MsiexecCommands(rig).front().find("/l*v \"C:\\WINDOWS\\Temp\\MSI Log Files\\"), std::string::npos);
}

TEST_F(LogPlaces, LinkInTempsPlace_IsNotFollowed) {
  rig.file(std::string(Folder) + "\\MSI Log Files", "a file in its place");
  PlantLink(rig, "C:\\WINDOWS\\Temp\\MSI Log Files");
  EXPECT_EQ(media.package("Core", "1.0").install(), 0);
  EXPECT_EQ(MsiexecCommands(rig).front().find("/l*v"), std::string::npos);
}

TEST_F(LogPlaces, LogAboveTheArchivesLimit_IsArchivedAndKept) {
  const std::string log = std::string(Folder) + "\\QX Installation Assistant.html";
  rig.machine().files().put(log, std::string(10000001, 'x'));
  EXPECT_EQ(media.program("Tools").install(), 0);
  std::vector<platform::FolderEntry> archived;
  rig.machine().files().list(std::string(Folder) + "\\QXIA Archive Logs", archived);
  ASSERT_FALSE(archived.empty());
  EXPECT_EQ(archived.front().size, 10000001U);
}

TEST_F(LogPlaces, ArchiveThatIsALink_IsNotFollowed) {
  const std::string log = std::string(Folder) + "\\QX Installation Assistant.html";
  rig.file(log, "earlier\n");
  rig.machine().files().put("C:\\Elsewhere\\a.html", std::string(10000001, 'x'));
  PlantLink(rig, std::string(Folder) + "\\QXIA Archive Logs");
  EXPECT_EQ(media.program("Tools").install(), 0);
  std::vector<platform::FolderEntry> entries;
  EXPECT_EQ(rig.machine().files().list("C:\\Elsewhere", entries), platform::Status::Ok);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries.front().name, "a.html");
  EXPECT_EQ(rig.text(log).rfind("earlier\r\n", 0), 0U) << "nothing of the earlier run may be lost";
  EXPECT_TRUE(Logged(rig, "is a link to another folder, so no log is archived there"));
}

TEST_F(LogPlaces, ArchiveThatFails_IsToldInFrontOfTheClosingRows) {
  for (const char* system : {"Windows 98", "Windows XP"}) {
    for (const char* operation : {"files.copyFile", "files.openForAppending", "files.list"}) {
      fresh();
      rig.machine().setSystem(system);
      media.program("Tools").write();
      rig.runFailing(operation, "QXIA Archive Logs", platform::Status::DiskFull, Media::arguments("/s"));
      const std::string log = rig.log("Office Suite");
      const std::size_t closing = log.find("QX Installer Run complete");
      ASSERT_NE(closing, std::string::npos);
      EXPECT_NE(log.find("ERROR"), std::string::npos) << operation << log;
      EXPECT_EQ(log.find("ERROR", closing), std::string::npos) << log.substr(closing);
      EXPECT_TRUE(rig.effects("event log").empty()) << system;
    }
  }
}

TEST_F(LogPlaces, ArchivedLog_IsWholeAndTheSameAsTheLog) {
  EXPECT_EQ(media.program("Tools", RequestsReboot("commit")).install(), 0);
  std::vector<platform::FolderEntry> archived;
  rig.machine().files().list(std::string(Folder) + "\\QXIA Archive Logs", archived);
  ASSERT_EQ(archived.size(), 1U);
  const std::string copy = rig.text(std::string(Folder) + "\\QXIA Archive Logs\\" + archived.front().name);
  EXPECT_EQ(copy, rig.log("Office Suite"));
  EXPECT_LT(copy.find("QX Installer Run complete"), copy.find("Re-booting now"));
}

TEST_F(LogPlaces, ResumedRunInTheDefaultPlace_GoesOnInItsLog) {
  media.product["LogFilePath"] = "Q:\\Logs";
  rig.file(DefaultLog, "of an earlier run\n");
  media.program("One", RequestsReboot("immediate")).program("Two");
  EXPECT_EQ(media.install(), 0);
  const std::string firstHalf = rig.text(DefaultLog);
  EXPECT_EQ(firstHalf.find("of an earlier run"), std::string::npos);
  rig.restart();
  EXPECT_EQ(rig.run(rig.logonArguments()), 0);
  EXPECT_EQ(rig.text(DefaultLog).rfind(firstHalf, 0), 0U);
  EXPECT_GT(rig.text(DefaultLog).size(), firstHalf.size());
}

}  // namespace
