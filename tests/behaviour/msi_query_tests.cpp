// What Windows Installer is asked: the data of a package, and the products on the machine.
#include <algorithm>

#include "exec/msi_queries.h"
#include "platform/faults/platform.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

constexpr const char* Package = "C:\\Media\\Office.msi";
constexpr const char* Code = "{11111111-2222-3333-4444-555555555555}";
constexpr const char* Other = "{22222222-2222-3333-4444-555555555555}";

class MsiQuery : public Procedures {
 protected:
  static void expectNothing(const PackageData& data) {
    EXPECT_FALSE(data.read);
    EXPECT_EQ(data.name + data.version + data.code, "");
  }
  /// Codes, names and versions of the list.
  Names listed() {
    Names products;
    for (const InstalledProduct& product : ListInstalledProducts(run.services).list)
      products.push_back(product.code + "|" + product.name + "|" + product.version);
    return products;
  }
};

TEST_F(MsiQuery, PackageData_AreThoseOfItsPropertyTable) {
  const std::string longName(99, 'n');
  const struct {
    simulated::Package package;
    const char* what;
  } table[] = {
      {{Package, "Office", "2.1.0.15", Code}, "all three"},
      {{Package, "Office", "", Code}, "without a version"},
      {{Package, "", "", ""}, "without any"},
      {{Package, longName, "1", Code}, "the longest name"},
      {{Package, "Office", "1", Code, {}, {}, {}, {{"Manufacturer", "Tarvel"}, {"productname", "small"}}},
       "others beside"},
  };
  for (const auto& row : table) {
    Rig other;
    assistant::Run asking(other.machine());
    other.package(row.package);
    const PackageData data = GetMSIData(asking.services, Package);
    EXPECT_TRUE(data.read) << row.what;
    EXPECT_EQ(data.name, row.package.name) << row.what;
    EXPECT_EQ(data.version, row.package.version) << row.what;
    EXPECT_EQ(data.code, row.package.code) << row.what;
    EXPECT_EQ(other.machine().installer().openHandles(), 0U) << row.what;
  }
}

TEST_F(MsiQuery, PackageData_AreToldInTheLog) {
  rig.package({Package, "Office", "2.1.0.15", Code});
  ASSERT_TRUE(GetMSIData(run.services, Package).read);
  Names told;
  for (const LogRow& row : rows()) told.push_back(row.type + " " + row.description);
  EXPECT_EQ(told, (Names{"Action Reading C:\\Media\\Office.msi", "Action Name:Office", "Action Version:2.1.0.15",
                         std::string("Action Code:") + Code}));
}

TEST_F(MsiQuery, PackageThatCannotBeRead_IsTheErrorOfItsStep) {
  const struct {
    const char* operation;
    const char* text;
    int number;
  } table[] = {
      {"installer.openPackage", "Could not open MSI database : ", 6141},
      {"installer.openProperties", "Could not open MSI database view for ", 6142},
      {"installer.executeView", "Could not execute view for ", 6143},
  };
  rig.package({Package, "Office", "1", Code});
  for (const auto& row : table) {
    SCOPED_TRACE(row.operation);
    faults::Platform faulty(rig.machine());
    faulty.faults().fail(row.operation, "", platform::Status::PackageOpenFailed);
    assistant::Run failing(faulty);
    emptyLog();
    expectNothing(GetMSIData(failing.services, Package));
    ASSERT_FALSE(rows().empty());
    EXPECT_EQ(rows().back().description, row.text + std::string(Package) +
                                             "<BR>Source: modMSI.GetMSIData Error No = " + std::to_string(row.number));
    EXPECT_EQ(rig.machine().installer().openHandles(), 0U);
  }
}

TEST_F(MsiQuery, FileThatIsNoPackage_LeavesEmptyData) {
  expectNothing(GetMSIData(run.services, "C:\\Media\\gone.msi"));
  rig.file("C:\\Media\\notes.msi", "no package");
  expectNothing(GetMSIData(run.services, "C:\\Media\\notes.msi"));
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors[0].description,
            "File C:\\Media\\gone.msi does not exist<BR>Source: modMSI.GetMSIData Error No = 6140");
  EXPECT_EQ(errors[1].description,
            "Could not open MSI database : C:\\Media\\notes.msi<BR>Source: modMSI.GetMSIData Error No = 6141");
}

