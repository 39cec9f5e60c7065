// The HTML log: what an entry looks like, what happens when it cannot be written, and the archive of old logs.

#include <algorithm>

#include "base/app_log.h"
#include "base/error_texts.h"
#include "platform/faults/platform.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

constexpr const char* LogFile = "C:\\QX\\T.html";
constexpr const char* Archive = "C:\\Logs\\Archive";

/// A log of a program titled T, on the 15th of November 2006.
class LogTest : public Procedures {
 protected:
  LogTest() { rig.machine().clock().setTime("2006-11-15 14:03:27.081"); }

  std::string text() { return rig.text(LogFile); }
  Names archived() { return run.services.fso.listFiles(Archive); }
  /// Sets the archive up with files of these sizes: 1.html, 2.html and so on.
  void archiveOf(const std::vector<std::size_t>& sizes) {
    int number = 0;
    for (const std::size_t size : sizes) {
      rig.machine().files().put(std::string(Archive) + "\\" + std::to_string(++number) + ".html",
                                std::string(size, 'x'));
    }
  }

  clsAppLog log{rig.machine(), "T", "C:\\QX"};
};

TEST_F(LogTest, Entry_OfEachTypeAndNumber_HasItsMarkAndSource) {
  const struct {
    int number;
    const char* description;
    int type;
    const char* mark;
    const char* thirdCell;
  } table[] = {
      {0, "copied", EntryType::Action, ActionMark, "copied"},
      {0, "odd", EntryType::Warning, WarningMark, "odd"},
      {0, "bad", EntryType::Error, ErrorMark, "bad"},
      {0, "plain", 3, "", "plain"},
      {0, "plain", EntryType::None, "", "plain"},
      {5, "gone", EntryType::Action, ErrorMark, "gone<BR>Source: X Error No = 5"},
      {5, "gone", EntryType::Error, ErrorMark, "gone<BR>Source: X Error No = 5"},
      {5, "gone", EntryType::Warning, WarningMark, "gone<BR>Source: X Error No = 5"},
      {5, "gone", 3, "", "gone<BR>Source: X Error No = 5"},
      {-2147024891, "denied", EntryType::Action, ErrorMark, "denied<BR>Source: X Error No = -2147024891"},
      {6, "", EntryType::Action, ErrorMark, "<BR>Source: X Error No = 6"},
      {0, "one\r\ntwo\nthree", EntryType::Action, ActionMark, "one<br>two<br>three"},
      {0, "one\rtwo\r", EntryType::Action, ActionMark, "one<br>two<br>"},
      {0, "<b>markup</b> & more", EntryType::Action, ActionMark, "<b>markup</b> & more"},
  };
  for (const auto& row : table) {
    rig.machine().files().remove(LogFile);
    log.log("X", row.number, row.description, Shown::No, row.type);
    EXPECT_EQ(LogRows(text()), (std::vector<LogRow>{{"15/11/06 14:03:27.081", row.mark, row.thirdCell}}))
        << row.number << " " << row.description << " of type " << row.type;
    EXPECT_EQ(log.lastErrNumber(), row.number) << row.description;
    EXPECT_EQ(log.lastErrDescription(), row.description);
  }
}

TEST_F(LogTest, Entry_WithNothingToSay_IsNotMade) {
  log.lastErrNumber(77);
  log.log("X", 0, "", Shown::No, EntryType::Error);
  EXPECT_FALSE(rig.exists(LogFile));
  EXPECT_EQ(log.lastErrNumber(), 77);
}

TEST_F(LogTest, Entry_OfAnErrorHandlerWithoutSource_BearsTheSourceOfTheError) {
  const Error failure(6161, "no key", "modRegistry.RegRead");
  log.log("", failure);
  log.log("Initialise", failure);
  const std::vector<LogRow> rows = LogRows(text());
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].description, "no key<BR>Source: modRegistry.RegRead Error No = 6161");
  EXPECT_EQ(rows[1].description, "no key<BR>Source: Initialise Error No = 6161");
}

TEST_F(LogTest, Exit_ExactlySpelled_IsFollowedByALineOfOneSpace) {
  log.log("X", 0, "exit");
  log.log("X", 0, "Exit");
  const std::string whole = text();
  ASSERT_EQ(whole.find("\r\n \r\n"), whole.size() - 5) << whole;
  EXPECT_EQ(LogRows(whole.substr(0, whole.size() - 3)).size(), 2U);
}

TEST_F(LogTest, SwitchedOff_LosesEntriesButRemembersTheLast) {
  log.logToFile(false);
  log.log("X", 9, "Exit");
  log.logToFile(true);
  EXPECT_FALSE(rig.exists(LogFile));
  EXPECT_EQ(log.lastErrNumber(), 9);
  EXPECT_EQ(log.lastErrDescription(), "Exit");
}

TEST_F(LogTest, BlankFileName_MeansTheDefaultPlace) {
  log.logFilename("  ");
  log.log("X", 0, "here");
  EXPECT_EQ(log.logFilename(), LogFile);
  EXPECT_EQ(LogRows(text()).size(), 1U);
}

