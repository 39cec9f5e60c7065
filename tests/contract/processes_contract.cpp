#include <algorithm>

#include "tests/contract/bench.h"

namespace contract {

using platform::OwnedProcess;
using platform::ShowWindow;
using platform::StartedProcess;
using platform::Status;
using platform::WaitResult;

class Processes : public Test {
 protected:
  platform::Processes& processes() { return machine().processes(); }

  /// Starts, waits to the end, closes; the exit code.
  std::int32_t run(const std::string& commandLine, const std::string& folder) {
    OwnedProcess started(processes());
    EXPECT_EQ(processes().start(commandLine, folder, ShowWindow::Hidden, started.receive()), Status::Ok) << commandLine;
    EXPECT_NE(processes().waitForInputIdle(*started, 20000), WaitResult::TimedOut) << commandLine;
    EXPECT_EQ(processes().wait(*started, 20000), WaitResult::Signalled) << commandLine;
    std::int32_t code = 0;
    EXPECT_EQ(processes().exitCode(*started, code), Status::Ok);
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
      {"no such program in a folder", path("missing.exe"), "", Status::FileNotFound},
      {"no such program on the search path", "qx-no-such-program /s", "", Status::FileNotFound},
      {"no such working folder", bench().command(1, 0), path("missing"), Status::FolderNameInvalid},
      {"a script", "\"" + path("script.vbs") + "\"", "", Status::BadProgramFormat},
      {"a text", "\"" + path("note.txt") + "\"", "", Status::BadProgramFormat},
  };
  for (const auto& c : cases) {
    StartedProcess started = {1, 1};
    EXPECT_EQ(processes().start(c.commandLine, c.folder, ShowWindow::Normal, started), c.expected) << c.situation;
    EXPECT_EQ(started, StartedProcess{}) << c.situation;
  }
}

TEST_F(Processes, Wait_ShorterThanTheProgram_TimesOutAndSignalsLater) {
  OwnedProcess started(processes());
  ASSERT_EQ(processes().start(bench().command(1500, 5), "", ShowWindow::Hidden, started.receive()), Status::Ok);
  std::int32_t code = 0;
  EXPECT_EQ(processes().wait(*started, 100), WaitResult::TimedOut);
  EXPECT_EQ(processes().exitCode(*started, code), Status::Ok);
  EXPECT_EQ(code, 259) << "still running";
  EXPECT_EQ(processes().wait(*started, 20000), WaitResult::Signalled);
  EXPECT_EQ(processes().exitCode(*started, code), Status::Ok);
  EXPECT_EQ(code, 5);
}

TEST_F(Processes, Close_ClosesBothHandlesOnce_AndIgnoresNone) {
  StartedProcess started;
  ASSERT_EQ(processes().start(bench().command(1, 0), "", ShowWindow::Hidden, started), Status::Ok);
  EXPECT_NE(started.process, 0u);
  EXPECT_NE(started.thread, 0u);
  EXPECT_EQ(processes().wait(started, 20000), WaitResult::Signalled);
  for (int times = 0; times < 2; ++times) {
    processes().close(started);
    EXPECT_EQ(started, StartedProcess{});
  }
  EXPECT_EQ(processes().wait(started, 1), WaitResult::Failed);
  std::int32_t code = 42;
  EXPECT_NE(processes().exitCode(started, code), Status::Ok);
  EXPECT_EQ(code, 42);
}

TEST_F(Processes, RunningNames_HoldThisProgramOnce_AndTellTheWay) {
  std::vector<std::string> names;
  std::string askedThrough;
  ASSERT_EQ(processes().runningNames(names, askedThrough), Status::Ok);
  const std::string program = machine().machine().programPath();
  const std::string own = program.substr(program.rfind('\\') + 1);
  EXPECT_EQ(std::count(names.begin(), names.end(), own), 1);
  EXPECT_EQ(askedThrough,
            "winmgmts:{impersonationLevel=impersonate,(RemoteShutdown)}//" + machine().machine().computerName());
}

}  // namespace contract
