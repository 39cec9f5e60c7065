#include <map>

#include "tests/contract/bench.h"

namespace contract {

using platform::InstallerHandle;
namespace status = platform::status;

class Installer : public Test {
 protected:
  platform::WindowsInstaller& installer() { return machine().installer(); }
  /// Opens a database, its changes going to a file that nobody reads.
  platform::Status open(const std::string& package, InstallerHandle& database) {
    return installer().openDatabase(package, path("0.tmp"), database);
  }
};

constexpr const char* ThreeProperties =
    "Select * From Property Where Property = 'ProductName' Or Property = 'ProductVersion' Or Property = 'ProductCode'";

TEST_F(Installer, OpenDatabase_MissingOrGarbage_Fails) {
  write("garbage.msi", "no package");
  InstallerHandle database;
  EXPECT_NE(open(path("none.msi"), database), status::Ok);
  EXPECT_EQ(database.value, 0u);
  EXPECT_NE(open(path("garbage.msi"), database), status::Ok);
  EXPECT_EQ(database.value, 0u);
}

TEST_F(Installer, View_OfThePropertyTable_YieldsEachPropertyOnce) {
  const std::string package = bench().package(ScratchFolder);
  if (package.empty()) GTEST_SKIP() << "built without wixl: no real package to read";
  InstallerHandle database, view, record;
  ASSERT_EQ(open(package, database), status::Ok);
  ASSERT_EQ(installer().openView(database, ThreeProperties, view), status::Ok);
  ASSERT_EQ(installer().executeView(view), status::Ok);
  std::map<std::string, std::string> found;
  platform::Status fetched = installer().fetch(view, record);
  for (; fetched == status::Ok; fetched = installer().fetch(view, record)) {
    std::string name, value;
    EXPECT_EQ(installer().recordText(record, 1, 100, name), status::Ok);
    EXPECT_EQ(installer().recordText(record, 2, 100, value), status::Ok);
    EXPECT_EQ(installer().recordText(record, 2, 3, value), status::MoreData) << name;
    EXPECT_EQ(value, "");
    EXPECT_EQ(installer().recordText(record, 2, 100, found[name]), status::Ok);
    EXPECT_EQ(installer().close(record), status::Ok);
  }
  EXPECT_EQ(fetched, status::NoMoreItems);
  const std::map<std::string, std::string> expected = {
      {"ProductName", PackageName}, {"ProductVersion", PackageVersion}, {"ProductCode", PackageCode}};
  EXPECT_EQ(found, expected);
  EXPECT_EQ(installer().close(view), status::Ok);
  EXPECT_EQ(installer().openView(database, "Fetch everything", view), status::BadQuerySyntax);
  EXPECT_EQ(installer().close(database), status::Ok);
  EXPECT_EQ(installer().close(database), status::InvalidHandle);
}

TEST_F(Installer, Products_UnknownOrBehindTheLast_SaysSo) {
  std::string text = "left over";
  EXPECT_EQ(installer().productInformation(PackageCode, "VersionString", 128, text), status::UnknownProduct);
  EXPECT_EQ(text, "");
  std::uint32_t index = 0;
  platform::Status found = installer().enumerateProduct(index, text);
  for (; found == status::Ok; found = installer().enumerateProduct(++index, text)) EXPECT_EQ(text.size(), 38u) << text;
  EXPECT_EQ(found, status::NoMoreItems);
}

}  // namespace contract
