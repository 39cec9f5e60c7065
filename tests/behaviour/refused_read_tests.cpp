// What a run does about something that is there and cannot be read, where a default would be a false success.

#include <gtest/gtest.h>

#include "platform/faults/platform.h"
#include "tests/support/discs.h"

namespace {

using RefusedRead = Installing;
using platform::Status;

/// A read that is refused in an installation of a product with the components A and B, or in what follows it.
struct Read {
  const char* operation;
  const char* target;
  const char* reason;  ///< in the product's record
  Names ran;
};

const Read Reads[] = {
    {"registry.enumerateValue",
     "A\\ConditionList",
     "Installation of A failed as its conditions could not be read.",
     {"B"}},
    {"registry.queryValue", "A\\Condition", "Installation of A failed as its conditions could not be read.", {"B"}},
    {"registry.enumerateKey", "Products\\Office Suite\\", "Could not open registry key HKLM\\", {}},
    {"registry.queryValue", "B\\SequenceNumber", "", {}},
    {"registry.queryValue", "Products\\Automatic Logon", "", {"A", "B"}},
};

TEST_F(RefusedRead, NothingIsTakenForAbsentThatCannotBeRead) {
  for (const Read& row : Reads) {
    SCOPED_TRACE(std::string(row.operation) + " " + row.target);
    fresh();
    rig.tolerateUnused();
    media.program("A", {}, "Condition1=os=winxp\n").program("B").write();
    EXPECT_EQ(rig.runFailing(row.operation, row.target, Status::AccessDenied, Media::arguments("/s")), 1);
    EXPECT_EQ(RanComponents(rig), row.ran);
    EXPECT_NE(rig.value(ProductRecord, "Abort Reason").find(row.reason), std::string::npos)
        << rig.value(ProductRecord, "Abort Reason");
  }
}

/// Installs while the n-th read of all is refused, none for 0; what was read.
Names InstallRefusing(Rig& rig, int number, int& exitCode, const std::string& arguments = Media::arguments("/s")) {
  faults::Platform faulty(rig.machine());
  faulty.faults().noteReads();
  if (number > 0) faulty.faults().failReadAt(number, Status::NotReady);
  exitCode = rig.run(arguments, faulty);
  return faulty.faults().readHistory();
}

TEST_F(RefusedRead, IniThatCannotBeReadForOneKey_IsNoSuccessOrChangesNothing) {
  const auto prepare = [&] {
    fresh();
    rig.tolerateUnused();
    media.removable().program("A", {}, "Condition1=os=winxp\n").write();
  };
  prepare();
  int exitCode = -1;
  const Names reads = InstallRefusing(rig, 0, exitCode);
  ASSERT_EQ(exitCode, 0);
  const Names whole = rig.registryLines(ComponentRecord("A"));
  int failed = 0;
  for (int number = 1; number <= static_cast<int>(reads.size()); ++number) {
    const std::string& read = reads[static_cast<std::size_t>(number) - 1];
    if (read.rfind("files.read", 0) != 0 || read.find(".ini") == std::string::npos) continue;
    prepare();
    InstallRefusing(rig, number, exitCode);
    failed += exitCode == 1 ? 1 : 0;
    if (exitCode == 1) continue;
    EXPECT_EQ(exitCode, 0) << number << " " << read;
    EXPECT_EQ(rig.registryLines(ComponentRecord("A")), whole) << number << " " << read;
    EXPECT_TRUE(rig.hasKey(EntryRecord)) << number << " " << read;
  }
  EXPECT_GT(failed, 20);
}

TEST_F(RefusedRead, ProductIniOfSeveralDiscs_NeverPassesForOneOfASingleDisc) {
  int exitCode = -1;
  Names reads = {""};
  int refused = 0;
  for (std::size_t number = 0; number < reads.size(); ++number) {
    if (number > 0 && reads[number - 1] != "files.read D:\\product.ini") continue;
    Rig own;
    own.tolerateUnused();
    Discs discs(own);
    discs.writePair();
    own.program(std::string("\"") + LocalProgram, simulated::Match::Prefix);
    own.machine().machine().setProgram(DiscProgram, "");
    const Names read = InstallRefusing(own, static_cast<int>(number), exitCode, "/s");
    if (number == 0) reads = read;
    refused += exitCode == 1 ? 1 : 0;
    EXPECT_EQ(discs.ran(), Names()) << "the components belong to the local copy's run " << number;
  }
  EXPECT_GT(refused, 0);
}

TEST_F(RefusedRead, PackageThatTellsNoVersion_DoesNotPassForInstalled) {
  rig.machine().installer().install({CodeOf("Core"), "Core", "1.0"});
  media.package("Core", "2.0").write();
  rig.program("msiexec /x", {.removes = {CodeOf("Core")}});
  const int exitCode =
      rig.runFailing("installer.propertyValue", "ProductVersion", Status::InvalidParameter, Media::arguments("/s"));
  // It comes in the place of the older one, but nobody can tell that it is the one that was meant.
  EXPECT_EQ(rig.machine().installer().products().front().version, "2.0");
  EXPECT_EQ(exitCode, 1);
}

/// What an uninstall cannot look at.
constexpr const char* OutOfSight[] = {"C:\\Copies\\T", "C:\\Tools\\remove.exe"};

TEST_F(RefusedRead, WhatCannotBeLookedAt_IsNotGone) {
  for (const char* path : OutOfSight) {
    SCOPED_TRACE(path);
    fresh();
    rig.tolerateUnused();
    rig.file("C:\\Media\\T\\t.txt", "text");
    media.component("T", "t.txt", "CopyOp=1\nCopyOpTarget=C:\\Copies\n");
    media.program("Tools", {}, RemovesWith("C:\\Tools\\remove.exe"));
    EXPECT_EQ(media.install(), 0);
    Remover(rig, "C:\\Tools\\remove.exe", {.deletedFiles = {"C:\\Tools\\remove.exe"}});
    const int exitCode = rig.runFailing("files.attributes", path, Status::AccessDenied, "/s /yes /x Office Suite");
    // A program that cannot be seen may be started all the same.
    EXPECT_EQ(exitCode, rig.exists(path) ? 1 : 0);
    EXPECT_EQ(rig.hasKey(ProductRecord), rig.exists(path));
    EXPECT_EQ(rig.run("/s /yes /x Office Suite"), exitCode == 1 ? 0 : 1);
    EXPECT_FALSE(rig.exists("C:\\Copies\\T") || rig.exists("C:\\Tools\\remove.exe"));
  }
}

TEST_F(RefusedRead, LocalCopyOutOfSight_IsScheduledForDeletionAllTheSame) {
  media.removable().program("A", {}, RemovesWith("C:\\remove.exe"));
  Remover(rig, "C:\\remove.exe");
  rig.program("AT ", simulated::Match::Prefix);
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(rig.runFailing("files.attributes", LocalProgram, Status::AccessDenied, "/s /yes /x Office Suite"), 0);
  EXPECT_EQ(rig.ran().back().rfind("AT ", 0), 0U);
}

}  // namespace
