// Where a run's log lies, what becomes of the log before it, and runs whose log cannot be kept where it should be.

#include "base/log_setup.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

using LogOfARun = Installing;

constexpr const char* Program = "QX Installation Assistant";
constexpr const char* DefaultLog = "C:\\QX\\QX Installation Assistant.html";

class LogSetUp : public Procedures {
 protected:
  LogSetUp() {
    run.product.inis.application = "C:\\app.ini";
    run.services.log.start();
    rig.machine().clock().setTime("2006-11-15 14:03:27.481");
  }

  LogFolders setUp(LogStart start = LogStart::Fresh) {
    return SetUpLog(run.services, run.program, InstallLogPlace(run.applicationIni(), "Office"), start);
  }
  static std::string folder(const std::string& root) { return root + "\\" + Program + "\\Office"; }
};

TEST_F(LogSetUp, InstallRun_PutsItsFoldersUnderTheGivenPath) {
  const std::string defaultRoot = "c:\\program files\\Tarvel\\Installation";
  const std::pair<const char*, std::string> table[] = {
      {"LogFilePath=C:\\Logs", "C:\\Logs"},
      {"LogFilePath=C:\\Logs\\", "C:\\Logs"},
      {"LogFilePath=   C:\\Logs\\Deep\\Down   ", "C:\\Logs\\Deep\\Down"},
      {"LogFilePath=", defaultRoot},
      {"LogFilePath=   ", defaultRoot},
      {"OtherKey=1", defaultRoot},
  };
  for (const auto& [line, root] : table) {
    rig.file("C:\\app.ini", std::string("[Product]\n") + line + "\n");
    const LogFolders folders = setUp();
    EXPECT_EQ(run.services.log.logFilename(), folder(root) + "\\QX Installation Assistant.html") << line;
    EXPECT_EQ(folders.msiLogs, folder(root) + "\\MSI Log Files") << line;
    EXPECT_EQ(folders.archive, folder(root) + "\\QXIA Archive Logs") << line;
    EXPECT_TRUE(run.services.fso.folderExists(folder(root))) << line;
    EXPECT_EQ(logText(), "") << "a path that is not given is no error: " << line;
  }
}

TEST_F(LogSetUp, UninstallRun_HasFixedFoldersOfItsOwn) {
  rig.file("C:\\app.ini", "[Product]\nLogFilePath=C:\\Logs\n");
  const LogFolders folders = SetUpLog(run.services, run.program, UninstallLogPlace("Office"), LogStart::Fresh);
  const std::string place = folder("c:\\program files\\Tarvel\\Installation");
  EXPECT_EQ(run.services.log.logFilename(), place + "\\QX Installation Assistant Uninstall.html");
  EXPECT_EQ(folders.msiLogs, place + "\\Uninstall MSI Log Files");
  EXPECT_EQ(folders.archive, place + "\\Uninstall QXIA Archive Logs");
  EXPECT_TRUE(run.services.fso.folderExists(place));
}

TEST_F(LogSetUp, EarlierLog_IsArchivedByAFreshRunAndGoneOnWithByAResumedOne) {
  rig.file("C:\\app.ini", "[Product]\nLogFilePath=C:\\Logs\n");
  const std::string log = folder("C:\\Logs") + "\\QX Installation Assistant.html";
  const std::string archived = folder("C:\\Logs") + "\\QXIA Archive Logs\\QX Installation Assistant0611151403.html";
  for (const bool resumed : {true, false}) {
    SCOPED_TRACE(resumed ? "resumed" : "fresh");
    rig.file(log, "earlier\n");
    run.services.log.logFilename(DefaultLog);
    run.services.log.start();
    run.services.log.log("Main", 0, "now");
    setUp(resumed ? LogStart::Continued : LogStart::Fresh);
    EXPECT_EQ(rig.text(log).rfind("earlier\r\n", 0) == 0, resumed);
    EXPECT_NE(rig.text(log).find(">now<"), std::string::npos);
    EXPECT_EQ(rig.text(archived), resumed ? "" : "earlier\r\n");
  }
}

TEST_F(LogSetUp, FreshRunWithoutEarlierLog_LeavesTheArchiveAlone) {
  rig.file("C:\\app.ini", "[Product]\nLogFilePath=C:\\Logs\n");
  const std::string full = folder("C:\\Logs") + "\\QXIA Archive Logs\\a.html";
  rig.machine().files().put(full, std::string(10000001, 'x'));
  setUp();
  EXPECT_TRUE(rig.exists(full));
}