TEST_F(LogTest, Start_DeletesTheDefaultLogAndHoldsEntriesUntilTheirFileIsKnown) {
  rig.file(LogFile, "of an earlier run");
  rig.machine().files().setAttributes(LogFile, {.readOnly = true});
  log.start();
  EXPECT_FALSE(rig.exists(LogFile));
  log.log("X", 0, "first");
  rig.machine().clock().sleep(2000);
  log.log("X", 0, "second");
  EXPECT_FALSE(rig.exists(LogFile));
  log.logFilename("C:\\Logs\\run.html");
  rig.machine().files().makeFolder("C:\\Logs");
  log.releaseEntries();
  log.log("X", 0, "third");
  const std::vector<LogRow> rows = LogRows(rig.text("C:\\Logs\\run.html"));
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0], (LogRow{"15/11/06 14:03:27.081", ActionMark, "first"})) << "the moment when it was made";
  EXPECT_EQ(rows[1].description, "second");
  EXPECT_EQ(rows[2].description, "third");
  EXPECT_FALSE(rig.exists(LogFile));
}

TEST_F(LogTest, ShowMessage_ShowsErrorsOnlyAndAfterTheyWereWritten) {
  std::string written;
  rig.machine().screen().answer({"T Error", "", platform::BoxAnswer::Ok, [&] { written = text(); }});
  log.log("X", 0, "no number, no box", Shown::Always);
  log.log("X", 5, "gone", Shown::Always);
  EXPECT_EQ(
      rig.effects("box"),
      Names{"box \"T Error\": A critical run-time error has occurred  |  | Error #5: 'gone' -> " + std::string("ok")});
  EXPECT_EQ(LogRows(written).size(), 2U);
}

/// The four records of one entry that could not be written.
void ExpectRecords(const Names& records, const std::string& failure) {
  const std::string start = "event log T: ";
  ASSERT_EQ(records.size(), 4U);
  EXPECT_EQ(records[0], start + "Routine name passed in: Main");
  EXPECT_EQ(records[1], start + "Description passed in: started");
  EXPECT_EQ(records[2], start + "Number passed in : 12");
  EXPECT_EQ(records[3].rfind(start + "Method Log of clsAppLog failed, Error No : " + failure +
                                 " | Error Source = clsAppLog.WriteLogEntry Line no: ",
                             0),
            0U)
      << records[3];
}

TEST_F(LogTest, Entry_ThatCannotBeWritten_GoesToABoxAndTheEventLog) {
  rig.machine().addDrive({'E', platform::DriveType::Fixed, "FULL", "", true, true, 10});
  const std::pair<const char*, const char*> table[] = {
      {"D:\\T.html", "5 Description : Permission denied"},
      {"E:\\T.html", "112 Description : Disk full"},
      {"C:\\Nowhere\\T.html", "3 Description : Path not found"},
      {"Q:\\T.html", "3 Description : Path not found"},
  };
  for (const auto& [file, failure] : table) {
    SCOPED_TRACE(file);
    log.logFilename(file);
    log.lastErrNumber(1);
    log.lastErrDescription("before");
    const std::size_t records = rig.effects("event log").size();
    const std::size_t boxes = rig.effects("box").size();
    rig.answer("T", platform::BoxAnswer::Ok, "Main");
    log.log("Main", 12, "started", Shown::Always);
    Names added = rig.effects("event log");
    added.erase(added.begin(), added.begin() + static_cast<std::ptrdiff_t>(records));
    ExpectRecords(added, failure);
    ASSERT_EQ(rig.effects("box").size(), boxes + 1) << "the box of the error itself is not shown";
    EXPECT_EQ(rig.effects("box").back(), "box \"T\": Main -> ok");
    EXPECT_EQ(log.lastErrNumber(), 1);
    EXPECT_EQ(log.lastErrDescription(), "before");
  }
}

TEST_F(LogTest, Entry_ThatIsLostWhenTheFileIsClosed_GoesThereToo) {
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("files.close", "T.html", platform::Status::DiskFull);
  clsAppLog failing(faulty, "T", "C:\\QX");
  failing.beSilent(true);
  failing.log("Main", 12, "started");
  ExpectRecords(rig.effects("event log"), "112 Description : Disk full");
}

TEST_F(LogTest, Entry_ThatCannotBeWrittenOnASilentRun_ShowsNoBox) {
  log.beSilent(true);
  log.logFilename("D:\\T.html");
  log.log("Main", 12, "started");
  ExpectRecords(rig.effects("event log"), "5 Description : Permission denied");
  log.logFilename(LogFile);
  log.log("Main", 0, "the medium is back");
  EXPECT_EQ(LogRows(text()).size(), 1U);
}

TEST_F(LogTest, Entry_ThatCannotBeWrittenWithoutEventLog_IsLostQuietly) {
  rig.machine().setSystem("Windows 98");
  log.beSilent(true);
  log.logFilename("D:\\T.html");
  log.log("Main", 12, "started");
  EXPECT_EQ(rig.effects("event log"), Names());
}

