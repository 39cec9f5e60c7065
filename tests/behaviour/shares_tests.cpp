// Shares, folders and the mapped drive that a product needs.

#include "env/drive_mapping.h"
#include "env/shares.h"
#include "platform/faults/platform.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

constexpr const char* Locations = "Software\\Tarvel\\Installation\\Locations";
constexpr const char* SystemShares = "System\\CurrentControlSet\\Services\\lanmanserver\\Shares";

class Shares : public Procedures {
 protected:
  Shares() {
    run.product.inis = {"C:\\Media\\app.ini", "C:\\Media\\product.ini"};
    run.product.name = "Office Suite";
  }

  void shares(const std::string& lines) {
    rig.file("C:\\Media\\Config\\Shares.csv", lines);
    emptyLog();
    run.product.shares = ValidateShares(run);
  }
  Names descriptions(const std::string& type) {
    Names texts;
    for (const LogRow& row : RowsOf(logText(), type)) texts.push_back(row.description);
    return texts;
  }
};

TEST_F(Shares, EachSystem_IsToldInItsWords) {
  for (const simulated::System& system : simulated::Systems()) {
    Rig own;
    own.machine().setSystem(system.name);
    own.program("net share");
    Media media(own);
    own.file("C:\\Media\\Config\\Shares.csv",
             "; name,folder,machines\nThe Data,C:\\QX\\The Data\\\r\n\nTools,C:\\QX\\T,\n");
    EXPECT_EQ(media.install(), 0);
    const std::string grant = std::string(system.name) == "Windows 2003" ? " /grant:everyone,full" : "";
    EXPECT_EQ(own.effects("run hidden "), (Names{"run hidden net share \"The Data\"=\"C:\\QX\\The Data\"" + grant,
                                                 "run hidden net share \"Tools\"=\"C:\\QX\\T\"" + grant}))
        << system.name;
    EXPECT_EQ(own.value(Locations, "The Data"), "C:\\QX\\The Data");
    EXPECT_TRUE(own.machine().files().isFolder("C:\\QX\\The Data"));
    EXPECT_TRUE(Logged(own, "2 Records in file C:\\Media\\Config\\Shares.csv"));
  }
}

TEST_F(Shares, LineThatCannotBeUsed_IsToldAndPassedOver) {
  const std::pair<const char*, const char*> rows[] = {
      {"Data", "has too few fields and is passed over"},
      {",C:\\QX\\Data", "has too few fields and is passed over"},
      {"Data, ", "has too few fields and is passed over"},
      {"Data,\"C:\\QX\\Data", "has a quote that is not closed and is passed over"},
      {"Data,QX\\Data", "names a folder without its drive and is passed over"},
      {"Data,Q:\\Data", "names a folder on a drive that is missing"},
  };
  for (const auto& [line, told] : rows) {
    shares(std::string("Good,C:\\Good\n") + line + "\n");
    const Names warnings = descriptions(WarningMark);
    ASSERT_EQ(warnings.size(), 1U) << line;
    EXPECT_NE(warnings[0].find(std::string("Line 2 of C:\\Media\\Config\\Shares.csv ") + told), std::string::npos);
    EXPECT_EQ(run.product.shares.front().name, "Good");
  }
}

TEST_F(Shares, OfADrivesRoot_SharesTheRootAndNotTheDrivesCurrentFolder) {
  rig.program("net share");
  shares("Disk,C:\\\n");
  EXPECT_TRUE(CreateShares(run));
  EXPECT_EQ(rig.ran(), Names{"net share \"Disk\"=C:\\"});
}

TEST_F(Shares, MachineTypes_DecideWhichAreCreated) {
  run.facts.serverType = "dcunit";
  rig.program("net share");
  shares("Here,C:\\Here,\"dcchild,dcunit\"\nThere,C:\\There,dcchild\nAll,C:\\All,all machines\n");
  EXPECT_TRUE(CreateShares(run));
  EXPECT_EQ(rig.ran().size(), 2U);
  EXPECT_FALSE(rig.exists("C:\\There"));
  EXPECT_NE(logText().find("Share There should not be created on this machine type<br>Skipping this share creation!"),
            std::string::npos);
}

TEST_F(Shares, References_MeanTheRowForThisMachine) {
  run.facts.serverType = "dcunit";
  shares("Data,C:\\A,dcchild\nData,C:\\B,\"dcunit,dcforest\"\nData,C:\\C\nOther,C:\\Other,dcchild\n");
  MarkApplyingShares(run);
  EXPECT_EQ(ResolveQXSharePath(run.shareResolver(), "\\Data\\x"), "C:\\B\\x");
  EXPECT_EQ(ResolveQXSharePath(run.shareResolver(), "\\Other\\x"), "\\Other\\x");
}

