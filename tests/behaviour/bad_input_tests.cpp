// Whole silent runs over ini files that cannot be used and a registry that takes no more: each ends as it must, says
// why, and leaves a whole log.

#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using BadInput = Installing;

TEST_F(BadInput, IniFileThatCannotBeUsed_EndsTheRunOrNotWithItsMessage) {
  const std::string megabyte(1024 * 1024, 'x');
  const struct {
    const char* what;
    const char* path;
    std::string text;
    int exitCode;
    const char* logged;  ///< in the product's log, or the default one where no product is known
  } table[] = {
      {"application ini is Unicode", "C:\\Media\\app.ini", "\xFF\xFE[P]", 1, "Save it as ANSI text"},
      {"application ini is garbage", "C:\\Media\\app.ini", "\x01\x02 nothing", 1, "ini section Product not found in"},
      {"application ini is empty", "C:\\Media\\app.ini", "", 1, "The application ini names no product."},
      {"name of a megabyte", "C:\\Media\\app.ini", "[Product]\nName=" + megabyte, 1, "C:\\Media\\app.ini"},
      {"product ini is empty", "C:\\Media\\product.ini", "", 0, "No installation actions found"},
      {"product ini is Unicode", "C:\\Media\\product.ini", "\xFF\xFE[P]", 1,
       "C:\\Media\\product.ini counts as not found"},
      {"component ini is empty", "C:\\Media\\Tools\\Tools.ini", "", 1, "ini section Tools not found in"},
      {"component without its section", "C:\\Media\\Tools\\Tools.ini", "[Other]\nInstall=a.exe\n", 1,
       "ini section Tools not found in C:\\Media\\Tools\\Tools.ini"},
      {"command line of a megabyte", "C:\\Media\\Tools\\Tools.ini", "[Tools]\nInstall=a.exe\nCommandLine=" + megabyte,
       1, "CommandLine"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.what);
    fresh();
    rig.tolerateUnused();
    media.program("Tools");
    media.write();
    rig.file(row.path, row.text);
    EXPECT_EQ(rig.run(Media::arguments("/s")), row.exitCode);
    const std::string log = rig.log("Office Suite").empty() ? rig.defaultLog() : rig.log("Office Suite");
    LogRows(log);
    EXPECT_NE(log.find(row.logged), std::string::npos) << log.substr(0, 5000);
    EXPECT_NE(log.find("QX Installer Run complete"), std::string::npos) << "the log has its end";
    EXPECT_EQ(rig.effects("box"), Names());
  }
}

TEST_F(BadInput, TextsTooLongToBeReadBack_AreRefusedWithTheirKey) {
  const std::string longest(1023, 'x'), tooLong(1024, 'x'), name(255, 'n');
  const struct {
    const char* what;
    std::string applicationKey, componentLines, actions;
    const char* told;  ///< words of the errors; none: the run goes on
  } table[] = {
      {"the longest texts", "CopyOpRoot=" + longest, "CommandLine=" + longest, "", ""},
      {"application key", "CopyOpRoot=" + tooLong, "", "", "CopyOpRoot [Product] C:\\Media\\app.ini 1024"},
      {"command line", "", "CommandLine=" + tooLong, "", "CommandLine [Tools] C:\\Media\\Tools\\Tools.ini 1024"},
      {"condition", "", "Condition1=os=" + tooLong, "", "os [Tools] C:\\Media\\Tools\\Tools.ini 1024"},
      {"name of a condition", "", "Condition1=" + name + "=x", "", "[Tools] C:\\Media\\Tools\\Tools.ini"},
      {"copy target", "", "CopyOpTarget1=" + tooLong, "", "CopyOpTarget1 [Tools] C:\\Media\\Tools\\Tools.ini 1024"},
      {"component name", "", "", name + "=Tools\\Tools.ini\n", "[Actions] C:\\Media\\product.ini"},
      {"component name with a backslash", "", "", "a\\b=Tools\\Tools.ini\n", "a\\b [Actions] C:\\Media\\product.ini"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.what);
    const Names told = Words(row.told);
    fresh();
    rig.tolerateUnused();
    media.program("Tools", {}, row.componentLines + "\n");
    if (!row.actions.empty()) media.productIni += "[Actions]\n" + row.actions;
    media.write();
    rig.file("C:\\Media\\app.ini", "[Product]\n" + row.applicationKey + "\n" +
                                       rig.text("C:\\Media\\app.ini").substr(std::string("[Product]\r\n").size()));
    EXPECT_EQ(rig.run(Media::arguments("/s")), told.empty() ? 0 : 1);
    EXPECT_EQ(rig.ran().size(), told.empty() ? 1U : 0U);
    std::string errors;
    for (const LogRow& error : RowsOf(rig.log("Office Suite"), ErrorMark)) errors += error.description + "\n";
    EXPECT_EQ(errors.empty(), told.empty()) << errors;
    for (const std::string& part : told) EXPECT_NE(errors.find(part), std::string::npos) << part << " in " << errors;
  }
}

TEST_F(BadInput, RegistryThatTakesNoMore_FailsTheRunAtTheValue) {
  rig.tolerateUnused();
  media.program("Tools").write();
  EXPECT_EQ(rig.runFailing("registry.setValue", "SequenceNumber", platform::Status::DiskFull, Media::arguments("/s")),
            1);
  EXPECT_TRUE(rig.ran().empty());
  EXPECT_TRUE(Logged(rig,
                     "Could not write to registry key: HKLM\\Software\\Tarvel\\Installation\\Products\\Office "
                     "Suite\\Tools, value:SequenceNumber"));
}

}  // namespace
