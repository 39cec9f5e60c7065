#include "app/qxia/package.h"

#include <gtest/gtest.h>

#include "platform/simulated/host.h"
#include "tests/qxia/package_file.h"
#include "tests/support/temporary_folder.h"

namespace qxia {
namespace {

TEST(Package_OfTheHost, TellsWhatItsTablesHold) {
  const TemporaryFolder folder;
  const std::string file = folder.path() + "/tools.msi";
  WritePackageFile(file,
                   {{"ProductName", "Tools"}, {"ProductVersion", "1.2.0"}, {"ProductCode", "{A}"}, {"PORT", "Bergen"}},
                   "Intel");
  const MsiPackage tools = ReadPackage(file);
  EXPECT_EQ(tools.productName, "Tools");
  EXPECT_EQ(tools.productVersion, "1.2.0");
  EXPECT_EQ(tools.productCode, "{A}");
  EXPECT_EQ(tools.properties.at("PORT"), "Bergen");
  EXPECT_FALSE(tools.isFor64Bit());
  EXPECT_FALSE(tools.asksForRestart);
  WritePackageFile(file, {{"ProductCode", "{B}"}}, "x64", {"ScheduleReboot"});
  EXPECT_TRUE(ReadPackage(file).isFor64Bit());
  EXPECT_TRUE(ReadPackage(file).asksForRestart);
}

TEST(Package_BrokenOrMissing, IsRefusedByName) {
  const TemporaryFolder folder;
  const std::string file = folder.path() + "/broken.msi";
  EXPECT_THROW(ReadPackage(file), PackageError);
  for (const std::string& bytes : {std::string(), std::string("no package"), std::string("\xD0\xCF\x11\xE0") + "cut"}) {
    simulated::WriteHostFile(file, bytes);
    EXPECT_THROW(ReadPackage(file), PackageError);
  }
}

TEST(Package_Damaged, IsReadOrRefusedAndNeverACrash) {
  const TemporaryFolder folder;
  const std::string file = folder.path() + "/damaged.msi";
  WritePackageFile(file, {{"ProductName", "Tools"}, {"ProductVersion", "1.2.0"}, {"ProductCode", "{A}"}}, "Intel");
  const std::string whole = simulated::ReadHostFile(file);
  unsigned random = 1;
  int refused = 0;
  for (int round = 0; round < 20; ++round) {
    std::string damaged = whole;
    for (int slip = 0; slip < 12; ++slip) {
      random = random * 1664525U + 1013904223U;
      damaged[random / 65536U % damaged.size()] = static_cast<char>(random / 256U);
    }
    simulated::WriteHostFile(file, damaged);
    try {
      EXPECT_FALSE(ReadPackage(file).productCode.empty());
    } catch (const PackageError& broken) {
      EXPECT_FALSE(broken.reason().empty());
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace qxia