TEST_F(Shares, ShareOfAnotherMachineType_IsNeitherCopiedToNorMadeNorLookedAtForRoom) {
  Rig own;
  own.machine().addDrive({.letter = 'E', .free = 0});
  own.program("net share \"Data\"=\"C:\\B\"");
  own.file("C:\\Media\\Config\\Shares.csv", "Data,E:\\A,dcchild\nData,C:\\B,dcunit\n");
  Media media(own);
  media.productIni = "[Product]\nName=Office Suite\nServerType=dcunit\n[General]\nVersion=2.1.0\n";
  media.component("Tools", "one.txt", "CopyOp=1\nCopyOpTarget=\\Data\nCost=0,Data=1000,\n");
  own.file("C:\\Media\\Tools\\one.txt", "one");
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(own.exists("C:\\B\\Tools\\one.txt"));
  EXPECT_FALSE(own.exists("E:\\A"));
}

TEST_F(Shares, LineWrittenAlmostRight_IsToldAndUsedAsFarAsItCanBeRead) {
  const struct {
    const char* line;
    const char* folder;
    const char* machineTypes;
    const char* told;
  } rows[] = {
      {"Data,C:\\Data,dcunit,dcforest", "C:\\Data", "dcunit", "has surplus fields"},
      {"Data,C:\\Data, \"dcunit,dcforest\"", "C:\\Data", "dcunit,dcforest", "has blanks before a quote"},
      {" \"Data\",\t\"C:\\Data\"", "C:\\Data", "", "has blanks before a quote"},
  };
  for (const auto& row : rows) {
    shares(std::string("Good,C:\\Good,\"a, b\"\n") + row.line + "\n");
    const Names warnings = descriptions(WarningMark);
    ASSERT_EQ(warnings.size(), 1U) << row.line;
    EXPECT_NE(warnings[0].find(std::string("Line 2 of C:\\Media\\Config\\Shares.csv ") + row.told), std::string::npos)
        << warnings[0];
    ASSERT_EQ(run.product.shares.size(), 2U) << row.line;
    EXPECT_EQ(run.product.shares[0].machineTypes, "a, b");
    EXPECT_EQ(run.product.shares[1].name, "Data") << row.line;
    EXPECT_EQ(run.product.shares[1].folder, row.folder) << row.line;
    EXPECT_EQ(run.product.shares[1].machineTypes, row.machineTypes) << row.line;
  }
}

TEST_F(Shares, ShareOfTheSystem_IsRecordedAndNotMadeAgain) {
  rig.set(SystemShares, "Data", "CSCFlags=0");
  rig.set(Locations, "Data", "C:\\Before");
  shares("Data,C:\\Data\n");
  EXPECT_TRUE(CreateShares(run));
  EXPECT_TRUE(rig.ran().empty());
  EXPECT_EQ(rig.value(Locations, "Data"), "C:\\Data");
}

TEST_F(Shares, OneThatFails_EndsTheCreationAndIsNoFailureOfTheProduct) {
  const struct {
    const char* line;
    int exitCode;
    const char* failing;
    const char* told;
  } rows[] = {
      {"Bad,C:\\Bad", 2, "", "Share creation shell failed"},
      {"Bad,Q:\\Bad", 0, "", "Cannot create this path as drive Q: is missing"},
      {"Bad,C:\\Bad", 0, "files.createFolder", "Shared folder could not be created"},
      {"Bad,C:\\Bad", 0, "registry.setValue", "Unable to create the QXShare registry entry"},
  };
  for (const auto& row : rows) {
    Rig own;
    own.tolerateUnused();
    own.program("net share \"Bad\"", {.exitCode = row.exitCode});
    own.program("net share \"First\"");
    own.file("C:\\Media\\Config\\Shares.csv", std::string("First,C:\\First\n") + row.line + "\nLast,C:\\Last\n");
    Media media(own);
    media.program("One").write();
    faults::Platform faulty(own.machine());
    if (*row.failing != '\0') faulty.faults().fail(row.failing, "Bad", platform::Status::AccessDenied);
    EXPECT_EQ(own.run(Media::arguments("/s"), faulty), 0) << row.told;
    EXPECT_TRUE(Logged(own, std::string(row.told) + "<BR>Source: CreateShares")) << row.told;
    EXPECT_EQ(own.value(Locations, "First"), "C:\\First") << row.told;
    EXPECT_FALSE(own.hasValue(Locations, "Bad")) << row.told;
    EXPECT_FALSE(own.exists("C:\\Last")) << row.told;
  }
}

TEST_F(Shares, Path_LeadingToAShare_IsItsFolder) {
  rig.set(Locations, "Data", "D:\\Recorded");
  run.product.shares = {{"data", "C:\\New", ""}, {"Fresh", "C:\\Fresh", ""}};
  const struct {
    const char* path;
    const char* resolved;
    const char* logged;
  } rows[] = {
      {"Data", "D:\\Recorded", "QX Share Data resolved to D:\\Recorded (existing share)"},
      {"\\Data\\a\\b", "D:\\Recorded\\a\\b", "QX Share Data resolved to D:\\Recorded (existing share)"},
      {"\\\\fresh\\a", "C:\\Fresh\\a", "QX Share fresh resolved to C:\\Fresh (new share)"},
      {"E:\\Data\\a", "E:\\Data\\a", ""},
      {"\\\\server\\share", "\\\\server\\share", ""},
      {"", "", ""},
      {"\\\\", "\\\\", ""},
  };
  for (const auto& row : rows) {
    emptyLog();
    EXPECT_EQ(ResolveQXSharePath(run.shareResolver(), row.path), row.resolved) << row.path;
    EXPECT_EQ(descriptions(ActionMark), *row.logged == '\0' ? Names() : Names{row.logged}) << row.path;
  }
}