TEST_F(LogTest, Archive_ThreeTimesInAMinute_KeepsTheFirstAndTheLast) {
  for (const char* content : {"one", "two", "three"}) {
    rig.file(LogFile, content);
    EXPECT_TRUE(log.archiveLogFile(Archive));
    rig.machine().clock().sleep(10000);
  }
  EXPECT_EQ(archived(), (Names{"T0611151403.html", "T0611151403a.html"}));
  EXPECT_EQ(rig.text("C:\\Logs\\Archive\\T0611151403.html"), "one");
  EXPECT_EQ(rig.text("C:\\Logs\\Archive\\T0611151403a.html"), "three");
  EXPECT_EQ(text(), "three") << "the log stays in its place";
  rig.machine().clock().sleep(60000);
  log.archiveLogFile(Archive);
  EXPECT_TRUE(rig.exists("C:\\Logs\\Archive\\T0611151404.html"));
}

TEST_F(LogTest, Archive_AboveItsLimit_LosesItsFirstFileAndNoOther) {
  const struct {
    std::vector<std::size_t> sizes;
    Names left;
  } table[] = {
      {{10000000}, {"1.html"}},
      {{10000001}, {}},
      {{1, 9999999}, {"1.html", "2.html"}},
      {{1, 10000000}, {"2.html"}},
      {{6000000, 6000000, 12000000}, {"2.html", "3.html"}},
  };
  for (const auto& row : table) {
    rig.machine().files().remove(Archive);
    rig.machine().files().makeFolder(Archive);
    archiveOf(row.sizes);
    log.archiveLogFile(Archive);
    EXPECT_EQ(archived(), row.left) << row.sizes.size() << " files, the first of " << row.sizes[0] << " bytes";
  }
  archiveOf({6000000, 6000000, 12000000});
  rig.machine().files().setAttributes("C:\\Logs\\Archive\\1.html", {.readOnly = true});
  log.archiveLogFile(Archive);
  EXPECT_EQ(archived(), (Names{"2.html", "3.html"})) << "a read-only file goes like any other";
}

TEST_F(LogTest, Archive_CountsTheLogThatItJustGot) {
  archiveOf({10000000});
  rig.file(LogFile, "x");
  log.archiveLogFile(Archive);
  EXPECT_EQ(archived(), Names{"T0611151403.html"});
}

TEST_F(LogTest, Archive_CopyFails_IsLoggedAndStillTrims) {
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("files.copyFile", "", platform::Status::DiskFull);
  clsAppLog failing(faulty, "T", "C:\\QX");
  archiveOf({6000000, 6000000});
  failing.log("X", 0, "to be archived");
  EXPECT_FALSE(failing.archiveLogFile(Archive));
  EXPECT_EQ(archived(), Names{"2.html"});
  const std::vector<LogRow> errors = RowsOf(text(), ErrorMark);
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_NE(errors[0].description.find("<BR>Source: ArchiveLogFile Error No = 112"), std::string::npos) << errors[0];
}

TEST_F(LogTest, Archive_FolderCannotBeMade_IsLoggedWithItsName) {
  rig.file("C:\\Logs", "a file in its place");
  log.log("X", 0, "to be archived");
  EXPECT_FALSE(log.archiveLogFile(Archive));
  const std::vector<LogRow> errors = RowsOf(text(), ErrorMark);
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors[0].description, "Cannot create folder C:\\Logs<BR>Source: ArchiveLogFile Error No = 6021");
}

TEST(ErrorTexts, Marks_AreFilledInOrder) {
  const struct {
    int number;
    Names values;
    const char* text;
  } table[] = {
      {6080, {"Install", "Office", "c.ini"}, "ini string Install not found in section Office of c.ini"},
      {6121, {"Install", "Office", "c.ini"}, "ini string Install not found in section Office of c.ini"},
      {6080, {"Install"}, "ini string Install not found in section % of %"},
      {6080, {}, "ini string % not found in section % of %"},
      {6081, {"c.ini", "too many"}, "File c.ini could not be found"},
      {6120, {"100%", "c.ini"}, "ini section 100c.ini not found in %"},  // a mark in a value is filled by the next one
      {6147, {"Installed Product Name", "{1}"}, "Error returning product Installed Product Name for {1}"},
      {6162, {"RegOpenKeyEx", "x", "5"}, "API call RegOpenKeyEx (x) failed, returning error number 5"},
      {6087, {"K", "V"}, "Could not write to registry key: K, value:V"},
      {6090, {"unused"}, "No installation actions found"},
      {6001, {"x"}, ""},
      // Spelled like this since ever.
      {6122, {}, "ini file % cound not be opened"},
      {6125, {}, "ini file % cound not be saved"},
      {6126, {}, "An error occured whilst returning the Windows directory"},
      {6144, {}, "Could not return Installed Product name for"},
      {6164, {}, "Could not enable editing priviledges for the registry key"},
      {6024, {}, "Could not find a file or folder named : %"},
      {6141, {}, "Could not open MSI database : %"},
      {6086, {}, "Drive % can not be found"},
      {0, {}, ""},
  };
  for (const auto& row : table) EXPECT_EQ(modErrorBase::GetErrorText(row.number, row.values), row.text) << row.number;
}

}  // namespace
