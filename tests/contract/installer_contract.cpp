#include <map>

#include "tests/contract/bench.h"

namespace contract {

using platform::OwnedPackage;
using platform::OwnedView;
using platform::PackageProperty;
using platform::ProductProperty;
using platform::Status;

class Installer : public Test {
 protected:
  platform::WindowsInstaller& installer() { return machine().installer(); }
};

TEST_F(Installer, OpenPackage_MissingOrGarbage_Fails) {
  write("garbage.msi", "no package");
  for (const char* name : {"none.msi", "garbage.msi"}) {
    OwnedPackage package(installer());
    EXPECT_NE(installer().openPackage(path(name), package.receive()), Status::Ok) << name;
    EXPECT_FALSE(package.isOpen()) << name;
  }
}

TEST_F(Installer, Properties_OfAPackage_YieldNameVersionAndCodeOnce) {
  const std::string file = bench().package(ScratchFolder);
  if (file.empty()) GTEST_SKIP() << "built without wixl: no real package to read";
  OwnedPackage package(installer());
  ASSERT_EQ(installer().openPackage(file, package.receive()), Status::Ok);
  OwnedView view(installer());
  ASSERT_EQ(installer().openProperties(*package, view.receive()), Status::Ok);
  ASSERT_EQ(installer().executeView(*view), Status::Ok);
  std::map<std::string, std::string> found;
  PackageProperty property;
  Status next = installer().nextProperty(*view, property);
  for (; next == Status::Ok; next = installer().nextProperty(*view, property)) {
    EXPECT_EQ(property.valueRead, Status::Ok) << property.name;
    EXPECT_TRUE(found.emplace(property.name, property.value).second) << property.name << " came twice";
  }
  EXPECT_EQ(next, Status::NoMoreItems);
  EXPECT_EQ(property.name, "");
  const std::map<std::string, std::string> expected = {
      {"ProductName", PackageName}, {"ProductVersion", PackageVersion}, {"ProductCode", PackageCode}};
  EXPECT_EQ(found, expected);
}

TEST_F(Installer, Handles_ClosedOrNone_AreInvalid) {
  const std::string file = bench().package(ScratchFolder);
  if (file.empty()) GTEST_SKIP() << "built without wixl: no real package to read";
  OwnedPackage package(installer());
  ASSERT_EQ(installer().openPackage(file, package.receive()), Status::Ok);
  const platform::PackageHandle closed = *package;
  EXPECT_EQ(package.close(), Status::Ok);
  EXPECT_EQ(package.close(), Status::Ok) << "nothing is open any more";
  EXPECT_EQ(installer().closePackage(closed), Status::InvalidHandle);
  OwnedView view(installer());
  EXPECT_EQ(installer().openProperties(closed, view.receive()), Status::InvalidHandle);
  EXPECT_FALSE(view.isOpen());
  EXPECT_EQ(installer().executeView({}), Status::InvalidHandle);
}

TEST_F(Installer, Products_UnknownOrBehindTheLast_SaysSo) {
  for (const ProductProperty property : {ProductProperty::Name, ProductProperty::Version}) {
    std::string text = "left over";
    EXPECT_EQ(installer().productInformation(PackageCode, property, text), Status::UnknownProduct);
    EXPECT_EQ(text, "");
  }
  std::string code = "left over";
  std::uint32_t index = 0;
  Status found = installer().enumerateProduct(index, code);
  for (; found == Status::Ok; found = installer().enumerateProduct(++index, code)) EXPECT_EQ(code.size(), 38u) << code;
  EXPECT_EQ(found, Status::NoMoreItems);
  EXPECT_EQ(code, "");
}

}  // namespace contract