TEST_F(LogSetUp, EarlierLogThatCannotBeArchived_IsGoneOnWith) {
  rig.file("C:\\app.ini", "[Product]\nLogFilePath=C:\\Logs\n");
  const std::string log = folder("C:\\Logs") + "\\QX Installation Assistant.html";
  rig.file(log, "earlier\n");
  rig.file(folder("C:\\Logs") + "\\QXIA Archive Logs", "a file in its place");
  setUp();
  EXPECT_EQ(rig.text(log).rfind("earlier\r\n", 0), 0U) << "nothing of the earlier run may be lost";
}

TEST_F(LogSetUp, FolderThatCannotBeMade_IsOneWarningInTheDefaultLog) {
  rig.file("C:\\Taken", "a file in its place");
  for (const char* path : {"Q:\\Logs", "D:\\Logs", "C:\\Taken", "C:\\Logs?", "nonsense:|"}) {
    SCOPED_TRACE(path);
    rig.file("C:\\app.ini", std::string("[Product]\nLogFilePath=") + path + "\n");
    run.services.log.logFilename(DefaultLog);
    run.services.log.start();
    run.services.log.log("Main", 0, "held");
    setUp();
    const std::vector<LogRow> found = LogRows(rig.text(DefaultLog));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].description, "held");
    EXPECT_EQ(found[1].type, WarningMark);
    for (const char* part : {path, "C:\\app.ini", "LogFilePath", DefaultLog}) {
      EXPECT_NE(found[1].description.find(part), std::string::npos) << part << " in " << found[1];
    }
  }
}

TEST_F(LogOfARun, First_IsTheCommandLineAndEveryRowIsWhole) {
  media.program("Tools");
  rig.file(DefaultLog, "of an earlier run");
  ASSERT_EQ(media.install(), 0);
  const std::vector<LogRow> rows = LogRows(rig.log("Office Suite"));
  ASSERT_FALSE(rows.empty());
  EXPECT_EQ(rows[0].description, "Command line is /s /is=C:\\Media\\app.ini");
  EXPECT_FALSE(rig.exists(DefaultLog)) << "every run begins without a default log";
}

TEST_F(LogOfARun, EndsBeforeItsSetUp_GoesToTheDefaultPlace) {
  rig.file(DefaultLog, "of an earlier run\n");
  EXPECT_EQ(rig.run("/s /is=C:\\Nowhere\\app.ini"), 1);
  const std::vector<LogRow> rows = LogRows(rig.text(DefaultLog));
  ASSERT_GE(rows.size(), 3U);
  EXPECT_EQ(rows[0].description, "Command line is /s /is=C:\\Nowhere\\app.ini");
  EXPECT_EQ(rows[1].description, "Could not find ini file : C:\\Nowhere\\app.ini");
  EXPECT_EQ(rows[2].type, ErrorMark);
  EXPECT_EQ(rows[2].description.rfind("Failed to find application ini file.<BR>Source: ", 0), 0U) << rows[2];
}

TEST_F(LogOfARun, FolderThatCannotBeMade_DoesNotHoldTheInstallationBack) {
  media.product["LogFilePath"] = "Q:\\Logs";
  media.program("Tools");
  rig.machine().files().setAccessList("C:\\Media", simulated::OpenToAdministrators());
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(RanComponents(rig), Names{"Tools"});
  const std::string log = rig.text(DefaultLog);
  EXPECT_EQ(RowsOf(log, WarningMark).size(), 1U) << log;
  EXPECT_NE(log.find("QX Installer Run complete"), std::string::npos);
}

TEST_F(LogOfARun, MediumBecomesReadOnly_IsToldInTheEventLogAndTheRunGoesOn) {
  media.program("Tools");
  media.write();
  EXPECT_EQ(rig.runFailing("files.openForAppending", ".html", platform::Status::AccessDenied, Media::arguments("/s")),
            0);
  EXPECT_EQ(RanComponents(rig), Names{"Tools"});
  EXPECT_EQ(rig.effects("box"), Names());
  const Names records = rig.effects("event log");
  ASSERT_GE(records.size(), 40U) << "four for every entry";
  EXPECT_EQ(records.size() % 4, 0U);
  EXPECT_EQ(records[1],
            "event log QX Installation Assistant: Description passed in: Command line is /s /is=C:\\Media\\app.ini");
}

}  // namespace
