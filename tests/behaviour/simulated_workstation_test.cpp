// What rehearsals and the other tests rely on in the simulated workstation beyond the contract of the ports.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/faults/platform.h"
#include "platform/simulated/declaration.h"
#include "tests/support/rig.h"

namespace {

using platform::Status;
using simulated::Workstation;

constexpr const char* Code = "{11111111-2222-3333-4444-555555555555}";

/// A rig that nothing is run on, so that declarations may stay unused.
class SimulatedWorkstation : public testing::Test {
 protected:
  SimulatedWorkstation() { rig_.tolerateUnused(); }

  std::string write(const std::string& name, const std::string& text) {
    const std::string path = rig_.folder() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  std::int32_t start(const std::string& commandLine) {
    platform::StartedProcess started;
    if (rig_.machine().processes().start(commandLine, "", platform::ShowWindow::Normal, started) != Status::Ok)
      return -1;
    rig_.machine().processes().wait(started, 0xffffffff);
    std::int32_t code = 0;
    rig_.machine().processes().exitCode(started, code);
    return code;
  }

  Rig rig_;
};

TEST_F(SimulatedWorkstation, State_NewWorkstationOverTheSameFolder_IsTheMachineAsItWasLeft) {
  const std::string folder = rig_.folder() + "/other";
  const std::string odd("tab\tquote\" back\\slash", 20);
  {
    Workstation first(folder);
    first.setSystem("Windows 98");
    first.machine().computer = "OTHER";
    first.addDrive({'E', platform::DriveType::Fixed, "DATA", "", true, true, 5000});
    first.files().put("E:\\Data\\note.txt", "12345");
    first.files().setAttributes("E:\\Data\\note.txt", {.readOnly = true});
    first.registry().putText("HKLM\\Software\\One", odd, "two\r\nlines");
    first.registry().put("HKLM\\Software\\One", {"Number", 4, std::string("\x2a\0\0\0", 4)});
    first.registry().putText("HKLM\\Software\\Gone", "x", "y");
    first.registry().removeTree("HKLM\\Software\\Gone");
    first.installer().install({Code, "Runtime", "1.2"});
    first.clock().sleep(60000);
  }
  Workstation second(folder);
  EXPECT_STREQ(second.machine().system().name, "Windows 98");
  EXPECT_EQ(second.machine().computer, "OTHER");
  EXPECT_EQ(second.registry().text("HKLM\\Software\\One", odd), "two\r\nlines");
  EXPECT_EQ(second.registry().text("hklm\\SOFTWARE\\one", "NUMBER"), "42");
  EXPECT_FALSE(second.registry().hasKey("HKLM\\Software\\Gone"));
  ASSERT_EQ(second.installer().products().size(), 1u);
  EXPECT_EQ(second.installer().products()[0].version, "1.2");
  EXPECT_EQ(second.files().deleteFile("e:\\data\\NOTE.TXT"), Status::AccessDenied);
  std::uint64_t free = 0;
  EXPECT_EQ(second.files().freeSpace('E', free), Status::Ok);
  EXPECT_EQ(free, 4995u);
  EXPECT_EQ(second.clock().now().minute, 4);
}

TEST_F(SimulatedWorkstation, State_NamesThatDifferInASecondByte_AreTwoOnAJapaneseMachineAndOneElsewhere) {
  const std::string lower = "\x83\x61";
  const std::string upper = "\x83\x41";
  for (const bool japanese : {true, false}) {
    const std::string folder = rig_.folder() + (japanese ? "/japanese" : "/western");
    {
      Workstation first(folder);
      first.setJapanese(japanese);
      for (const std::string& name : {lower, upper}) {
        first.files().put("C:\\" + name + "\\A.TXT", name);
        first.registry().putText("HKLM\\Software\\" + name, name, name);
      }
    }
    Workstation second(folder);
    const std::string& first = japanese ? lower : upper;
    EXPECT_EQ(second.files().content("C:\\" + lower + "\\a.txt"), first);
    EXPECT_EQ(second.files().content("C:\\" + upper + "\\a.txt"), upper);
    EXPECT_EQ(second.registry().text("HKLM\\SOFTWARE\\" + lower, lower), first);
    EXPECT_EQ(second.registry().text("HKLM\\SOFTWARE\\" + upper, upper), upper);
  }
}

TEST_F(SimulatedWorkstation, Files_FullReadOnlyAndEmptyDrives_FailAsWindowsDoes) {
  platform::Files& files = rig_.machine().files();
  platform::FileHandle file;
  rig_.file("C:\\big.txt", std::string(1000, 'x'));
  rig_.machine().addDrive({'E', platform::DriveType::Fixed, "SMALL", "", true, true, 100});
  EXPECT_EQ(files.copyFile("C:\\big.txt", "E:\\big.txt"), Status::DiskFull);
  ASSERT_EQ(files.openForWriting("E:\\small.txt", file), Status::Ok);
  EXPECT_EQ(files.write(file, std::string(101, 'x')), Status::DiskFull);
  EXPECT_EQ(files.write(file, std::string(100, 'x')), Status::Ok);
  files.close(file);

  rig_.file("D:\\setup.ini", "[Product]");
  EXPECT_EQ(files.openForWriting("D:\\new.txt", file), Status::AccessDenied);
  EXPECT_EQ(files.deleteFile("D:\\setup.ini"), Status::AccessDenied);
  ASSERT_EQ(files.copyFile("D:\\setup.ini", "C:\\setup.ini"), Status::Ok);
  EXPECT_EQ(files.deleteFile("C:\\setup.ini"), Status::AccessDenied) << "a file from a disc stays read-only";

  std::string bytes;
  platform::Attributes attributes;
  rig_.machine().files().ejectDisc('D');
  EXPECT_EQ(files.volumeLabel('D', bytes), Status::NotReady);
  EXPECT_EQ(files.read("D:\\setup.ini", bytes), Status::NotReady);
  EXPECT_EQ(files.attributes("D:\\", attributes), Status::NotReady);
  rig_.insertDisc("DISC2");
  EXPECT_EQ(files.volumeLabel('D', bytes), Status::Ok);
  EXPECT_EQ(bytes, "DISC2");
  EXPECT_EQ(files.read("D:\\setup.ini", bytes), Status::FileNotFound);
}

TEST_F(SimulatedWorkstation, Msiexec_DeclaredPackages_FollowTheProductList) {
  rig_.package({"D:\\p\\new.msi", "Runtime", "2.0", Code});
  rig_.package({"D:\\p\\old.msi", "Runtime", "1.0", Code});
  rig_.package({"D:\\p\\bad.msi", "Bad", "1.0", "{2}", {.exitCode = 1603}});
  rig_.file("D:\\p\\garbage.msi", "x");
  const struct {
    const char* commandLine;
    std::int32_t exitCode;
    const char* version;  ///< installed afterwards
  } steps[] = {
      {"msiexec /x "
       "{11111111-2222-3333-4444-555555555555} /qn",
       1605, ""},
      {"msiexec /fv  \"D:\\p\\old.msi\" /qn", 1605, ""},
      {"msiexec /x Runtime /qn", 1619, ""},
      {"msiexec /i  \"d:\\P\\OLD.msi\" /l*v \"C:\\old.log\" /qn", 0, "1.0"},
      {"msiexec /i \"D:\\p\\new.msi\"", 1638, "1.0"},
      {"MSIEXEC.EXE /fv \"D:\\p\\old.msi\"", 0, "1.0"},
      {"msiexec /i \"D:\\p\\old.msi\" /l*v \"C:\\nowhere\\old.log\"", 1622, "1.0"},
      {"msiexec /x {11111111-2222-3333-4444-555555555555}", 0, ""},
      {"msiexec /i \"D:\\p\\new.msi\"", 0, "2.0"},
      {"msiexec /i \"D:\\p\\bad.msi\"", 1603, "2.0"},
      {"msiexec /i \"D:\\p\\missing.msi\"", 1619, "2.0"},
      {"msiexec", 1639, "2.0"},
  };
  for (const auto& step : steps) {
    EXPECT_EQ(start(step.commandLine), step.exitCode) << step.commandLine;
    const auto& products = rig_.machine().installer().products();
    EXPECT_EQ(products.empty() ? "" : products[0].version, step.version) << step.commandLine;
  }
  EXPECT_TRUE(rig_.exists("C:\\old.log"));
}

TEST_F(SimulatedWorkstation, LooseEnds_UndeclaredAndUnused_AreNamed) {
  Workstation machine(rig_.folder() + "/other");
  machine.processes().declare({"never.exe"});
  machine.screen().answer({"Never asked", ""});
  platform::StartedProcess started;
  for (const char* command : {"surprise.exe /s", "reg import C:\\a.reg"})
    EXPECT_EQ(machine.processes().start(command, "", platform::ShowWindow::Normal, started), Status::FileNotFound);
  platform::MessageBoxRequest box;
  box.title = "Unexpected";
  box.text = "Go on?";
  box.defaultAnswer = platform::BoxAnswer::No;
  EXPECT_EQ(machine.screen().messageBox(box), platform::BoxAnswer::No);
  EXPECT_EQ(machine.undeclared(), (Names{"surprise.exe /s", "reg import C:\\a.reg", "box \"Unexpected\": Go on?"}));
  EXPECT_EQ(machine.unused(), (Names{"program never.exe", "answer to box \"Never asked\" "}));
}

TEST_F(SimulatedWorkstation, Restart_LogonCommands_AreThoseOfRunKeysAndStartupScripts) {
  rig_.set("Software\\Microsoft\\Windows\\CurrentVersion\\Run", "Tool", "tool.exe /r");
  rig_.set("Software\\Microsoft\\Windows\\CurrentVersion\\Run", "Empty", "");
  rig_.file(rig_.machine().machine().startupFolder() + "\\again.vbs",
            "Set oShell = CreateObject(\"Wscript.Shell\")\n\n"
            "oShell.Run \"\"\"C:\\QX\\QX Installation Assistant.exe\"\" /s /is=D:\\a b.ini\"\n");
  rig_.restart();
  EXPECT_EQ(rig_.machine().logonCommands(),
            (Names{"tool.exe /r", "\"C:\\QX\\QX Installation Assistant.exe\" /s /is=D:\\a b.ini"}));
  EXPECT_EQ(rig_.logonArguments(), "/s /is=D:\\a b.ini");
}

TEST_F(SimulatedWorkstation, Declaration_EverySection_IsCarriedOut) {
  const std::string file = write("machine.ini", R"(; a machine
[machine]
system=windows 2000
computer=QUAY
time=2007-12-31 23:59:59.000
[environment]
SITE=North
[drive e]
type=removable
label=STICK
free=100
[registry HKLM\Software\Site]
Server=Alpha
Count=dword:0000002a
[file C:\notes.txt]
line=one
line=two
[product {3}]
name=Old
version=1.0
[package C:\p.msi]
name=P
version=1.0
code={4}
exit=3010
[program tool.exe]
match=program
exit=7
seconds=2
set=HKLM\Software\Site\Tool=done
file=C:\tool.txt=written
remove={3}
[running msiexec.exe]
seconds=5
[answer Process In Use]
answer=ok
[person]
press=continue
press=close while Installing
)");
  Workstation& machine = rig_.machine();
  simulated::LoadMachine(file, machine);
  rig_.file("C:\\p.msi", "package");
  EXPECT_EQ(machine.machine().computerName(), "QUAY");
  EXPECT_EQ(machine.machine().windowsFolder(), "C:\\WINNT");
  EXPECT_EQ(machine.machine().environment("site"), "North");
  EXPECT_EQ(rig_.value("Software\\Site", "Server"), "Alpha");
  EXPECT_EQ(rig_.value("Software\\Site", "Count"), "42");
  EXPECT_EQ(rig_.text("C:\\notes.txt"), "one\r\ntwo\r\n");
  Names running[2];
  for (Names& names : running) {
    std::string askedThrough;
    EXPECT_EQ(machine.processes().runningNames(names, askedThrough), Status::Ok);
    EXPECT_EQ(askedThrough, "winmgmts:{impersonationLevel=impersonate,(RemoteShutdown)}//QUAY");
    machine.clock().sleep(5000);
  }
  EXPECT_EQ(running[0].size(), running[1].size() + 1) << "msiexec has ended";
  EXPECT_EQ(start("\"tool.exe\" /s"), 7);
  EXPECT_EQ(machine.clock().now().year, 2008);
  EXPECT_EQ(rig_.value("Software\\Site", "Tool"), "done");
  EXPECT_EQ(rig_.text("C:\\tool.txt"), "written\r\n");
  EXPECT_TRUE(machine.installer().products().empty());
  EXPECT_EQ(start("msiexec /i C:\\p.msi"), 3010);
  EXPECT_EQ(machine.screen().waitForEvent(), platform::WindowEvent::Continue);
  machine.screen().setText(platform::Control::LongMessage, "Installing");
  machine.screen().pumpMessages();
  EXPECT_EQ(machine.screen().takeEvent(), platform::WindowEvent::Close);
}

TEST_F(SimulatedWorkstation, Names_TooLongForTheRealMachine_AreNotTold) {
  Workstation& machine = rig_.machine();
  Names names;
  std::string askedThrough;
  const std::string way = "winmgmts:{impersonationLevel=impersonate,(RemoteShutdown)}//";
  machine.machine().computer = std::string(29, 'c');
  EXPECT_EQ(machine.processes().runningNames(names, askedThrough), Status::Ok);
  EXPECT_EQ(askedThrough, way + std::string(29, 'c'));
  machine.machine().computer += 'c';
  EXPECT_EQ(machine.processes().runningNames(names, askedThrough), Status{0x80041015});
  EXPECT_TRUE(names.empty());
  EXPECT_EQ(askedThrough, way);
  machine.machine().computer = std::string(255, 'c');
  EXPECT_EQ(machine.machine().computerName(), std::string(255, 'c'));
  machine.machine().computer += 'c';
  EXPECT_EQ(machine.machine().computerName(), "");
  EXPECT_EQ(machine.otherWindows().className(machine.screen().addWindow(std::string(300, 'w'), "")),
            std::string(255, 'w'));
}

TEST_F(SimulatedWorkstation, Declaration_WithAMistake_IsRefusedWithLineAndRemedy) {
  const struct {
    const char* text;
    const char* says;
  } mistakes[] = {
      {"system=Windows XP\n", ":1: 'system=Windows XP': begin a section"},
      {"[machine]\nsystem=Windows 3.1\n", ":2: system 'Windows 3.1' is not known; choose one of Windows 95"},
      {"[machine]\n\ncolour=blue\n", ":3: 'colour' is no key of [machine]; it has: another copy, arguments"},
      {"[machine\n", ":1: '[machine': end the section's name with ]"},
      {"[engine]\n", ":1: [engine] is no section; there are [access] [answer]"},
      {"[drive e]\nfree=much\n", ":2: 'much': write a whole number"},
      {"[drive e]\nfolder=missing\n", ":1: drive E: the folder"},
      {"[drive e]\nfree=-5\n", ":2: '-5': write a number from 0 to"},
      {"[program x]\nexit=99999999999\n", ":2: '99999999999': write a number from -2147483648 to 4294967295"},
      {"[running x]\nseconds=4294968\n", ":2: '4294968': write a number from 0 to 4294967"},
      {"[machine]\ntime=2006-03-05 99999999:03:27\n", ":2: time '2006-03-05 99999999:03:27': write it as"},
      {"[machine]\ntime=99999-03-05 14:03:27\n", ":2: time '99999-03-05 14:03:27': write it as"},
      {"[program x]\nset=HKLM=1\n", ":2: 'HKLM=1': write it as HKLM\\Key\\Name=data"},
      {"[registry HKCR\\x]\na=b\n", ":1: registry key 'HKCR\\x': begin the path with"},
      {"[package C:\\p.msi]\nname=P\n", ":1: [package C:\\p.msi]: add its product code"},
      {"", "is missing or empty; write a machine declaration there"},
  };
  for (const auto& mistake : mistakes) {
    const std::string file = write("machine.ini", mistake.text);
    try {
      simulated::LoadMachine(file, rig_.machine());
      ADD_FAILURE() << "accepted: " << mistake.text;
    } catch (const std::runtime_error& refused) {
      EXPECT_EQ(std::string(refused.what()).rfind(file, 0), 0u) << refused.what();
      EXPECT_NE(std::string(refused.what()).find(mistake.says), std::string::npos) << refused.what();
    }
  }
}

TEST_F(SimulatedWorkstation, ProgramsOfTheSystem_NeedNoDeclaration_WhereTheSystemHasThem) {
  const struct {
    const char* command;
    const char* lacking;  ///< a system without the program; null: all have it
    int exitCode;
    const char* file;  ///< C:\\a.txt afterwards
  } commands[] = {
      {"cmd.exe /c echo one > C:\\a.txt", "Windows 98", 0, "one \r\n"},
      {"cmd /c echo two>>\"C:\\a.txt\"", "Windows ME", 0, "one \r\ntwo\r\n"},
      {"cmd /c copy C:\\a.txt C:\\b.txt", "Windows 95", 0, "one \r\ntwo\r\n"},
      {"cmd /c copy C:\\none.txt C:\\a.txt", nullptr, 1, "one \r\ntwo\r\n"},
      {"C:\\WINDOWS\\system32\\cmd.exe /c del /q C:\\a.txt", nullptr, 0, ""},
      {"reg add HKLM\\Software\\R /v N /t REG_DWORD /d 7 /f", "Windows 2000", 0, ""},
      {"reg delete HKLM\\Software\\None /f", "Windows NT 4.0", 1, ""},
      {"net share Data=C:\\", nullptr, 0, ""},
      {"net use K: \\\\server\\packages", nullptr, 2, ""},
      {"AT 14:05 cmd /c del x", "Windows 98", 0, ""},
  };
  Workstation& machine = rig_.machine();
  for (const auto& row : commands) {
    SCOPED_TRACE(row.command);
    machine.setSystem("Windows XP");
    EXPECT_EQ(start(row.command), row.exitCode);
    EXPECT_EQ(rig_.text("C:\\a.txt"), row.file);
    if (row.lacking == nullptr) continue;
    machine.setSystem(row.lacking);
    platform::StartedProcess started;
    EXPECT_EQ(machine.processes().start(row.command, "", platform::ShowWindow::Normal, started), Status::FileNotFound);
    EXPECT_TRUE(machine.undeclared().empty());
  }
  EXPECT_EQ(rig_.value("Software\\R", "N"), "7");
  EXPECT_EQ(rig_.text("C:\\b.txt"), "one \r\ntwo\r\n");
}

TEST_F(SimulatedWorkstation, RegistryFile_Damaged_IsRefusedWithItsLine) {
  std::string deep = "[HKEY_LOCAL_MACHINE";
  for (int level = 0; level < 33000; ++level) deep += "\\a";
  const struct {
    std::string line;
    const char* says;
  } damages[] = {
      {"\"Name\"=text", "registry.reg, line 4: '\"Name\"=text' is no registry text"},
      {std::string("\"Na\0me\"=\"text\"", 14), "registry.reg, line 4: "},
      {"[HKEY_CLASSES_ROOT\\x]", "registry.reg, line 4: registry key 'HKEY_CLASSES_ROOT\\x': begin the path with"},
      {deep + "]", "registry.reg, line 4: registry key with 33000 levels: there are at most 512"},
  };
  const std::string folder = rig_.folder() + "/damaged";
  std::filesystem::create_directories(folder);
  for (const auto& damage : damages) {
    write("damaged/registry.reg", "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\Software]\n" + damage.line + "\n");
    try {
      Workstation machine(folder);
      ADD_FAILURE() << "accepted: " << damage.says;
    } catch (const std::runtime_error& refused) {
      EXPECT_NE(std::string(refused.what()).find(damage.says), std::string::npos) << refused.what();
    }
  }
}

/// A key path of so many levels.
std::string Levels(int levels) {
  std::string path = "a";
  for (int level = 1; level < levels; ++level) path += "\\a";
  return path;
}

TEST_F(SimulatedWorkstation, Registry_OddNames_AreCutOrRefusedAndTheStateStaysReadable) {
  const struct {
    std::string path;
    Status created;
  } keys[] = {
      {std::string("Zero\0tail", 9), Status::Ok},
      {"Line\nfeed", Status::BadKey},
      {Levels(512), Status::Ok},
      {Levels(513), Status::InvalidParameter},
      {Levels(33000), Status::InvalidParameter},
  };
  platform::Registry& registry = rig_.machine().registry();
  platform::KeyHandle key;
  for (const auto& [path, created] : keys)
    EXPECT_EQ(registry.createKey(platform::RegistryRoot::LocalMachine, path, platform::KeyAccess::Plain, key), created);
  registry.createKey(platform::RegistryRoot::LocalMachine, "Zero", platform::KeyAccess::Plain, key);
  const auto set = [&](const std::string& name) {
    return registry.setValue(key, name, platform::ValueType::Text, "1");
  };
  EXPECT_EQ(set(std::string("Na\0me", 5)), Status::Ok);
  EXPECT_EQ(set("Na\nme"), Status::InvalidParameter);
  rig_.restart();
  EXPECT_EQ(rig_.registryLines("Zero"), Names{"Zero\\Na=1"});
  EXPECT_TRUE(rig_.hasKey(Levels(512)));
}

TEST_F(SimulatedWorkstation, CommandLine_OfManyWords_IsLookedUpAsFarAsAPathMayReach) {
  std::string words;
  for (int word = 0; word < 32000; ++word) words += " x";
  rig_.file("C:\\Tools and more\\setup.exe", "");
  rig_.program("C:\\", {.exitCode = 7});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(start("C:\\Tools and more\\setup.exe" + words), 7);
  EXPECT_EQ(start("C:\\Nowhere\\other.exe" + words), -1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
}

TEST_F(SimulatedWorkstation, Faults_InjectedAndCut_LeaveTheStateOfThatMoment) {
  faults::Platform faulty(rig_.machine());
  platform::KeyHandle key;
  ASSERT_EQ(
      faulty.registry().createKey(platform::RegistryRoot::LocalMachine, "Software\\F", platform::KeyAccess::Write, key),
      Status::Ok);
  faulty.faults().fail("registry.setValue", "F\\Version", Status::AccessDenied, 1);
  const auto set = [&](const char* name) {
    return faulty.registry().setValue(key, name, platform::ValueType::Text, "1");
  };
  EXPECT_EQ(set("Version"), Status::AccessDenied);
  EXPECT_EQ(set("Version"), Status::Ok);
  EXPECT_EQ(set("Other"), Status::Ok);
  EXPECT_EQ(faulty.faults().operations(), 4);

  platform::FileHandle file;
  ASSERT_EQ(faulty.files().openForAppending("C:\\log.txt", file), Status::Ok);
  faulty.faults().cutPowerBefore(6);
  EXPECT_THROW(faulty.files().write(file, "12345678"), faults::PowerLoss);
  EXPECT_THROW(faulty.mainWindow(), faults::PowerLoss) << "nothing works without power";
  EXPECT_THROW(set("After"), faults::PowerLoss);
  rig_.restart();
  EXPECT_EQ(rig_.text("C:\\log.txt"), "1234") << "the write was torn";
  EXPECT_EQ(rig_.value("Software\\F", "Other"), "1");
  EXPECT_FALSE(rig_.hasValue("Software\\F", "After"));
}

}  // namespace
