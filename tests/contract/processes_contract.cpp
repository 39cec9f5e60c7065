#include <algorithm>

#include "tests/contract/bench.h"

namespace contract {

using platform::StartedProcess;
using platform::Status;
using platform::WaitResult;
namespace status = platform::status;

class Processes : public Test {
 protected:
  platform::Processes& processes() { return machine().processes(); }

  /// Starts, waits to the end, closes; the exit code.
  std::int32_t run(const std::string& commandLine, const std::string& folder) {
    StartedProcess started;
    EXPECT_EQ(processes().start(commandLine, folder, 0, started), status::Ok) << commandLine;
    EXPECT_NE(processes().waitForInputIdle(started, 20000), WaitResult::TimedOut) << commandLine;
    EXPECT_EQ(processes().wait(started, 20000), WaitResult::Signalled) << commandLine;
    std::int32_t code = 0;
    EXPECT_EQ(processes().exitCode(started, code), status::Ok);
    processes().close(started.process);
    processes().close(started.thread);
    EXPECT_EQ(started.process, 0u);
    return code;
  }
};

TEST_F(Processes, ExitCode_OfProgramsAndBatchFiles_IsReadBack) {
  for (const int code : {0, 1, 259, 3010, -1}) EXPECT_EQ(run(bench().command(1, code), ""), code);
  EXPECT_EQ(run(bench().batchFile(ScratchFolder, 7), ScratchFolder), 7);
  EXPECT_EQ(run("\"" + bench().batchFile(ScratchFolder, 8) + "\" /q", ScratchFolder), 8);
}

TEST_F(Processes, Start_WhatCannotRun_SaysWhy) {
  write("script.vbs", "WScript.Quit 0");
  write("note.txt", "no program");
  struct {
    const char* situation;
    std::string commandLine, folder;
    Status expected;
  } const cases[] = {
      {"no such program in a folder", path("missing.exe"), "", status::FileNotFound},
      {"no such program on the search path", "qx-no-such-program /s", "", status::FileNotFound},
      {"no such working folder", bench().command(1, 0), path("missing"), status::FolderNameInvalid},
      {"a script", "\"" + path("script.vbs") + "\"", "", status::BadProgramFormat},
      {"a text", "\"" + path("note.txt") + "\"", "", status::BadProgramFormat},
  };
  for (const auto& c : cases) {
    StartedProcess started;
    EXPECT_EQ(processes().start(c.commandLine, c.folder, 1, started), c.expected) << c.situation;
    EXPECT_EQ(started.process, 0u) << c.situation;
  }
}

TEST_F(Processes, Wait_ShorterThanTheProgram_TimesOutAndSignalsLater) {
  StartedProcess started;
  ASSERT_EQ(processes().start(bench().command(1500, 5), "", 0, started), status::Ok);
  std::int32_t code = 0;
  EXPECT_EQ(processes().wait(started, 100), WaitResult::TimedOut);
  EXPECT_EQ(processes().exitCode(started, code), status::Ok);
  EXPECT_EQ(code, 259) << "still running";
  EXPECT_EQ(processes().wait(started, 20000), WaitResult::Signalled);
  EXPECT_EQ(processes().exitCode(started, code), status::Ok);
  EXPECT_EQ(code, 5);
  processes().close(started.process);
  processes().close(started.thread);
}

TEST_F(Processes, Close_OfNoHandle_IsIgnored) {
  std::uintptr_t none = 0;
  processes().close(none);
  EXPECT_EQ(none, 0u);
  EXPECT_EQ(processes().wait(StartedProcess{}, 1), WaitResult::Failed);
}

TEST_F(Processes, QueryNames_OnThisAndAnUnknownComputer_ListsOrFails) {
  const std::string moniker = "winmgmts:{impersonationLevel=impersonate,(RemoteShutdown)}//";
  const std::string query = "select * from Win32_Process";
  std::vector<std::string> names;
  ASSERT_EQ(processes().queryNames(moniker + machine().machine().computerName(30), query, names), status::Ok);
  const std::string program = machine().machine().programPath();
  const std::string own = program.substr(program.rfind('\\') + 1);
  EXPECT_EQ(std::count(names.begin(), names.end(), own), 1);
  EXPECT_NE(processes().queryNames(moniker + "QXNOSUCHCOMPUTER", query, names), status::Ok);
  EXPECT_TRUE(names.empty());
}

}  // namespace contract
