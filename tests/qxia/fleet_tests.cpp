// What `qxia fleet` tells of folders with the logs of many machines.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/qxia/logs/fleet_report.h"
#include "app/qxia/logs/fleet_verb.h"
#include "platform/simulated/host.h"
#include "tests/qxia/fits_schema.h"
#include "tests/support/temporary_folder.h"

namespace qxia::logs {
namespace {

using simulated::MakeHostFolder;
using simulated::WriteHostFile;

constexpr const char* LogName = "/QX Installation Assistant.html";

std::string RowText(const std::string& time, const std::string& text, const std::string& kind = "Action") {
  return R"(<TABLE cellpadding="0" border="0"><TR valign="top"><TD width="150">)" + time + R"(</TD><TD width="120">)" +
         kind + R"(</TD><TD width="550">)" + text + "</TD></TR></TABLE>\r\n";
}

/// A run of the product with one component, which ends with this code; `closing` are the rows behind it.
std::string Log(const std::string& day, int code, const std::vector<std::string>& closing) {
  const std::string time = day + " 10:00:00.000";
  const std::string command = "D:\\Core\\core.vbs";
  std::string log;
  for (const std::string& text :
       {std::string("Installing Office Suite Version 2.1.0"), std::string("Sequence is:<br>Core = 100<br>"),
        std::string("Next component is Core v.N/A"), std::string("Type of file is vbs")})
    log += RowText(time, text);
  log += code == 0 ? RowText(time, "Executing " + command + " returned no errors (return code: 0)") +
                         RowText(time, " Install returned no errors")
                   : RowText(time, "Executing " + command + " returned Error number " + std::to_string(code),
                             "<FONT color=red><b>*** ERROR ***</FONT>") +
                         RowText(time, "*** Install Failed ***<BR>", "<FONT color=red><b>*** ERROR ***</FONT>");
  log += RowText(time, "Writing last sequence to register");
  for (const std::string& text : closing) log += RowText(time, text);
  return log;
}

const std::vector<std::string> Complete = {"Resetting system registry", "QX Installer Run complete", "*********"};

class Fleets : public testing::Test {
 protected:
  void put(const std::string& machine, const std::string& file, const std::string& bytes) {
    MakeHostFolder(folder() + "/" + machine);
    WriteHostFile(folder() + "/" + machine + file, bytes);
  }
  std::string folder() const { return folder_.path(); }

  /// A fleet with a machine for every outcome.
  void makeAll() {
    put("PC1", LogName, Log("05/03/06", 0, Complete));
    put("PC2", LogName, Log("05/03/06", 5, Complete));
    put("PC3", LogName, Log("07/03/06", 5, Complete));
    put("PC4", LogName, Log("06/03/06", 9, Complete));
    put("PC5", LogName, Log("05/03/06", 0, {"Re-booting now"}));
    put("PC6", LogName, Log("05/03/06", 0, {}));
    put("PC7", "/report.html", "<html></html>");
    put("PC8", "/empty.html", "");
  }

