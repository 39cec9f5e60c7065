// What a run does about an operation of the machine that is refused once, where going on would be a false success.

#include <gtest/gtest.h>

#include "tests/support/media.h"

namespace {

using RefusedOperation = Installing;
using Names = std::vector<std::string>;
using platform::Status;

struct Record {
  const char* operation;
  const char* target;
};

constexpr Record Records[] = {
    {"registry.setValue", "Office Suite\\A\\Path"},
    {"registry.setValue", "CopyOpTargetList\\CopyOpTarget1"},
    {"registry.deleteKey", "Products\\Office Suite\\Old"},
};

TEST_F(RefusedOperation, RecordThatIsNotWhole_EndsTheRunBeforeAnythingIsInstalled) {
  for (const Record& row : Records) {
    SCOPED_TRACE(row.target);
    fresh();
    rig.tolerateUnused();
    rig.set(ComponentRecord("Old"), "Install", "old.exe");
    media.program("A", {}, "CopyOpTarget1=C:\\Tools\n").write();
    EXPECT_EQ(rig.runFailing(row.operation, row.target, Status::AccessDenied, Media::arguments("/s"), 1), 1);
    EXPECT_TRUE(rig.ran().empty());
    EXPECT_EQ(media.install(), 0);
    EXPECT_EQ(RanComponents(rig), Names{"A"});
  }
}

TEST_F(RefusedOperation, OlderVersionThatStays_FailsTheCopyAndNothingLiesBesideIt) {
  media.component("T", "t.txt", "CopyOp=1\nCopyOpTarget=C:\\Tools\nPath=T\\v2.0.0.0\n").write();
  rig.file("C:\\Media\\T\\v2.0.0.0\\t.txt", "new");
  rig.file("C:\\Tools\\T\\v1.0.0.0\\t.txt", "old");
  rig.tolerateUnused();
  rig.answer("QX Installation Assistant Error", platform::BoxAnswer::Ok);
  rig.answer("QX Installation Assistant Error", platform::BoxAnswer::Ok);
  EXPECT_EQ(rig.runFailing("files.deleteFile", "v1.0.0.0", Status::SharingViolation, Media::arguments("/s")), 1);
  EXPECT_FALSE(rig.exists("C:\\Tools\\T\\v2.0.0.0"));
  EXPECT_TRUE(Logged(rig, "The older versions beside C:\\Tools\\T\\v2.0.0.0 could not all be deleted."));
  EXPECT_EQ(media.install(), 0);
  EXPECT_FALSE(rig.exists("C:\\Tools\\T\\v1.0.0.0"));
}

constexpr Record EndsOfUninstall[] = {
    {"registry.setValue", "Products\\Uninstalled"},
    {"registry.setValue", "Products\\Version"},
    {"registry.deleteValue", "Products\\Uninstalled"},
};

TEST_F(RefusedOperation, LastWritesOfAnUninstall_CanBeMadeGoodByTheNext) {
  for (const Record& row : EndsOfUninstall) {
    SCOPED_TRACE(row.target);
    fresh();
    EXPECT_EQ(media.program("A", {}, RemovesWith("C:\\remove.exe")).install(), 0);
    Remover(rig, "C:\\remove.exe");
    EXPECT_EQ(rig.runFailing(row.operation, row.target, Status::AccessDenied, "/s /yes /x Office Suite", 1), 1);
    EXPECT_EQ(rig.run("/s /yes /x Office Suite"), 0);
    EXPECT_FALSE(rig.hasKey(ProductRecord));
    EXPECT_FALSE(rig.hasValue(ProductsRecord, "Uninstalled"));
  }
}

TEST_F(RefusedOperation, StartupScriptThatStays_IsTriedAgainAtTheEndAndThenAFailure) {
  for (const int times : {1, 9}) {
    fresh();
    media.program("A", RequestsReboot("immediate")).program("B").install();
    const std::string script = rig.machine().startupFolder() + "\\Start QX Installation Assistant.vbs";
    rig.restart();
    const int exitCode = rig.runFailing("files.deleteFile", ".vbs", Status::AccessDenied, rig.logonArguments(), times);
    EXPECT_EQ(exitCode, times == 1 ? 0 : 1);
    EXPECT_EQ(rig.exists(script), times != 1);
  }
}

TEST_F(RefusedOperation, WriteBehindTheEndMessage_IsShown) {
  rig.press({platform::WindowEvent::Continue, platform::WindowEvent::Continue});
  rig.answer("QX Installation Assistant Error", platform::BoxAnswer::Ok, "Install Date");
  media.program("A").write();
  EXPECT_EQ(rig.runFailing("registry.setValue", "Install Date", Status::AccessDenied, Media::arguments("")), 1);
}

}  // namespace
