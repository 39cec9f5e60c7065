// Conditions of a component, as its ini states them, on a machine with known facts.

#include "tests/support/media.h"

namespace {

using Conditions = Installing;

struct Case {
  const char* lines;    ///< of the component's ini
  const char* message;  ///< why the component is held back; nullptr when it is installed
};

/// Windows XP, a dcunit of build 4.2 with the product "Site Server", the recorded product Base, and three packages.
void SetFacts(Rig& rig) {
  rig.set(InstallationRecord, "Product", "Site Server");
  rig.set(InstallationRecord, "Server Type", "dcunit");
  rig.set(InstallationRecord, "Server Build Version", "4.2b");
  rig.set(std::string(ProductsRecord) + "\\Base", "Version", "1.0");
  rig.set(std::string(ProductsRecord) + "\\Empty", "Version", "");
  rig.machine().installer().install({CodeOf("Alpha"), "Alpha Tools", "1.10.0"});
  rig.machine().installer().install({CodeOf("Beta"), "Beta", "v2.0.1"});
  rig.machine().installer().install({CodeOf("Words"), "Words", "one.two"});
}

/// Runs a product whose only component has these lines, and compares what became of it.
void Expect(const Case& row, const std::string& system = "Windows XP") {
  Rig rig;
  rig.tolerateUnused();
  rig.machine().setSystem(system);
  SetFacts(rig);
  Media media(rig);
  media.program("First", Reports("First", "Pass"));
  media.program("Tools", {}, row.lines);
  EXPECT_EQ(media.install(), 0) << row.lines;
  EXPECT_EQ(RanComponents(rig).back() == "Tools", row.message == nullptr) << row.lines << " on " << system;
  EXPECT_EQ(TimesLogged(rig, "Condition not met, component will not be installed"), row.message == nullptr ? 0 : 1);
  if (row.message != nullptr) {
    EXPECT_TRUE(Logged(rig, row.message)) << row.lines;
  }
}

constexpr const char* NoName = "Condition not satisfied - Product Name does not match.";
constexpr const char* NoType = "Condition not satisfied - Server Type does not match.";
constexpr const char* NoBuild = "Condition not satisfied - Server Build Number does not match.";
constexpr const char* NoProduct = "Condition not satisfied - Installed Product";
constexpr const char* NoOs = "Condition not satisfied - OS not supported.";
constexpr const char* NoInstall = "Condition not satisfied - Component cannot be installed.";

constexpr Case Current[] = {
    {"", nullptr},
    {"Condition1=productname=SITE server\n", nullptr},
    {"Condition1=ProductName=Other\n", NoName},
    {"Condition1=productname<>Site Server\n", NoName},
    {"Condition1=productname<>Other\n", nullptr},
    {"Condition1=productname<Other\n", nullptr},
    {"Condition1=servertype=dcunit\n", nullptr},
    {"Condition1=servertype=dcforest,dcunit\n", nullptr},
    {"Condition1=servertype=dcforest, dcunit\n", NoType},
    {"Condition1=servertype=All 1st machines\n", nullptr},
    {"Condition1=servertype=1st machine\n", NoType},
    {"Condition1=servertype=nth machine\n", NoType},
    {"Condition1=servertype<>1st machine (child domain)\n", nullptr},
    {"Condition1=servertype<>dcunit\n", NoType},
    {"Condition1=servertype=x\n", nullptr},
    {"Condition1=buildnumber=4.2b\n", nullptr},
    {"Condition1=buildnumber=4.2B\n", NoBuild},
    {"Condition1=buildnumber<>4.2b\n", NoBuild},
    {"Condition1=installedproducts=Base\n", nullptr},
    {"Condition1=installedproducts=Other\n", NoProduct},
    {"Condition1=installedproducts=Empty\n", NoProduct},
    {"Condition1=installedproducts<>Base\n", NoProduct},
    {"Condition1=installedproducts<>Other\n", nullptr},
    {"Condition1=os=winxp\n", nullptr},
    {"Condition1=os=win2k|WinXP \n", nullptr},
    {"Condition1=os=win2k|win98\n", NoOs},
    {"Condition1=os<>win2k|winxp\n", NoOs},
    {"Condition1=os<>win2k\n", nullptr},
    {"Condition1=os>winxp\n", nullptr},
    {"Condition1=runoninstall=false\n", NoInstall},
    {"Condition1=runoninstall=Not FALSE at all\n", NoInstall},
    {"Condition1=runoninstall=true\n", nullptr},
    {"Condition1=runoninstall<>false\n", NoInstall},
    {"Condition1=runonuninstall=false\n", nullptr},
    {"Condition1=N/A\n", nullptr},
    {"Condition=os=\"WinXP\",RunOnUninstall=\"false\"\n", nullptr},
    {"Condition1=Alpha Tools=1.10.0\n", nullptr},
    {"Condition1=ALPHA TOOLS=1.10.0\n", nullptr},
    {"Condition1=Alpha Tools=v1.10.0\n", "Condition = v1.10.0 1.10.0 not satisfied."},
    {"Condition1=Alpha Tools<>1.10.0\n", "Condition 1.10.0 <> 1.10.0  not satisfied."},
    {"Condition1=Alpha Tools>1.9\n", nullptr},
    {"Condition1=Alpha Tools>v1.9.9\n", nullptr},
    {"Condition1=Alpha Tools>1.10.0\n", "Condition 1.10.0 > 1.10.0  not satisfied."},
    {"Condition1=Alpha Tools<1.9\n", "Condition 1.10.0 < 1.9  not satisfied."},
    {"Condition1=Alpha Tools<2\n", nullptr},
    {"Condition1=Alpha Tools<=1.10.0\n", nullptr},
    {"Condition1=Alpha Tools=<1.9.5\n", "Condition 1.10.0 =< 1.9.5  not satisfied."},
    {"Condition1=Alpha Tools=<1.10.0\n", nullptr},
    {"Condition1=Alpha Tools>=1.10.0\n", nullptr},
    {"Condition1=Alpha Tools=>1.10.0\n", nullptr},
    {"Condition1=Alpha Tools=>1.10.1\n", "Condition 1.10.0 => 1.10.1  not satisfied."},
    {"Condition1=Beta>=V2.0.1\n", nullptr},
    {"Condition1=Beta>V2.0.0\n", nullptr},
    {"Condition1=Missing>=v2.0.1\n", "Condition v0.0.0.0 >= v2.0.1  not satisfied."},
    {"Condition1=Missing<1.0\n", nullptr},
    {"Condition1=Missing=v0.0.0.0\n", nullptr},
    {"Condition1=Words>1.0\n", "Condition one.two > 1.0  not satisfied."},
    {"Condition1=Words>=1.0\n", nullptr},
    {"Condition1=Words<=1.0\n", nullptr},
    {"Condition1=Words<1.0\n", "Condition one.two < 1.0  not satisfied."},
    {"Condition1=Alpha Tools>=1.10.0.9\n", nullptr},
    {"Condition1=os=winxp\nCondition2=servertype=dcunit\nCondition3=productname=Other\n", NoName},
    {"Condition1=os=winxp\nCondition3=productname=Other\n", nullptr},
    {"Condition=os=winxp,servertype=dcforest\n", NoType},
    {"Condition=os=winxp,servertype=dcunit\n", nullptr},
    {"Condition1=os=win98\nCondition2=os=winxp\n", nullptr},
};

TEST_F(Conditions, CurrentNotation_HoldsComponentsBackWithItsMessages) {
  for (const Case& row : Current) Expect(row);
}

constexpr Case Older[] = {
    {"Condition=productname=\"site SERVER\"\n", nullptr},
    {"Condition=productname=\"Other\"\n", "Condition not satisfied."},
    {"Condition=The ProductName here=\"Other\"\n", "Condition not satisfied."},
    {"Condition=productname<>\"Other\"\n", nullptr},
    {"Condition=servertype=\"dcforest\"\n", NoType},
    {"Condition=servertype=\"dcunit\"\n", nullptr},
    {"Condition=buildnumber=\"4.3\"\n", "Condition not satisfied."},
    {"Condition=buildnumber=\"4.2b\"\n", nullptr},
    {"Condition=installedproducts=\"Base\"\n", nullptr},
    {"Condition=installedproducts=\"Other\"\n", NoProduct},
    {"Condition=os=\"Win2K WinXP\"\n", nullptr},
    {"Condition=os=\"winxp\"\n", NoOs},
    {"Condition=OS<>\"WinXP\"\n", NoOs},
    {"Condition=runoninstall=\"False\"\n", NoInstall},
    {"Condition=First=\"Pass\"\n", nullptr},
    {"Condition=First=\"Fail\" or \"Pass\"\n", nullptr},
    {"Condition=First=\"Fail\"\n", "Condition not satisfied."},
    {"Condition=First<>\"Pass\"\n", nullptr},
    {"Condition=First<>\"Fail\"\n", "Condition not satisfied."},
    {"Condition=Nobody=\"Pass\"\n", "Condition not satisfied."},
    {"Condition=Nobody=\"\"\n", nullptr},
    {"Condition=The OS=\"winxp\"\n", "Condition not satisfied."},
    {"Condition=os=\"WinXP\",Alpha Tools>=v1.10\n", nullptr},
    {"Condition=os=\"WinXP\",Alpha Tools>=v1.11\n", "Condition 1.10.0 >= 1.11  not satisfied."},
    {"Condition=os=\"WinXP\",Alpha Tools = V1.10.0\n", nullptr},
    {"Condition=os=\"WinXP\",Missing<=1\n", nullptr},
    {"Condition=os=\"WinXP\",nonsense\n", "Condition \"nonsense\" holds none of"},
};

TEST_F(Conditions, OlderNotation_HoldsComponentsBackWithItsMessages) {
  for (const Case& row : Older) Expect(row);
}

TEST_F(Conditions, OfUnknownFacts_Hold) {
  for (const char* line : {"productname=Other", "productname<>Other", "buildnumber=1", "buildnumber<>1",
                           "servertype=dcunit", "servertype=vanilla servers"}) {
    fresh();
    media.program("Tools", {}, std::string("Condition1=") + line + "\nMachineType=dcreplica\n");
    EXPECT_EQ(media.install(), 0);
    EXPECT_EQ(RanComponents(rig).size(), 1U) << line;
  }
}

TEST_F(Conditions, MachineType_IsTakenFromTheProductIniWhereTheMachineHasNone) {
  for (const char* type : {"dcunit", "dcreplica"}) {
    fresh();
    rig.tolerateUnused();
    media.productIni = std::string("[Product]\nName=Office Suite\nServerType=") + type + "\n[General]\nVersion=2.1.0\n";
    EXPECT_EQ(media.program("Tools", {}, "MachineType=All 1st Machines\n").install(), 0);
    EXPECT_EQ(RanComponents(rig).size(), type == std::string("dcunit") ? 1U : 0U) << type;
  }
}

struct Keywords {
  const char* system;
  const char* current;
  const char* older;
};

constexpr Keywords Systems[] = {
    {"Windows 95", "win95", "Win95"},        {"Windows 98", "win98", "Win98"},       {"Windows ME", "winme", "WinME"},
    {"Windows NT 3.51", "winnt3", "WinNT3"}, {"Windows NT 4.0", "winnt4", "WinNT4"}, {"Windows 2000", "win2k", "Win2K"},
    {"Windows XP", "winxp", "WinXP"},        {"Windows 2003", "w2k3", "W2K3"},
};

TEST_F(Conditions, EachSystem_IsSelectedByItsKeywordAlone) {
  for (const Keywords& row : Systems) {
    for (const Keywords& asked : Systems) {
      const char* message = row.system == asked.system ? nullptr : NoOs;
      Expect({("Condition1=os=" + std::string(asked.current) + "\n").c_str(), message}, row.system);
      Expect({("Condition=os=\"" + std::string(asked.older) + "\"\n").c_str(), message}, row.system);
    }
  }
}

TEST_F(Conditions, NewerSystem_IsNoneOfTheEight) {
  rig.machine().machine().setVersion(platform::SystemVersion{2, 6, 1, 7601});
  rig.tolerateUnused();
  media.program("Tools", {}, "Condition1=os=win95|win98|winme|winnt3|winnt4|win2k|winxp|w2k3\n");
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(rig.ran().empty());
  EXPECT_EQ(rig.value(InstallationRecord, "Operating System"), "Windows 6.1");
}

TEST_F(Conditions, Record_KeepsOperatorAndOperandOfEachLine) {
  media.program("Tools", {}, "Condition1=os=winxp\nCondition2=Alpha Tools<=v1.2.0\nCondition3=runonuninstall=FALSE\n");
  media.program("Twice", {}, "Condition1=os=win98\nCondition2=OS=winxp\n");
  media.program("Plain");
  media.install();
  const std::string list = ComponentRecord("Tools") + "\\ConditionList";
  EXPECT_EQ(rig.value(list, "os"), "winxp");
  EXPECT_EQ(rig.value(list, "Alpha Tools"), "(<=)v1.2.0");
  EXPECT_FALSE(rig.hasValue(list, "runonuninstall"));
  EXPECT_EQ(rig.value(ComponentRecord("Tools"), "RunOnUninstall"), "False");
  EXPECT_EQ(rig.value(ComponentRecord("Plain"), "RunOnUninstall"), "True");
  EXPECT_TRUE(Logged(rig, "two conditions are named OS; the last one counts."));
}

/// Data as support staff may have written it into a record.
constexpr Case RecordedData[] = {
    {"(<>)win2k|winxp", NoOs}, {"(=)   winxp", nullptr},
    {"( =)winxp", NoOs},       {"(<=>)winxp", nullptr},
    {"(====)winxp", NoOs},     {"(=", NoOs},
    {"(>)\"winxp\"", nullptr}, {"", nullptr},
};

/// Whether a component is installed whose recorded condition of this name is changed to this data.
bool HoldsAsRecorded(const char* name, const char* data) {
  Rig rig;
  rig.tolerateUnused();
  SetFacts(rig);
  Media media(rig);
  const std::string list = "HKLM\\" + ComponentRecord("Tools") + "\\ConditionList";
  media.program("First", {.registry = {{list, name, data}}});
  media.program("Tools", {}, std::string("Condition1=") + name + "=other\n");
  media.install();
  return RanComponents(rig).size() == 2;
}

TEST_F(Conditions, RecordedData_HasItsOperatorInTheFirstFivePlaces) {
  for (const Case& row : RecordedData) EXPECT_EQ(HoldsAsRecorded("os", row.lines), row.message == nullptr) << row.lines;
  EXPECT_TRUE(HoldsAsRecorded("Alpha Tools", "(=)  1.10.0")) << "blanks behind the operator do not count";
}

}  // namespace