 private:
  TemporaryFolder folder_;
};

/// "PC1 succeeded" of every machine.
std::vector<std::string> Outcomes(const Fleet& fleet) {
  std::vector<std::string> outcomes;
  for (const FleetRun& run : fleet.runs) outcomes.push_back(run.machine + " " + run.outcome);
  return outcomes;
}

std::vector<std::string> FilesOf(const std::vector<Problem>& problems) {
  std::vector<std::string> names;
  for (const Problem& problem : problems) names.push_back(std::filesystem::path(problem.file).filename().string());
  return names;
}

TEST_F(Fleets, EveryOutcome_IsToldAndFailuresAreGroupedNewestFirst) {
  makeAll();
  const Fleet fleet = ReadFleet(folder());
  EXPECT_EQ(Outcomes(fleet),
            (std::vector<std::string>{"PC1 succeeded", "PC2 failed", "PC3 failed", "PC4 failed", "PC5 waiting",
                                      "PC6 broken off", "PC7 unreadable", "PC8 unreadable"}));
  ASSERT_EQ(fleet.failures.size(), 2U);
  EXPECT_EQ(fleet.failures[0].reason, "Installation failed returning error 5");
  EXPECT_EQ(fleet.failures[0].machines, (std::vector<std::string>{"PC3", "PC2"}));
  EXPECT_EQ(fleet.failures[1].machines, std::vector<std::string>{"PC4"});
  EXPECT_EQ(FilesOf(fleet.problems), std::vector<std::string>{"empty.html"});
  EXPECT_EQ(fleet.passedOver, std::vector<std::string>{folder() + "/PC7/report.html"});
}

TEST_F(Fleets, Forms_TellTheSame) {
  makeAll();
  const Fleet fleet = ReadFleet(folder());
  const std::string json = FleetJson(fleet);
  EXPECT_TRUE(FitsSchema("qxia-fleet.schema.json", json));
  EXPECT_EQ(nlohmann::json::parse(json)["counts"]["failed"], 3);
  const std::string text = FleetText(fleet);
  for (const char* line : {"Office Suite 2.1.0  failed      3      PC2, PC3, PC4\n", "Waiting for a restart\n  PC5  ",
                           "Broken off\n  PC6  ", "Nothing readable\n  PC7  no log that could be read\n  PC8",
                           "2 machines, newest 2006-03-07 10:00:00: PC3, PC2\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
  const std::string csv = FleetCsv(fleet);
  EXPECT_NE(csv.find("\r\nPC2,Office Suite,2.1.0,install,failed,0,"), std::string::npos) << csv;
  const std::string page = FleetPage(fleet);
  EXPECT_NE(page.find("title=\"failed: 3\""), std::string::npos);
  EXPECT_NE(page.find("data-outcome=\"failed\" data-product=\"Office Suite 2.1.0\" data-component=\"Core\""),
            std::string::npos);
  EXPECT_EQ(page.find("http"), std::string::npos);
}

TEST_F(Fleets, CsvField_IsNoFormula) {
  put("=cmd", LogName, Log("05/03/06", 0, Complete));
  put("a, \"b\"", LogName, Log("05/03/06", 0, Complete));
  const std::string csv = FleetCsv(ReadFleet(folder()));
  EXPECT_NE(csv.find("\r\n'=cmd,"), std::string::npos);
  EXPECT_NE(csv.find("\r\n\"a, \"\"b\"\"\","), std::string::npos);
}

TEST_F(Fleets, NewestRun_CountsWhereverItLies) {
  put("PC1", LogName, Log("05/03/06", 5, Complete));
  put("PC1/QXIA Archive Logs", "/old.html", Log("06/03/06", 0, Complete));
  put("PC1/QXIA Archive Logs", "/older.html", Log("04/03/06", 9, Complete));
  EXPECT_EQ(Outcomes(ReadFleet(folder())), std::vector<std::string>{"PC1 succeeded"});
}

TEST_F(Fleets, RecordAlone_TellsOfTheMachine) {
  constexpr const char* products = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tarvel\\Installation\\Products";
  put("PC1", "/product.reg",
      std::string("REGEDIT4\r\n\r\n") + products + "\\Office Suite]\r\n\"Version\"=\"2.1.0\"\r\n" +
          "\"Succeeded\"=dword:00000000\r\n\"Abort Reason\"=\"Installation of Core failed.\"\r\n" + products +
          "\\Office Suite\\Core]\r\n\"SequenceNumber\"=dword:00000064\r\n\"Process Return\"=\"Fail\"\r\n" +
          "\"Message\"=\"No disc\"\r\n");
  put("PC2", "/broken.reg", "REGEDIT5\r\n");
  const Fleet fleet = ReadFleet(folder());
  EXPECT_EQ(Outcomes(fleet), (std::vector<std::string>{"PC1 failed", "PC2 unreadable"}));
  EXPECT_EQ(fleet.failures.at(0).component + ": " + fleet.failures[0].reason, "Core: No disc");
  EXPECT_EQ(FilesOf(fleet.problems), std::vector<std::string>{"broken.reg"});
}

TEST_F(Fleets, LinkOutOfTheFolder_IsNotFollowed) {
  makeAll();
  const TemporaryFolder other;
  WriteHostFile(other.path() + LogName, Log("05/03/06", 0, Complete));
  std::filesystem::create_directory_symlink(other.path(), folder() + "/PC9");
  std::filesystem::create_symlink(other.path() + LogName, folder() + "/PC7/link.html");
  EXPECT_EQ(Outcomes(ReadFleet(folder())).size(), 8U);
}

TEST_F(Fleets, Command_EndsByWhatItCouldRead) {
  const Verb verbs[] = {{"fleet", "DIR", "", FleetOptions, "", ShowFleet}};
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(RunCommand(verbs, {"fleet", folder()}), Unusable);
  put("PC1", LogName, Log("05/03/06", 5, Complete));
  EXPECT_EQ(RunCommand(verbs, {"fleet", folder(), "--format", "csv"}), 0);
  EXPECT_EQ(RunCommand(verbs, {"fleet", folder(), "--format", "xml"}), Unusable);
  EXPECT_EQ(RunCommand(verbs, {"fleet", folder() + "/PC1" + LogName}), Unusable);
  const std::string whole = Log("05/03/06", 0, Complete);
  put("PC2", LogName, whole.substr(0, whole.size() / 2));
  EXPECT_EQ(RunCommand(verbs, {"fleet", folder()}), 1);
  testing::internal::GetCapturedStdout();
  EXPECT_NE(testing::internal::GetCapturedStderr().find("damaged or cut off"), std::string::npos);
}

}  // namespace
}  // namespace qxia::logs