TEST_F(MsiQuery, ProductList_HasARecordForEachOrOneEmpty) {
  EXPECT_EQ(listed(), Names{"||"});
  rig.machine().installer().install({Code, "Office", "2.1.0.15"});
  rig.machine().installer().install({Other, std::string(127, 'n'), "1"});
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(listed(),
              (Names{std::string(Code) + "|Office|2.1.0.15", std::string(Other) + "|" + std::string(127, 'n') + "|1"}));
  }
  rig.machine().installer().remove(Code);
  EXPECT_EQ(listed().size(), 1U);
  Names told;
  for (const LogRow& row : rows()) told.push_back(row.description);
  EXPECT_EQ(told, (Names{"There are 0 installed products", "There are 2 installed products",
                         "There are 2 installed products", "There are 1 installed products"}));
}

TEST_F(MsiQuery, ProductThatDoesNotTell_KeepsEmptyFieldsAndAnErrorEach) {
  rig.machine().installer().install({Code, "Office", "2.1.0.15"});
  rig.machine().installer().install({Other, "Tools", "1.0"});
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("installer.productInformation", Code, platform::Status::UnknownProperty);
  assistant::Run failing(faulty);
  const std::vector<InstalledProduct> products = ListInstalledProducts(failing.services).list;
  ASSERT_EQ(products.size(), 2U);
  EXPECT_EQ(products[0].code, Code);
  EXPECT_EQ(products[0].name + products[0].version, "");
  EXPECT_EQ(products[1].name, "Tools");
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors[0].description.rfind(std::string("Error returning product Installed Product Name for ") + Code, 0),
            0U);
  EXPECT_EQ(
      errors[1].description.rfind(std::string("Error returning product Installed Product Version for ") + Code, 0), 0U);
  EXPECT_NE(errors[0].description.find("Error No = 6147"), std::string::npos);
}

TEST_F(MsiQuery, TextsThatAreTooLong_AreLeftEmptyAndTold) {
  rig.package({Package, std::string(100, 'n'), "1", Code});
  const PackageData data = GetMSIData(run.services, Package);
  EXPECT_TRUE(data.read);
  EXPECT_EQ(data.name, "");
  EXPECT_EQ(data.version + data.code, std::string("1") + Code);
  const std::vector<LogRow> told = rows();
  const auto warnings = std::count_if(told.begin(), told.end(), [](const LogRow& row) {
    return row.description == "ProductName of the package could not be read; it may be longer than 99 characters";
  });
  EXPECT_EQ(warnings, 1);

  rig.machine().installer().install({Other, std::string(128, 'n'), std::string(127, '1')});
  EXPECT_EQ(listed(), Names{std::string(Other) + "||" + std::string(127, '1')});
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0].description.rfind(std::string("Error returning product Installed Product Name for ") + Other, 0),
            0U);
}

TEST_F(MsiQuery, PropertyThatCannotBeRead_IsLeftEmptyAndTold) {
  rig.package({Package, "Office", "2.1.0.15", Code});
  faults::Platform faulty(rig.machine());
  faulty.faults().fail("installer.propertyValue", "ProductVersion", platform::Status::InvalidParameter);
  const assistant::Run failing(faulty);
  const PackageData data = GetMSIData(failing.services, Package);
  EXPECT_TRUE(data.read);
  EXPECT_EQ(data.name + data.version + data.code, std::string("Office") + Code);
  const std::vector<LogRow> told = rows();
  EXPECT_TRUE(std::any_of(told.begin(), told.end(), [](const LogRow& row) {
    return row.description == "ProductVersion of the package could not be read; it may be longer than 99 characters";
  }));
}

TEST_F(MsiQuery, MachineWithoutWindowsInstaller_HasNoProducts) {
  rig.machine().installer().setInstalled(false);
  EXPECT_EQ(listed(), Names{"||"});
  rig.file(Package, "package");
  expectNothing(GetMSIData(run.services, Package));
}

TEST_F(MsiQuery, LogOfProducts_HasALineForEach) {
  run.services.log.beVerbose(true);
  rig.machine().installer().install({Code, "Office", "2.1.0.15"});
  LogInstalledMSIs(run.services);
  Names told;
  for (const LogRow& row : rows()) told.push_back(row.description);
  EXPECT_EQ(told, (Names{"Retrieving Installed MSI's from PC", "There are 1 installed products",
                         "The following MSI's are installed on this PC",
                         "Office: {11111111-2222-3333-4444-555555555555} v2.1.0.15 <BR>"}));
}

}  // namespace