TEST_F(Shares, Folders_OfTheProductIniAreMade) {
  rig.set(Locations, "Data", "C:\\Shared");
  rig.file("C:\\file.txt", "text");
  rig.file(run.product.inis.product,
           "[folders]\nOne=C:\\One\\Deep\\\nTwo=\\Data\\Two\nThree=relative\nFour=Q:\\Four\nFive=C:\\file.txt\nSix=\n"
           "Seven=C:\\Seven\n");
  CreateFolders(run);
  for (const char* folder : {"C:\\One\\Deep", "C:\\Shared\\Two", "C:\\Seven"})
    EXPECT_TRUE(rig.machine().files().isFolder(folder)) << folder;
  const Names errors = descriptions(ErrorMark);
  ASSERT_EQ(errors.size(), 3U);
  const char* told[] = {"Correct key Three in section [folders] of C:\\Media\\product.ini", "Drive Q: does not exist",
                        "Cannot create folder C:\\file.txt"};
  for (int i = 0; i < 3; ++i) EXPECT_NE(errors[i].find(told[i]), std::string::npos) << errors[i];
  EXPECT_TRUE(FolderWillExist(run.services.fso, "D:\\anything"));
  EXPECT_FALSE(FolderWillExist(run.services.fso, "Q:\\anything"));
}

TEST_F(Shares, InteractiveRun_LetsTheUserReadThem) {
  rig.program("net share");
  run.services.window.create("QX");
  run.services.window.show();
  shares("Data,C:\\Data\n");
  const std::uint64_t start = rig.machine().clock().elapsed();
  EXPECT_TRUE(CreateShares(run));
  EXPECT_GE(rig.machine().clock().elapsed() - start, 500U + 1000U);
  const std::string shown = rig.machine().screen().text(platform::Control::Status);
  EXPECT_NE(shown.find("Creating 'Shares' Writing:\r\nData=C:\\Data"), std::string::npos) << shown;
  EXPECT_NE(shown.find("Creating 'Shares'\r\nCompleted"), std::string::npos) << shown;
}

TEST_F(Shares, MappedDrive_FollowsItsSettings) {
  const char* settings = "IP=10.1.2.3\nDomainName=QX\n";
  const struct {
    const char* drive;
    const char* settings;
    int exitCode;
    const char* command;
    const char* told;
    const char* type;
  } rows[] = {
      {"k", settings, 0, "net use k: \\\\10.1.2.3\\packages /user:QX\\Administrator \"\" /persistent:no",
       "Mapping drive k:to \\\\10.1.2.3\\packages", ActionMark},
      {"K:\\", "IP=10.1.2.3\nDomainName=QX\nUsername=Setup\nPassword=top secret\n", 0,
       "net use K: \\\\10.1.2.3\\packages /user:QX\\Setup top secret /persistent:no", "Drive mapped successfully",
       ActionMark},
      {"K:", settings, 53, "net use K: \\\\10.1.2.3\\packages /user:QX\\Administrator \"\" /persistent:no",
       "Drive mapping shell failed<BR>Source: MapDriveIfRequired", ErrorMark},
      {"1:", settings, 0, "", "Invalid drive letter specification for mapping drive 1:", WarningMark},
      {"Kx", settings, 0, "", "Invalid drive letter specification for mapping drive Kx", WarningMark},
      {"d:", settings, 0, "", "Drive d: already exists - cannot connect network drive", WarningMark},
      {"K:", "IP=10.1.2\nDomainName=QX\n", 0, "",
       "Unable to read all required settings for mapping drive K:", WarningMark},
      {"K:", "IP=10.1.2.3\n", 0, "", "Unable to read all required settings for mapping drive K:", WarningMark},
      {"", settings, 0, "", "", ActionMark},
  };
  for (const auto& row : rows) {
    Rig own;
    own.tolerateUnused();
    assistant::Run mapping(own.machine());
    mapping.product.inis.product = "C:\\Media\\product.ini";
    own.program("net use", {.exitCode = row.exitCode});
    own.file(mapping.product.inis.product,
             std::string("[Connection]\nBuildServerDriveMapping=") + row.drive + "\n" + row.settings);
    const std::string drive = MapDriveIfRequired(mapping.services, mapping.productIni());
    EXPECT_EQ(own.ran(), *row.command == '\0' ? Names() : Names{row.command});
    const bool mapped = *row.command != '\0' && row.exitCode == 0;
    EXPECT_EQ(drive, mapped ? std::string(row.drive).substr(0, 1) + ":" : "") << row.drive;
    std::string told;
    for (const LogRow& entry : RowsOf(own.text(mapping.services.log.logFilename()), row.type))
      told += entry.description + "\n";
    EXPECT_NE(told.find(row.told), std::string::npos) << row.told << " in " << told;
  }
}

}  // namespace
