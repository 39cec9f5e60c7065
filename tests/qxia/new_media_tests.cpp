// Media that `qxia new` makes: what is refused, and that what is made installs at once on every system.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "app/qxia/new_media/new_verb.h"
#include "app/qxia/new_media/placeholder_files.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"
#include "tests/support/media.h"

namespace qxia {
namespace {

namespace fs = std::filesystem;

constexpr const char* Systems[] = {"Windows 95",     "Windows 98",   "Windows ME", "Windows NT 3.51",
                                   "Windows NT 4.0", "Windows 2000", "Windows XP", "Windows 2003"};

constexpr Verb Verbs[] = {{"new", "DIR", "", NewOptions, "", MakeNewMedia}};

/// What a command line printed, and its exit code.
struct Printed {
  int exitCode;
  std::string text;
};

Printed New(const std::string& folder, const std::vector<std::string>& options) {
  std::vector<std::string> words = {"new", folder};
  words.insert(words.end(), options.begin(), options.end());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int exitCode = RunCommand(Verbs, words);
  const std::string output = testing::internal::GetCapturedStdout();
  return {exitCode, output + testing::internal::GetCapturedStderr()};
}

const std::vector<std::string> EveryKind = {"--product",   "Office Suite",    "--component", "Core:msi",
                                            "--component", "Tools:exe",       "--component", "Driver:exe-restart",
                                            "--component", "Set Up FILE:bat", "--component", "Says:vbs",
                                            "--component", "Manuals:copy"};

/// The first disc in drive D, and what its programs do; the driver asks for a restart.
void Mount(Rig& rig, const std::string& folder) {
  rig.machine().mount('D', folder, platform::DriveType::CdRom, "OFFICESUI1");
  simulated::Package core{
      .path = "D:\\Packages\\Core\\core.msi", .name = "Core", .version = "1.0.0", .code = CodeOf("Core")};
  rig.machine().installer().declare(core);
  for (const char* program : {"Tools\\tools.exe", "Set Up FILE\\setupfile.bat", "Says\\says.vbs"})
    rig.program(std::string("D:\\Packages\\") + program);
  rig.program("D:\\Packages\\Driver\\driver.vbs", RequestsReboot("immediate"));
  rig.tolerateUnused();  // where a condition holds a component back
}

std::vector<std::string> FailedIn(Rig& rig) {
  std::vector<std::string> failed;
  for (const char* name : {"Core", "Tools", "Driver", "Set Up FILE", "Says", "Manuals"})
    if (rig.value(ComponentRecord(name), "Process Return") == "Fail") failed.emplace_back(name);
  return failed;
}

TEST(NewMedia_OfEveryKind, InstallAtOnceOnEverySystem) {
  const TemporaryFolder made;
  ASSERT_EQ(New(made.path(), EveryKind).exitCode, 0);
  for (const char* system : Systems) {
    Rig rig;
    rig.machine().setSystem(system);
    Mount(rig, made.path());
    const std::string arguments = "/s /is=D:\\QX Installation Assistant.ini";
    EXPECT_EQ(rig.run(arguments), 0) << system;
    if (rig.machine().restartRequested()) {
      rig.restart();
      EXPECT_EQ(rig.run(rig.logonArguments()), 0) << system;
    }
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1") << system;
    EXPECT_EQ(FailedIn(rig), std::vector<std::string>{}) << system;
    EXPECT_TRUE(rig.exists("C:\\Office Suite\\Manuals\\v1.0.0.0\\manuals.txt")) << system;
    const std::string log =
        rig.text("C:\\Logs\\QX Installation Assistant\\Office Suite\\QX Installation Assistant.html");
    EXPECT_NE(log.find("QX Installer Run complete"), std::string::npos) << system;
    EXPECT_EQ(log.find("*** ERROR ***"), std::string::npos) << system << log;
  }
}

TEST(NewMedia_OnSeveralDiscs, LeadFromOneLabelToTheNext) {
  const TemporaryFolder made;
  std::vector<std::string> options = EveryKind;
  options.insert(options.end(), {"--discs", "3"});
  const Printed printed = New(made.path() + "/media", options);
  EXPECT_EQ(printed.exitCode, 0);
  EXPECT_NE(printed.text.find("disc3: a disc labelled OFFICESUI3"), std::string::npos) << printed.text;
  const auto product = [&](int disc) {
    return simulated::ReadHostFile(made.path() + "/media/disc" + std::to_string(disc) + "/product.ini");
  };
  EXPECT_EQ(product(1).find("PreviousVolumeName"), std::string::npos);
  EXPECT_NE(product(1).find("\r\nNextVolumeName=OFFICESUI2\r\n"), std::string::npos);
  EXPECT_NE(product(3).find("\r\nPreviousVolumeName=OFFICESUI2\r\n"), std::string::npos);
  EXPECT_EQ(product(3).find("NextVolumeName"), std::string::npos);
  EXPECT_NE(product(3).find("\r\nManuals=Manuals\\v1.0.0.0\\manuals.ini;"), std::string::npos) << product(3);
}

/// Every key has its comment in the line above; the components in [Actions] have one together.
TEST(NewMedia_EveryKey, HasACommentThatSaysWhatItDoes) {
  const TemporaryFolder made;
  New(made.path(), EveryKind);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(made.path())) {
    if (entry.path().extension() != ".ini") continue;
    std::string above;
    bool actions = false;
    for (const std::string& line : simulated::Split(simulated::ReadHostFile(entry.path().string()), '\n')) {
      actions = actions || line.starts_with("[Actions]");
      const bool isKey = line.find('=') != std::string::npos && line[0] != ';' && line[0] != '[';
      EXPECT_TRUE(!isKey || actions || above.starts_with("; ")) << entry.path() << ": " << line;
      above = line;
    }
  }
}

TEST(NewMedia_Refused, WithOneLineAndNothingMade) {
  const TemporaryFolder made;
  const std::string full = made.path() + "/full";
  simulated::MakeHostFolder(full);
  simulated::WriteHostFile(full + "/file", "");
  const std::vector<std::string> good = {"--product", "P", "--component", "A:exe"};
  const auto refuses = [&](const std::string& folder, std::vector<std::string> options, const std::string& told) {
    const Printed printed = New(folder, options);
    EXPECT_EQ(printed.exitCode, Unusable) << told;
    EXPECT_NE(printed.text.find(told), std::string::npos) << printed.text;
    EXPECT_EQ(std::count(printed.text.begin(), printed.text.end(), '\n'), 1);
  };
  refuses(full, good, "is not empty");
  refuses(full + "/file", good, "is a file");
  const std::string fresh = made.path() + "/fresh";
  refuses(fresh, {"--component", "A:exe"}, "--product NAME");
  refuses(fresh, {"--product", "P"}, "--component NAME:KIND");
  for (const char* name : {"", " ", "a\\b", "a/b", "Remote", "a=b", "[a", "a;b", "caf\xC3\xA9", "dot."}) {
    refuses(fresh, {"--product", name, "--component", "A:exe"}, "--product");
    refuses(fresh, {"--product", "P", "--component", std::string(name) + ":exe"}, "--component");
  }
  refuses(fresh, {"--product", "P", "--component", "A:com"}, "KIND being");
  refuses(fresh, {"--product", "P", "--component", "A:exe", "--component", "a:bat"}, "stands twice");
  for (const char* discs : {"0", "2", "x", ""})
    refuses(fresh, {"--product", "P", "--component", "A:exe", "--discs", discs}, "--discs");
  EXPECT_FALSE(fs::exists(fresh));
}

TEST(NewMedia_PlaceholderProgram, IsOneThatOldSystemsLoad) {
  const TemporaryFolder folder;
  simulated::WriteHostFile(folder.path() + "/p.exe", new_media::PlaceholderProgram(3010));
  const std::string output = folder.path() + "/told.txt";
  const std::string command = "objdump -p -d -Mintel '" + folder.path() + "/p.exe' >'" + output + "' 2>&1";
  ASSERT_EQ(std::system(command.c_str()), 0);
  const std::string told = simulated::ReadHostFile(output);
  for (const char* part : {"pei-i386", "MajorSubsystemVersion\t3", "DLL Name: KERNEL32.dll", "ExitProcess", "0xbc2"})
    EXPECT_NE(told.find(part), std::string::npos) << part << told;
}

}  // namespace
}  // namespace qxia
