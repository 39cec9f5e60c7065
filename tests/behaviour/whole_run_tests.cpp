// Whole silent runs of small products.

#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

constexpr const char* ApplicationIni = R"([Product]
Name=Office Suite
Version=2.1.0
PackageRoot=C:\Media
ProductIni=PATH(product.ini)
NumberOfLoops=5
AbortOnFail=false
ForceUninstallReboot=False
CopyOpRoot=C:\QX\Root
CopyOpHold=C:\QX\Hold
PreviousVolumeName=
NextVolumeName=
[Config]
Verbose=true
Silent=false
RequestLogonDetails=false
)";

TEST(WholeRun_Silent, ProgramComponent_IsRunAndRecorded) {
  Rig rig;
  rig.file("C:\\Media\\app.ini", ApplicationIni);
  rig.file("C:\\Media\\product.ini", R"([Product]
Name=Office Suite
[General]
Version=2.1.0
[Actions]
Tools=Tools\tools.ini
)");
  rig.file("C:\\Media\\Tools\\tools.ini", R"([Tools]
Install=setup.exe
CommandLine=/quiet
Upgrade=False
CopyOp=N/A
MachineType=all machines
Cost=N/A
)");
  rig.file("C:\\Media\\Tools\\setup.exe", "");
  rig.program("setup.exe");
  EXPECT_EQ(rig.run("/s /is=C:\\Media\\app.ini"), 0);
  EXPECT_EQ(rig.ran(), std::vector<std::string>{"C:\\Media\\Tools\\setup.exe /quiet"});
  EXPECT_NE(rig.log("Office Suite").find("QX Installer Run complete"), std::string::npos);
}

}  // namespace
